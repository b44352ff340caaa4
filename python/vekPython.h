#pragma once
// What the parts of the Python module share: failures turned into vek.Error, library objects held
// once per Python object and let go when the module shuts down, and point arrays. Each group of
// bindings lives in a vekPython<Group>.cxx and adds itself to the module through one function.
#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>

#include <exception>
#include <string>

#include "vekObject.h"

namespace vek::python {

namespace py = pybind11;

/// A failed status caught in C++. Its name and message are taken when it is made: the error record
/// is process-wide and the next failure replaces it. The module turns it into vek.Error.
class StatusError : public std::exception {
 public:
  /// `status` may carry the custom-message flag; the code kept is without it.
  explicit StatusError(int status);
  int GetCode() const { return Code; }
  const std::string& GetName() const { return Name; }
  const std::string& GetMessage() const { return Message; }
  /// "NAME (code): message", what str() of the Python exception shows.
  const char* what() const noexcept override { return Text.c_str(); }

 private:
  int Code;
  std::string Name;
  std::string Message;
  std::string Text;
};

/// Throws StatusError for a status other than VEK_SUCCESS.
void Check(int status);
/// Records `message` as the custom message of `code` and throws it.
[[noreturn]] void Fail(int code, const std::string& message);
/// The message of a status in the language in force: the call's own message when the status
/// carries the custom-message flag, else the language table's text for the code's name, else the
/// English catalogue's.
std::string MessageOf(int status);

/// One reference to a library object, held for one Python object and listed with the library's
/// leak registry while held. When the interpreter exits, the module lets every object still held
/// go (so the registry reports no leak) and refuses all later use with vek.Error instead of
/// touching freed memory. Only touched with the GIL held.
class HeldObject {
 public:
  /// Adopts the reference that New() gave.
  explicit HeldObject(Object* fresh);
  virtual ~HeldObject();
  /// The object; vek.Error once the module has shut down.
  Object* GetObject() const;
  /// Lets every held object go and refuses later use (the module's exit handler).
  static void ReleaseAll();
  /// vek.Error once the module has shut down.
  static void CheckRunning();

 private:
  HeldObject(const HeldObject&) = delete;
  HeldObject& operator=(const HeldObject&) = delete;
  void Drop();

  Object* Pointer;
};

/// A HeldObject of a known class.
template <class T>
class Held : public HeldObject {
 public:
  explicit Held(T* fresh) : HeldObject(fresh) {}
  T* Get() const { return static_cast<T*>(GetObject()); }
};

/// A new float32 array of shape (N, 2) with the values of `points`, any array-like of real
/// numbers of that shape (an empty sequence is (0, 2)); vek.Error (VEK_INVALID_PARAMETERS)
/// naming `what` otherwise.
py::array_t<float> PointArray(const py::handle& points, const char* what);
/// A new C-ordered array of `dtype` with the values of `values`, checked to be real numbers
/// (integers only for an integer dtype) with `columns` columns (0: one dimension).
py::array NumberArray(const py::handle& values, const char* dtype, int columns, const char* what);

void AddErrorBindings(py::module_& m);
void AddLensBindings(py::module_& m);
void AddMeshBindings(py::module_& m);
void AddCalibrationBindings(py::module_& m);
void AddOptionBindings(py::module_& m);

}  // namespace vek::python
