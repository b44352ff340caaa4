#pragma once
#include <ostream>

#include "vekCommonExport.h"
#include "vekIndent.h"

namespace vek {

/// The root of every library class: an intrusive reference count, a run-time class name and a
/// three-stage printout (header line, PrintSelf lines, trailer line). Objects are created by
/// New() with a count of 1, never copied, and destroyed when Release()/UnRegister() brings the
/// count to exactly 0.
class VEK_EXPORT Object {
 public:
  static Object* New();

  virtual const char* GetClassName() const { return "Object"; }
  virtual void Release();
  virtual void Register() const;
  virtual void UnRegister() const;
  virtual int GetReferenceCount() const { return ReferenceCount; }
  virtual void PrintSelf(std::ostream& os, Indent indent) const;

  /// Header at indent 0, PrintSelf at indent 2, trailer at indent 0.
  void Print(std::ostream& os) const;

 protected:
  Object() = default;
  virtual ~Object();
  virtual void PrintHeader(std::ostream& os, Indent indent) const;
  virtual void PrintTrailer(std::ostream& os, Indent indent) const;

 private:
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  mutable int ReferenceCount = 1;
};

VEK_EXPORT std::ostream& operator<<(std::ostream& os, const Object& object);

}  // namespace vek
