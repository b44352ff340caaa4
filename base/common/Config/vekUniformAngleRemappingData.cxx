#include "vekUniformAngleRemappingData.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <new>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekIOBase.h"
#include "vekObjectStream.h"
#include "vekRecordFile.h"

namespace vek {

namespace {

float Nominal(float minimum, float maximum, int count, int index) {
  if (count <= 1) return minimum;
  return static_cast<float>(minimum +
                            static_cast<double>(index) * (static_cast<double>(maximum) - minimum) / (count - 1));
}

// Each count is bounded before the product: counts read from a file may multiply past long long.
bool ValidCounts(long long numx, long long numy) {
  return numx >= 0 && numy >= 0 && numx <= INT_MAX && numy <= INT_MAX && numx * numy <= INT_MAX;
}

}  // namespace

UniformAngleRemappingData* UniformAngleRemappingData::New() { return new (std::nothrow) UniformAngleRemappingData; }

void UniformAngleRemappingData::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Azimuth: " << AzimuthMin << " " << AzimuthMax << "\n";
  os << indent << "Elevation: " << ElevationMin << " " << ElevationMax << "\n";
  os << indent << "Numx: " << Numx << "\n";
  os << indent << "Numy: " << Numy << "\n";
}

int UniformAngleRemappingData::SetUniformSampling(float azimuthMin, float azimuthMax, float elevationMin,
                                                  float elevationMax, int numx, int numy) {
  if (!ValidCounts(numx, numy)) return VEK_INVALID_PARAMETERS;
  std::vector<vec2<float>> angles;
  try {
    angles.resize(static_cast<size_t>(numx) * static_cast<size_t>(numy));
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  AzimuthMin = azimuthMin;
  AzimuthMax = azimuthMax;
  ElevationMin = elevationMin;
  ElevationMax = elevationMax;
  Numx = numx;
  Numy = numy;
  Angles.swap(angles);
  for (int j = 0; j < Numy; ++j)
    for (int i = 0; i < Numx; ++i) Angles[static_cast<size_t>(j) * Numx + i] = GetNominalAngle(i, j);
  return VEK_SUCCESS;
}

vec2<float> UniformAngleRemappingData::GetNominalAngle(int i, int j) const {
  return vec2<float>(Nominal(AzimuthMin, AzimuthMax, Numx, i), Nominal(ElevationMin, ElevationMax, Numy, j));
}

vec2<float> UniformAngleRemappingData::GetRemappedAngle(int node) const {
  if (node < 0 || node >= GetNumberOfNodes()) return vec2<float>();
  return Angles[static_cast<size_t>(node)];
}

int UniformAngleRemappingData::SetRemappedAngle(int node, const vec2<float>& angle) {
  if (node < 0 || node >= GetNumberOfNodes()) return VEK_INVALID_PARAMETERS;
  Angles[static_cast<size_t>(node)] = angle;
  return VEK_SUCCESS;
}

int UniformAngleRemappingData::Write(std::ostream& os, const std::string& indent) const {
  std::ostringstream text;
  text.precision(RecordFile::kFloatDigits);
  ObjectStream::WriteObjectHeader(text, indent, kType, kVersion);
  text << indent << "Azimuth " << AzimuthMin << " " << AzimuthMax << " \n";
  text << indent << "Elevation " << ElevationMin << " " << ElevationMax << " \n";
  text << indent << "Nodes " << Numx << " " << Numy << " \n";
  for (const vec2<float>& a : Angles) text << indent << "  " << a.x << " " << a.y << " \n";
  ObjectStream::WriteObjectFooter(text, indent);
  os << text.str();
  os.flush();
  return os.fail() ? VEK_UNABLE_TO_WRITE_TO_STREAM : VEK_SUCCESS;
}

int UniformAngleRemappingData::Read(std::istream& in) {
  int status = RecordFile::ReadFrame(in, kType, kVersion);
  if (status != VEK_SUCCESS) return status;
  const std::string failed = std::string("Failed to read ") + kType + " from stream, ";
  // A labelled line: the label, then its values.
  auto readLine = [&](const char* label, auto&... values) {
    std::string word;
    in >> word;
    if (word != label)
      return RecordFile::Damaged(in, VEK_FILE_NOT_FORMATTED_PROPERLY, failed + "label '" + label + "' expected.");
    if (!((in >> values) && ...))
      return RecordFile::Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE, failed + "bad values after '" + label + "'.");
    return VEK_SUCCESS;
  };
  float azimuthMin, azimuthMax, elevationMin, elevationMax;
  long long numx = -1, numy = -1;
  if ((status = readLine("Azimuth", azimuthMin, azimuthMax)) != VEK_SUCCESS) return status;
  if ((status = readLine("Elevation", elevationMin, elevationMax)) != VEK_SUCCESS) return status;
  if ((status = readLine("Nodes", numx, numy)) != VEK_SUCCESS) return status;
  if (!ValidCounts(numx, numy))
    return RecordFile::Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE, failed + "bad counts.");
  const long long count = numx * numy;
  std::vector<vec2<float>> angles;
  status = RecordFile::ReadValues(in, count, angles, failed, "node");
  if (status != VEK_SUCCESS) return status;
  status = RecordFile::ReadEndOfObject(in, kType);
  if (status != VEK_SUCCESS) return status;
  AzimuthMin = azimuthMin;
  AzimuthMax = azimuthMax;
  ElevationMin = elevationMin;
  ElevationMax = elevationMax;
  Numx = static_cast<int>(numx);
  Numy = static_cast<int>(numy);
  Angles.swap(angles);
  return VEK_SUCCESS;
}

int UniformAngleRemappingData::Write(const std::string& fileName) const {
  return RecordFile::WriteRecord(*this, fileName);
}

int UniformAngleRemappingData::Read(const std::string& fileName) { return RecordFile::ReadRecord(*this, fileName); }

}  // namespace vek
