#include <gtest/gtest.h>

#include <regex>
#include <sstream>
#include <type_traits>

#include "vekIndent.h"
#include "vekObject.h"
#include "vekSmartPointer.h"
#include "vekStack.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

// Counts its destructions, and can be deleted while still referenced.
class Probe : public Object {
 public:
  static Probe* New() { return new Probe; }
  const char* GetClassName() const override { return "Probe"; }
  void DeleteWhileReferenced() { delete this; }
  static int Destroyed;

 protected:
  ~Probe() override { ++Destroyed; }
};
int Probe::Destroyed = 0;

TEST(Indent, GrowsByTwoUpToForty) {
  EXPECT_EQ(Indent(0).GetNextIndent().GetIndentation(), 2);
  EXPECT_EQ(Indent(38).GetNextIndent().GetIndentation(), 40);
  EXPECT_EQ(Indent(39).GetNextIndent().GetIndentation(), 40);
  EXPECT_EQ(Indent(40).GetNextIndent().GetIndentation(), 40);
  std::ostringstream narrow;
  narrow << Indent(3) << "|";
  EXPECT_EQ(narrow.str(), "   |");
  std::wostringstream wide;
  wide << Indent(2) << L"|";
  EXPECT_EQ(wide.str(), L"  |");
}

TEST(Object, PrintsHeaderSelfAndTrailer) {
  Object* object = Object::New();
  std::ostringstream os;
  os << *object;
  EXPECT_EQ(os.str(), "Object Not Null\n  Reference Count: 1\n\n");
  object->Register();
  os.str("");
  os << *object;
  EXPECT_EQ(os.str(), "Object Not Null\n  Reference Count: 2\n\n");
  object->Release();
  object->Release();
}

TEST(Object, ReferenceCountDecidesDestruction) {
  test::LogCapture log;
  Probe::Destroyed = 0;
  Probe* probe = Probe::New();
  EXPECT_EQ(probe->GetReferenceCount(), 1);
  probe->Register();
  probe->UnRegister();
  EXPECT_EQ(Probe::Destroyed, 0);
  EXPECT_EQ(probe->GetReferenceCount(), 1);
  probe->Release();
  EXPECT_EQ(Probe::Destroyed, 1);
  EXPECT_EQ(log.Text(), "");
}

TEST(Object, DeletingAReferencedObjectIsReported) {
  test::LogCapture log;
  Probe::Destroyed = 0;
  Probe::New()->DeleteWhileReferenced();
  EXPECT_EQ(Probe::Destroyed, 1);
  EXPECT_TRUE(std::regex_match(
      log.Text(),
      std::regex("ERROR:vekObject, [0-9]+: Trying to delete an object with positive reference count\\.\n")));
}

TEST(SmartPointer, HoldsOneReference) {
  Probe::Destroyed = 0;
  Probe* raw = Probe::New();
  {
    SmartPointer<Probe> first(raw);
    EXPECT_EQ(raw->GetReferenceCount(), 2);
    SmartPointer<Probe> second = first;
    EXPECT_EQ(raw->GetReferenceCount(), 3);
    SmartPointer<Probe> moved = std::move(second);
    EXPECT_EQ(raw->GetReferenceCount(), 3);
    EXPECT_FALSE(second);
    raw->Release();
    EXPECT_EQ(Probe::Destroyed, 0);
  }
  EXPECT_EQ(Probe::Destroyed, 1);
  auto adopted = SmartPointer<Probe>::New();
  EXPECT_EQ(adopted->GetReferenceCount(), 1);
}

TEST(SmartPointer, DerivedConvertsToBaseWithTheSameReferences) {
  static_assert(std::is_convertible_v<SmartPointer<Probe>, SmartPointer<Object>>);
  static_assert(!std::is_convertible_v<SmartPointer<Object>, SmartPointer<Probe>>);
  Probe::Destroyed = 0;
  auto probe = SmartPointer<Probe>::New();
  Probe* raw = probe.GetPointer();
  auto countThroughBase = [](const SmartPointer<Object>& object) { return object->GetReferenceCount(); };
  EXPECT_EQ(countThroughBase(probe), 2);  // the temporary base holder is one more
  EXPECT_EQ(raw->GetReferenceCount(), 1);
  {
    SmartPointer<Object> copied = probe;
    EXPECT_EQ(copied.GetPointer(), raw);
    EXPECT_EQ(raw->GetReferenceCount(), 2);
    SmartPointer<Object> moved = std::move(probe);
    EXPECT_FALSE(probe);
    EXPECT_EQ(raw->GetReferenceCount(), 2);
    SmartPointer<Object> assigned;
    assigned = SmartPointer<Probe>(raw);
    EXPECT_EQ(raw->GetReferenceCount(), 3);
  }
  EXPECT_EQ(Probe::Destroyed, 1);
}

TEST(Stack, DoublesWhenFullAndFindsFirstEqual) {
  Stack<int> stack(2);
  for (int v : {7, 8, 9, 8, 10}) stack.Push(v);
  EXPECT_EQ(stack.GetCount(), 5u);
  EXPECT_EQ(stack.GetCapacity(), 8u);
  EXPECT_EQ(stack.Find(8), 1u);
  EXPECT_EQ(stack.Find(42), 5u);
  EXPECT_EQ(stack.Pop(), 10);
  EXPECT_EQ(stack.GetCount(), 4u);
  EXPECT_EQ(stack[2], 9);
}

}  // namespace
}  // namespace vek
