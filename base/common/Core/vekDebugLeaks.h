#pragma once
#include <ostream>

#include "vekIndent.h"
#include "vekLeaksInfo.h"
#include "vekStack.h"

namespace vek {

class Object;
class OutputWindowCleanup;
using LeaksInfoArray = Stack<LeaksInfo>;

/// The process-wide registry of live objects that clients list and unlist; whatever is still
/// listed when the last DebugLeaks instance goes is reported as a leak in the debug log.
/// Define one static DebugLeaks in every translation unit that lists objects: the shared state
/// lives from the first instance to the last (a counted "nifty" guard), and holds the output
/// channels open until then. Objects are kept in 64 buckets chosen by the byte sum of the class
/// name; removal swaps the last record of the bucket into the freed place. Objects may be listed
/// and unlisted from any thread: one lock keeps the registry whole.
class VEK_EXPORT DebugLeaks {
 public:
  DebugLeaks();
  ~DebugLeaks();

  /// Creation details for the next object listed (afterwards reset to "Unknown File", -1, "Unknown").
  static void AddNextObjectInfo(const char* fileName, const int& lineNumber, const char* creator);
  void AddObjectToList(Object* object);
  /// The object must be listed.
  void RemoveObjectFromList(Object* object);

  int HasLeaks();
  int GetNumLeaks();
  void ShowAllLeaks(std::ostream& os) const;
  void PrintSelf(std::ostream& os, Indent indent) const;

  /// Not to be used: each only reports "Should not be calling this function" with the object.
  static void AddObject(Object* object);
  static void RemoveObject(Object* object);

 protected:
  static int HashString(const char* text, const int& numHash);
  bool IsListedObjectsHashAllocated(const int& hash) const;
  void AllocateListedObjectsHashIfNecessary(const int& hash);
  void ListObjectWithHash(const int& hash, Object* object);
  void RemoveListedObjectWithHash(const int& hash, Object* object);

 private:
  DebugLeaks(const DebugLeaks&) = delete;
  DebugLeaks& operator=(const DebugLeaks&) = delete;

  static constexpr int kNumHash = 64;
  static LeaksInfoArray** m_ListedObjects;
  static OutputWindowCleanup* m_OutputWindowCleanup;
  static LeaksInfo* m_NextLeaksInfo;
  static unsigned int m_Num;
  static int m_NumHash;
};

VEK_EXPORT std::ostream& operator<<(std::ostream& os, const DebugLeaks& leaks);

}  // namespace vek
