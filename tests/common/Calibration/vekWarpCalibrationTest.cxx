#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <vector>

#include "vekCalibrationAccuracy.h"
#include "vekCalibrationFolder.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekSyntheticWall.h"
#include "vekTestSupport.h"
#include "vekTextureMeshReader.h"
#include "vekWarpCalibration.h"

namespace vek {
namespace {

SyntheticWall::Parameters SmallWall(double noise) {
  SyntheticWall::Parameters parameters;
  parameters.Columns = 2;
  parameters.Rows = 1;
  parameters.NoiseSigma = noise;
  return parameters;
}

// The warps as the files hold them, judged against the wall.
CalibrationAccuracy::Result Judge(const SyntheticWall& wall, const std::string& outDir, int projectors) {
  std::vector<SmartPointer<TextureMesh>> meshes(projectors);
  std::vector<const TextureMesh*> warps;
  for (int p = 0; p < projectors; ++p) {
    EXPECT_EQ(TextureMeshReader::ReadFile((std::filesystem::path(outDir) / WarpCalibration::WarpFileName(p)).string(),
                                          meshes[p]),
              VEK_SUCCESS);
    warps.push_back(meshes[p].GetPointer());
  }
  CalibrationAccuracy::Result result;
  EXPECT_EQ(CalibrationAccuracy::Evaluate(wall, warps, CalibrationSettings::kDefaultBlendGamma, result, 20000),
            VEK_SUCCESS);
  return result;
}

TEST(WarpCalibration, ASmallWallLandsWithinTheTargets) {
  for (double noise : {0.0, 0.1}) {
    test::TempDirectory directory;
    auto wall = SmartPointer<SyntheticWall>::New();
    ASSERT_EQ(wall->Generate(SmallWall(noise)), VEK_SUCCESS);
    const std::string calibration = directory.File("calibration"), out = directory.File("warps");
    ASSERT_EQ(wall->WriteCalibrationFolder(calibration), VEK_SUCCESS);
    SmartPointer<WarpCalibration> run;
    ASSERT_EQ(WarpCalibration::Run(calibration, out, CalibrationSettings(), {}, &run), VEK_SUCCESS);
    ASSERT_EQ(run->GetNumberOfProjectors(), 2);
    EXPECT_EQ(run->GetNeighbors(0), std::vector<int>{1});
    EXPECT_EQ(run->GetNeighbors(1), std::vector<int>{0});
    // Both light more than half of the fill region; together at least all of it.
    EXPECT_GT(run->GetCoverage(0), 0.5);
    EXPECT_GT(run->GetCoverage(0) + run->GetCoverage(1), 1.0);

    const CalibrationAccuracy::Result result = Judge(*wall, out, 2);
    std::ostringstream report;
    CalibrationAccuracy::PrintReport(report, result);
    EXPECT_LE(result.ContentErrorMax, noise == 0 ? CalibrationAccuracy::kContentTargetNoiseFree
                                                 : CalibrationAccuracy::kContentTargetNoisy)
        << report.str();
    EXPECT_LE(result.BlendErrorMax, CalibrationAccuracy::kBlendMaxTarget) << report.str();
    EXPECT_LE(result.BlendErrorRMS, CalibrationAccuracy::kBlendRMSTarget) << report.str();
    EXPECT_EQ(result.UncoveredSamples, 0) << report.str();
  }
}

}  // namespace
}  // namespace vek
