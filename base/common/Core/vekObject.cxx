#include "vekObject.h"

#include "vekOutputMessages.h"

namespace vek {

Object* Object::New() { return new Object; }

Object::~Object() {
  if (ReferenceCount > 0) VEK_REPORT_ERROR("Trying to delete an object with positive reference count.");
}

void Object::Release() { UnRegister(); }

void Object::Register() const { ++ReferenceCount; }

void Object::UnRegister() const {
  if (--ReferenceCount == 0) delete this;
}

void Object::PrintSelf(std::ostream& os, Indent indent) const {
  os << indent << "Reference Count: " << ReferenceCount << "\n";
}

void Object::Print(std::ostream& os) const {
  PrintHeader(os, Indent(0));
  PrintSelf(os, Indent(0).GetNextIndent());
  PrintTrailer(os, Indent(0));
}

void Object::PrintHeader(std::ostream& os, Indent indent) const {
  // An object printing itself is never null; " NULL" is only ever printed for an empty holder.
  os << indent << GetClassName() << " Not Null\n";
}

void Object::PrintTrailer(std::ostream& os, Indent indent) const { os << indent << "\n"; }

std::ostream& operator<<(std::ostream& os, const Object& object) {
  object.Print(os);
  return os;
}

}  // namespace vek
