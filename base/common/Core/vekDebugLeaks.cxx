#include "vekDebugLeaks.h"

#include <mutex>
#include <sstream>

#include "vekObject.h"
#include "vekOutputFile.h"
#include "vekOutputWindowCleanup.h"

namespace vek {

LeaksInfoArray** DebugLeaks::m_ListedObjects = nullptr;
OutputWindowCleanup* DebugLeaks::m_OutputWindowCleanup = nullptr;
LeaksInfo* DebugLeaks::m_NextLeaksInfo = nullptr;
unsigned int DebugLeaks::m_Num = 0;
int DebugLeaks::m_NumHash = 0;

namespace {

// One lock for the whole registry: clients list and unlist objects from any thread.
std::mutex g_registryMutex;
constexpr unsigned int kInitialBucketCapacity = 4;

LeaksInfo UnknownCreation() { return LeaksInfo{"Unknown File", "Unknown", LeaksInfo::kUnknownLine, nullptr}; }

// The library's own instance keeps the shared state (and the debug log) alive until the library
// itself is unloaded, after the static objects of the programs that use it.
const DebugLeaks g_libraryLeaks;

}  // namespace

DebugLeaks::DebugLeaks() {
  if (m_Num++ > 0) return;
  m_NumHash = kNumHash;
  m_ListedObjects = new LeaksInfoArray*[m_NumHash]();
  m_NextLeaksInfo = new LeaksInfo;
  m_OutputWindowCleanup = new OutputWindowCleanup;
}

DebugLeaks::~DebugLeaks() {
  if (--m_Num > 0) return;
  delete m_NextLeaksInfo;
  m_NextLeaksInfo = nullptr;
  std::ostringstream report;
  report << LocationPrefix("Message:", __FILE__, __LINE__) << *this << "\n";
  OutputFile::Error(report.str().c_str());
  for (int i = 0; i < m_NumHash; ++i) delete m_ListedObjects[i];
  delete[] m_ListedObjects;
  m_ListedObjects = nullptr;
  delete m_OutputWindowCleanup;
  m_OutputWindowCleanup = nullptr;
}

void DebugLeaks::AddNextObjectInfo(const char* fileName, const int& lineNumber, const char* creator) {
  std::lock_guard<std::mutex> lock(g_registryMutex);
  if (!m_NextLeaksInfo) return;
  m_NextLeaksInfo->FileName = fileName ? fileName : "";
  m_NextLeaksInfo->LineNumber = lineNumber;
  m_NextLeaksInfo->Creator = creator ? creator : "";
}

void DebugLeaks::AddObjectToList(Object* object) {
  std::lock_guard<std::mutex> lock(g_registryMutex);
  int hash = HashString(object->GetClassName(), m_NumHash);
  AllocateListedObjectsHashIfNecessary(hash);
  ListObjectWithHash(hash, object);
}

void DebugLeaks::RemoveObjectFromList(Object* object) {
  std::lock_guard<std::mutex> lock(g_registryMutex);
  RemoveListedObjectWithHash(HashString(object->GetClassName(), m_NumHash), object);
}

int DebugLeaks::HashString(const char* text, const int& numHash) {
  unsigned int sum = 0;
  for (const char* c = text; *c; ++c) sum += static_cast<unsigned int>(static_cast<signed char>(*c));
  return static_cast<int>(sum % static_cast<unsigned int>(numHash));
}

bool DebugLeaks::IsListedObjectsHashAllocated(const int& hash) const { return m_ListedObjects[hash] != nullptr; }

void DebugLeaks::AllocateListedObjectsHashIfNecessary(const int& hash) {
  if (!IsListedObjectsHashAllocated(hash)) m_ListedObjects[hash] = new LeaksInfoArray(kInitialBucketCapacity);
}

void DebugLeaks::ListObjectWithHash(const int& hash, Object* object) {
  m_NextLeaksInfo->ListedObject = object;
  m_ListedObjects[hash]->Push(*m_NextLeaksInfo);
  *m_NextLeaksInfo = UnknownCreation();
}

void DebugLeaks::RemoveListedObjectWithHash(const int& hash, Object* object) {
  LeaksInfoArray* bucket = m_ListedObjects[hash];
  if (!bucket) return;
  LeaksInfo wanted;
  wanted.ListedObject = object;
  unsigned int found = bucket->Find(wanted);
  if (found == bucket->GetCount()) return;
  LeaksInfo last = bucket->Pop();
  if (found < bucket->GetCount()) (*bucket)[found] = last;
}

int DebugLeaks::HasLeaks() {
  std::lock_guard<std::mutex> lock(g_registryMutex);
  for (int i = 0; i < m_NumHash; ++i)
    if (m_ListedObjects[i] && m_ListedObjects[i]->GetCount() > 0) return 1;
  return 0;
}

int DebugLeaks::GetNumLeaks() {
  std::lock_guard<std::mutex> lock(g_registryMutex);
  int total = 0;
  for (int i = 0; i < m_NumHash; ++i)
    if (m_ListedObjects[i]) total += static_cast<int>(m_ListedObjects[i]->GetCount());
  return total;
}

void DebugLeaks::ShowAllLeaks(std::ostream& os) const {
  std::lock_guard<std::mutex> lock(g_registryMutex);
  int n = 0;
  for (int i = 0; i < m_NumHash; ++i) {
    if (!m_ListedObjects[i]) continue;
    const LeaksInfoArray& bucket = *m_ListedObjects[i];
    for (unsigned int k = 0; k < bucket.GetCount(); ++k, ++n)
      os << "Leak: " << n << " Created: " << bucket[k].Creator << " in " << bucket[k].FileName << " at line number "
         << bucket[k].LineNumber << "\n";
  }
  os << "Found " << n << " Leaks\n";
}

void DebugLeaks::PrintSelf(std::ostream& os, Indent indent) const {
  std::lock_guard<std::mutex> lock(g_registryMutex);
  int used = 0;
  for (int i = 0; i < m_NumHash; ++i) used += m_ListedObjects[i] ? 1 : 0;
  os << indent << "NumHash: " << m_NumHash << "\n";
  os << indent << "ListedObjects: " << (m_ListedObjects ? " Not Null" : " NULL") << "\n";
  os << indent << used << " hashes used\n";
}

void DebugLeaks::AddObject(Object* object) { VEK_REPORT_ERROR("Should not be calling this function" << *object); }

void DebugLeaks::RemoveObject(Object* object) { VEK_REPORT_ERROR("Should not be calling this function" << *object); }

std::ostream& operator<<(std::ostream& os, const DebugLeaks& leaks) {
  leaks.PrintSelf(os, Indent(0));
  leaks.ShowAllLeaks(os);
  return os;
}

}  // namespace vek
