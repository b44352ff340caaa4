#include "vekCalibrationDemo.h"

#include <filesystem>
#include <vector>

#include "vekErrorCodes.h"
#include "vekTextureMeshReader.h"

namespace vek {

int CalibrationDemo::Run(const std::string& outDir, const SyntheticWall::Parameters& parameters,
                         const CalibrationSettings& settings, CalibrationAccuracy::Result& accuracy,
                         SmartPointer<WarpCalibration>* result, WarpCalibration::ProgressFunction progress) {
  const std::filesystem::path out(outDir);
  const std::string calibrationDir = (out / kCalibrationFolder).string(), warpDir = (out / kWarpFolder).string();
  SmartPointer<SyntheticWall> wall = SmartPointer<SyntheticWall>::New();
  if (!wall) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  int status = wall->Generate(parameters);
  if (status == VEK_SUCCESS) status = wall->WriteCalibrationFolder(calibrationDir);
  SmartPointer<WarpCalibration> run;
  if (status == VEK_SUCCESS)
    status = WarpCalibration::Run(calibrationDir, warpDir, settings, {}, &run, std::move(progress));
  if (status == VEK_SUCCESS) status = run->WriteCameraView((out / kCameraViewFile).string());
  if (status == VEK_SUCCESS) status = run->WriteAlphaMaps(warpDir);
  if (status != VEK_SUCCESS) return status;

  std::vector<SmartPointer<TextureMesh>> warps(run->GetNumberOfProjectors());
  std::vector<const TextureMesh*> judged;
  for (int p = 0; p < run->GetNumberOfProjectors(); ++p) {
    status = TextureMeshReader::ReadFile((std::filesystem::path(warpDir) / WarpCalibration::WarpFileName(p)).string(),
                                         warps[p]);
    if (status != VEK_SUCCESS) return status;
    judged.push_back(warps[p].GetPointer());
  }
  status = CalibrationAccuracy::Evaluate(*wall, judged, run->GetSettings().BlendGamma, accuracy);
  if (status == VEK_SUCCESS && result) *result = run;
  return status;
}

}  // namespace vek
