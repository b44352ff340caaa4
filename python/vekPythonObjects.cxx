// Library objects held by Python objects, and the arrays that cross between numpy and the library.
#include <limits>
#include <string>
#include <unordered_set>

#include "vekDebugLeaks.h"
#include "vekErrorCodes.h"
#include "vekPython.h"

namespace vek::python {

namespace {

// Every object a Python object holds is listed here while held; the library reports whatever is
// still listed when it unloads.
DebugLeaks g_leaks;

bool g_shutDown = false;

std::unordered_set<HeldObject*>& Live() {
  static std::unordered_set<HeldObject*> live;
  return live;
}

std::string ShapeText(const py::array& array) {
  std::string text = "(";
  for (py::ssize_t d = 0; d < array.ndim(); ++d) text += (d ? ", " : "") + std::to_string(array.shape(d));
  return text + (array.ndim() == 1 ? ",)" : ")");
}

}  // namespace

HeldObject::HeldObject(Object* fresh) : Pointer(fresh) {
  DebugLeaks::AddNextObjectInfo("the vek Python module", LeaksInfo::kUnknownLine, fresh->GetClassName());
  g_leaks.AddObjectToList(fresh);
  Live().insert(this);
}

HeldObject::~HeldObject() {
  Drop();
  Live().erase(this);
}

Object* HeldObject::GetObject() const {
  if (!Pointer) CheckRunning();
  return Pointer;
}

void HeldObject::Drop() {
  if (!Pointer) return;
  g_leaks.RemoveObjectFromList(Pointer);
  Pointer->Release();
  Pointer = nullptr;
}

void HeldObject::ReleaseAll() {
  g_shutDown = true;
  for (HeldObject* held : Live()) held->Drop();
}

void HeldObject::CheckRunning() {
  if (g_shutDown)
    Fail(VEK_UNSUPPORTED_FUNCTION_CALL,
         "the vek module has shut down (the interpreter is exiting): its objects can no longer be used");
}

py::array NumberArray(const py::handle& values, const char* dtype, int columns, const char* what) {
  py::module_ numpy = py::module_::import("numpy");
  py::array input;
  try {
    input = numpy.attr("asarray")(values);
  } catch (py::error_already_set& e) {
    Fail(VEK_INVALID_PARAMETERS, std::string(what) + ": not an array of numbers (" + e.what() + ")");
  }
  // Strings, objects and complex numbers would convert silently, or with no more than a warning.
  const char kind = input.dtype().kind();
  const bool integers = kind == 'i' || kind == 'u';
  const bool wantIntegers = py::dtype(dtype).kind() == 'i';
  if (!integers && (wantIntegers || kind != 'f') && input.size() > 0)
    Fail(VEK_INVALID_PARAMETERS, std::string(what) + ": expected " + (wantIntegers ? "integers" : "real numbers") +
                                     ", found array elements of type " + std::string(py::str(input.dtype())));
  const py::ssize_t wanted = columns ? 2 : 1;
  if (input.size() == 0 && input.ndim() == 1 && columns)
    input = numpy.attr("zeros")(py::make_tuple(0, columns));
  if (input.ndim() != wanted || (columns && input.shape(1) != columns))
    Fail(VEK_INVALID_PARAMETERS, std::string(what) + ": expected shape " +
                                     (columns ? "(N, " + std::to_string(columns) + ")" : std::string("(N,)")) +
                                     ", found " + ShapeText(input));
  if (input.shape(0) > static_cast<py::ssize_t>(std::numeric_limits<int>::max()))
    Fail(VEK_TOO_MANY_ELEMENTS, std::string(what) + ": more than 2147483647 rows");
  return input.attr("astype")(dtype, py::arg("order") = "C", py::arg("copy") = true);
}

py::array_t<float> PointArray(const py::handle& points, const char* what) {
  return NumberArray(points, "float32", 2, what).cast<py::array_t<float>>();
}

}  // namespace vek::python
