#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "vekDebugLeaks.h"
#include "vekObject.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

// Class names chosen so that "Ab" and "Ba" have the same byte sum (and so share a bucket).
class Named : public Object {
 public:
  static Named* New(const char* name) { return new Named(name); }
  const char* GetClassName() const override { return Name; }

 private:
  explicit Named(const char* name) : Name(name) {}
  const char* Name;
};

class ExposedLeaks : public DebugLeaks {
 public:
  using DebugLeaks::HashString;
};

std::string Leaks(const DebugLeaks& leaks) {
  std::ostringstream os;
  leaks.ShowAllLeaks(os);
  return os.str();
}

TEST(DebugLeaks, HashIsByteSumModuloBucketCount) {
  EXPECT_EQ(ExposedLeaks::HashString("Ab", 64), (65 + 98) % 64);
  EXPECT_EQ(ExposedLeaks::HashString("Ab", 64), ExposedLeaks::HashString("Ba", 64));
  // Bytes above 127 count as negative values.
  EXPECT_EQ(ExposedLeaks::HashString("\xC3\xA9", 64), static_cast<int>((4294967296u - 61u - 87u) % 64u));
}

TEST(DebugLeaks, EmptyRegistryReportsNoLeaks) {
  DebugLeaks leaks;
  EXPECT_EQ(Leaks(leaks), "Found 0 Leaks\n");
  EXPECT_EQ(leaks.HasLeaks(), 0);
  EXPECT_EQ(leaks.GetNumLeaks(), 0);
}

TEST(DebugLeaks, ListsWithCreationDetailsAndRemovesBySwappingWithLast) {
  DebugLeaks leaks;
  SmartPointer<Named> first = SmartPointer<Named>::TakeReference(Named::New("Ab"));
  SmartPointer<Named> second = SmartPointer<Named>::TakeReference(Named::New("Ba"));
  SmartPointer<Named> third = SmartPointer<Named>::TakeReference(Named::New("Ab"));
  DebugLeaks::AddNextObjectInfo("a.cxx", 10, "First");
  leaks.AddObjectToList(first.GetPointer());
  DebugLeaks::AddNextObjectInfo("b.cxx", 20, "Second");
  leaks.AddObjectToList(second.GetPointer());
  leaks.AddObjectToList(third.GetPointer());  // no details given: the defaults
  EXPECT_EQ(leaks.HasLeaks(), 1);
  EXPECT_EQ(leaks.GetNumLeaks(), 3);
  EXPECT_EQ(Leaks(leaks),
            "Leak: 0 Created: First in a.cxx at line number 10\n"
            "Leak: 1 Created: Second in b.cxx at line number 20\n"
            "Leak: 2 Created: Unknown in Unknown File at line number -1\n"
            "Found 3 Leaks\n");

  leaks.RemoveObjectFromList(first.GetPointer());
  EXPECT_EQ(Leaks(leaks),
            "Leak: 0 Created: Unknown in Unknown File at line number -1\n"
            "Leak: 1 Created: Second in b.cxx at line number 20\n"
            "Found 2 Leaks\n");
  leaks.RemoveObjectFromList(second.GetPointer());
  leaks.RemoveObjectFromList(third.GetPointer());
  EXPECT_EQ(leaks.HasLeaks(), 0);
}

TEST(DebugLeaks, PrintoutNamesBucketsInUseThenTheLeaks) {
  DebugLeaks leaks;
  SmartPointer<Named> object = SmartPointer<Named>::TakeReference(Named::New("Zz"));
  DebugLeaks::AddNextObjectInfo("z.cxx", 3, "Zed");
  leaks.AddObjectToList(object.GetPointer());
  std::ostringstream os;
  os << leaks;
  leaks.RemoveObjectFromList(object.GetPointer());
  // Buckets stay allocated once used, so other tests of this process may add to the count.
  EXPECT_TRUE(std::regex_match(os.str(), std::regex("NumHash: 64\nListedObjects:  Not Null\n[1-9][0-9]* hashes used\n"
                                                    "Leak: 0 Created: Zed in z.cxx at line number 3\n"
                                                    "Found 1 Leaks\n")))
      << os.str();
}

}  // namespace
}  // namespace vek
