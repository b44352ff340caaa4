// The calibration records kept beside the options (see the "Calibration records" section of
// vekConfigurationDatabase.h).
#include <algorithm>
#include <fstream>
#include <sstream>

#include "vekAlphaTweakingData.h"
#include "vekConfigurationDatabase.h"
#include "vekControlPoints.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekMeshTweakingData.h"
#include "vekRecordFile.h"
#include "vekRecursiveLock.h"
#include "vekRestorePointInfo.h"
#include "vekUniformAngleRemappingData.h"

namespace vek {

namespace {

constexpr char kBoundaryFile[] = "ExtrudedCurveScreenBoundary";
constexpr char kInputSpaceFile[] = "ControlPointLocations";
constexpr char kCameraSpaceFile[] = "CameraSpaceControlPoints";
constexpr char kPerspectiveFile[] = "PerspectiveMeshTweakingData.txt";
constexpr char kOrthographicFile[] = "OrthographicMeshTweakingData.txt";
constexpr char kAlphaFile[] = "AlphaTweakingData.txt";

RecursiveLock& Lock() { return RecursiveLock::ConfigurationLock(); }

std::string RecordPath(const std::string& name) { return ConfigurationDatabase::GetConfigurationDirectory() + name; }

void WriteCurve(std::ostream& os, const std::vector<float>& xs, const std::vector<float>& ys) {
  os << xs.size() << "\n";
  for (size_t k = 0; k < xs.size(); ++k) os << xs[k] << " " << ys[k] << "\n";
}

int ReadCurve(std::istream& in, std::vector<float>& xs, std::vector<float>& ys) {
  long long count = 0;
  if (!(in >> count)) return VEK_UNABLE_TO_READ_NUM_FROM_FILE;
  if (count < 0)
    return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_READ_NUM_FROM_FILE, "Negative numbers unexpected");
  xs.clear();
  ys.clear();
  const size_t reserve = static_cast<size_t>(std::min<long long>(count, RecordFile::kReserveLimit));
  xs.reserve(reserve);
  ys.reserve(reserve);
  for (long long k = 0; k < count; ++k) {
    float x = 0, y = 0;
    if (!(in >> x >> y)) return VEK_UNABLE_TO_READ_NUM_FROM_FILE;
    xs.push_back(x);
    ys.push_back(y);
  }
  return VEK_SUCCESS;
}

int SaveGrid(const std::string& path, const std::vector<float>& xs, const std::vector<float>& ys, int w, int h) {
  if (w < 0 || h < 0) return VEK_INVALID_PARAMETERS;
  const long long count = static_cast<long long>(w) * h;
  if (static_cast<long long>(xs.size()) != count || static_cast<long long>(ys.size()) != count)
    return VEK_INVALID_PARAMETERS;
  SmartPointer<ControlPoints> grid = SmartPointer<ControlPoints>::New();
  if (!grid) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  int status = grid->SetGridSize(w, h);
  if (status != VEK_SUCCESS) return status;
  for (int k = 0; k < grid->GetNumPoints(); ++k) grid->SetPoint(k, vec2<float>(xs[k], ys[k]));
  return grid->WriteToFile(path);
}

int LoadGrid(const std::string& path, std::vector<float>& xs, std::vector<float>& ys, int& w, int& h) {
  xs.clear();
  ys.clear();
  w = h = 0;
  SmartPointer<ControlPoints> grid = SmartPointer<ControlPoints>::New();
  if (!grid) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  std::ifstream probe(path, std::ios::binary);
  if (!probe) return VEK_SUCCESS;  // no grid saved yet
  probe.close();
  const int status = grid->ReadFromFile(path);
  if (status != VEK_SUCCESS) return status;
  try {
    xs.reserve(grid->GetPoints().size());
    ys.reserve(grid->GetPoints().size());
    for (const vec2<float>& p : grid->GetPoints()) {
      xs.push_back(p.x);
      ys.push_back(p.y);
    }
  } catch (const std::bad_alloc&) {
    xs.clear();
    ys.clear();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  w = grid->GetGridWidth();
  h = grid->GetGridHeight();
  return VEK_SUCCESS;
}

std::string CameraSpaceFile(int camera) { return RecordPath(kCameraSpaceFile + std::to_string(camera)); }

}  // namespace

int ConfigurationDatabase::SaveExtrudedCurveScreenBoundaryData(
    const std::vector<float>& x1, const std::vector<float>& y1, const std::vector<float>& x2,
    const std::vector<float>& y2, const std::vector<float>& x3, const std::vector<float>& y3) {
  RecursiveLockGuard guard(Lock());
  if (y1.size() < x1.size() || y2.size() < x2.size() || y3.size() < x3.size()) return VEK_INVALID_PARAMETERS;
  std::ostringstream text;
  WriteCurve(text, x1, y1);
  WriteCurve(text, x2, y2);
  WriteCurve(text, x3, y3);
  const int status = RecordFile::Replace(RecordPath(kBoundaryFile), text.str());
  // Callers of this record compare with the plain code.
  if (ErrorHelper::AreErrorsTheSame(status, VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING))
    return VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING;
  return status;
}

int ConfigurationDatabase::LoadExtrudedCurveScreenBoundaryData(std::vector<float>& x1, std::vector<float>& y1,
                                                               std::vector<float>& x2, std::vector<float>& y2,
                                                               std::vector<float>& x3, std::vector<float>& y3) {
  RecursiveLockGuard guard(Lock());
  std::ifstream in(RecordPath(kBoundaryFile), std::ios::binary);
  if (!in) return VEK_SUCCESS;  // a screen without a saved boundary
  std::vector<float> curves[6];
  try {
    for (int c = 0; c < 3; ++c) {
      const int status = ReadCurve(in, curves[2 * c], curves[2 * c + 1]);
      if (status != VEK_SUCCESS) return status;
    }
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  x1.swap(curves[0]);
  y1.swap(curves[1]);
  x2.swap(curves[2]);
  y2.swap(curves[3]);
  x3.swap(curves[4]);
  y3.swap(curves[5]);
  return VEK_SUCCESS;
}

int ConfigurationDatabase::SaveInputSpaceBoundaryPoints(const std::vector<float>& xs, const std::vector<float>& ys,
                                                        const int& w, const int& h) {
  RecursiveLockGuard guard(Lock());
  return SaveGrid(RecordPath(kInputSpaceFile), xs, ys, w, h);
}

int ConfigurationDatabase::LoadInputSpaceBoundaryPoints(std::vector<float>& xs, std::vector<float>& ys, int& w,
                                                        int& h) {
  RecursiveLockGuard guard(Lock());
  return LoadGrid(RecordPath(kInputSpaceFile), xs, ys, w, h);
}

int ConfigurationDatabase::SaveCameraSpaceBoundaryPoints(int camera, const std::vector<float>& xs,
                                                         const std::vector<float>& ys, const int& w, const int& h) {
  RecursiveLockGuard guard(Lock());
  if (camera < 0) return VEK_INVALID_PARAMETERS;
  return SaveGrid(CameraSpaceFile(camera), xs, ys, w, h);
}

int ConfigurationDatabase::LoadCameraSpaceBoundaryPoints(int camera, std::vector<float>& xs, std::vector<float>& ys,
                                                         int& w, int& h) {
  RecursiveLockGuard guard(Lock());
  if (camera < 0) {
    xs.clear();
    ys.clear();
    w = h = 0;
    return VEK_INVALID_PARAMETERS;
  }
  return LoadGrid(CameraSpaceFile(camera), xs, ys, w, h);
}

int ConfigurationDatabase::SavePerspectiveMeshTweakingData(const UniformAngleRemappingData* data) {
  RecursiveLockGuard guard(Lock());
  return data ? data->Write(RecordPath(kPerspectiveFile)) : VEK_INVALID_PARAMETERS;
}

int ConfigurationDatabase::LoadPerspectiveMeshTweakingData(UniformAngleRemappingData* data) {
  RecursiveLockGuard guard(Lock());
  return data ? data->Read(RecordPath(kPerspectiveFile)) : VEK_INVALID_PARAMETERS;
}

int ConfigurationDatabase::SaveOrthographicMeshTweakingData(const SmartPointer<MeshTweakingData>& data) {
  RecursiveLockGuard guard(Lock());
  return data ? data->WriteToFile(RecordPath(kOrthographicFile)) : VEK_INVALID_PARAMETERS;
}

int ConfigurationDatabase::LoadOrthographicMeshTweakingData(SmartPointer<MeshTweakingData>& data) {
  RecursiveLockGuard guard(Lock());
  if (!data) data = SmartPointer<MeshTweakingData>::New();
  return data ? data->ReadFromFile(RecordPath(kOrthographicFile)) : VEK_FAILED_TO_ALLOCATE_MEMORY;
}

int ConfigurationDatabase::SaveAlphaTweakingData(const SmartPointer<AlphaTweakingData>& data) {
  RecursiveLockGuard guard(Lock());
  return data ? data->WriteToFile(RecordPath(kAlphaFile)) : VEK_INVALID_PARAMETERS;
}

int ConfigurationDatabase::LoadAlphaTweakingData(SmartPointer<AlphaTweakingData>& data) {
  RecursiveLockGuard guard(Lock());
  if (!data) data = SmartPointer<AlphaTweakingData>::New();
  return data ? data->ReadFromFile(RecordPath(kAlphaFile)) : VEK_FAILED_TO_ALLOCATE_MEMORY;
}

int ConfigurationDatabase::SaveRestorePointInfoFile(const std::string& path, const RestorePointInfo& info) {
  RecursiveLockGuard guard(Lock());
  return info.WriteToFile(path);
}

int ConfigurationDatabase::LoadRestorePointInfoFile(const std::string& path, RestorePointInfo& info) {
  RecursiveLockGuard guard(Lock());
  return info.ReadFromFile(path);
}

}  // namespace vek
