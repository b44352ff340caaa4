#include "vekConfigurationDatabase.h"

#include "vekClassInitializer.h"

namespace vek {

ConfigurationDatabase* ConfigurationDatabase::New() { return new ConfigurationDatabase; }

std::string ConfigurationDatabase::GetConfigurationDirectory() {
  ClassInitializer::Initialize(nullptr);
  return ClassInitializer::GetInstance()->GetConfigDirectoryName();
}

void ConfigurationDatabase::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "CalibrationGroupId: " << CalibrationGroupId << "\n";
}

}  // namespace vek
