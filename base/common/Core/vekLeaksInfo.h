#pragma once
#include <string>

#include "vekCommonExport.h"

namespace vek {

class Object;

/// Where one listed object was created. Two records are equal when they list the same object.
struct VEK_EXPORT LeaksInfo {
  static constexpr int kUnknownLine = -1;

  std::string FileName;
  std::string Creator;  // printed after "Created: "
  int LineNumber = kUnknownLine;
  Object* ListedObject = nullptr;

  bool operator==(const LeaksInfo& other) const { return ListedObject == other.ListedObject; }
};

}  // namespace vek
