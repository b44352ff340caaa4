#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <vector>

#include "vekBrownLensWarp.h"
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

namespace vek {
namespace {

// A calibration folder in memory: one projector per entry of `cameraShifts`, each of
// width x height pixels with columns x rows spots, seen shifted by its shift (no distortion).
SmartPointer<CalibrationFolder> ShiftedFolder(int width, int height, int columns, int rows,
                                              const std::vector<vec2<float>>& cameraShifts,
                                              const OrderedQuadrilateral& fill) {
  auto folder = SmartPointer<CalibrationFolder>::New();
  auto lens = SmartPointer<BrownLensWarp>::New();  // all distortion terms 0: the identity
  lens->SetCameraDimensions(1000, 1000);
  lens->SetFocalLengthX(1000);
  lens->SetFocalLengthY(1000);
  lens->SetCenterX(500);
  lens->SetCenterY(500);
  folder->SetLens(lens.GetPointer());
  for (const vec2<float>& shift : cameraShifts) {
    auto spots = SmartPointer<SpotGrid>::New();
    spots->SetProjectorWidth(width);
    spots->SetProjectorHeight(height);
    spots->SetColumns(columns);
    spots->SetRows(rows);
    std::vector<vec2<float>> projector, camera;
    for (int j = 0; j < rows; ++j)
      for (int i = 0; i < columns; ++i) {
        const vec2<float> p(i * (width - 1.0f) / (columns - 1), j * (height - 1.0f) / (rows - 1));
        projector.push_back(p);
        camera.emplace_back(p.x + shift.x, p.y + shift.y);
      }
    spots->GetProjectorPoints() = projector;
    spots->GetCameraPoints() = camera;
    folder->AddSpotGrid(spots.GetPointer());
  }
  folder->SetFillRegion(fill);
  return folder;
}

OrderedQuadrilateral Rectangle(float left, float top, float right, float bottom) {
  return OrderedQuadrilateral({left, top}, {right, top}, {left, bottom}, {right, bottom});
}

TEST(WarpCalibration, TheSmallestCaseGivesTheseExactBytes) {
  // 2 x 2 spots on a 100 x 50 projector seen 10 px right and 20 px down, the fill region exactly
  // its footprint, one cell: corners (0, 0), (99, 0), (0, 49), (99, 49) show content (0, 0),
  // (1, 0), (0, 1), (1, 1) with alpha 1; the cell's triangles are (0, 3, 1) and (3, 0, 2); y is
  // written less 46.996 (49 - 46.996 = 2.004).
  test::TempDirectory directory;
  auto folder = ShiftedFolder(100, 50, 2, 2, {{10, 20}}, Rectangle(10, 20, 109, 69));
  ASSERT_EQ(folder->Write(directory.File("calibration")), VEK_SUCCESS);
  CalibrationSettingOverrides overrides;
  overrides.WarpStep = 100;
  ASSERT_EQ(WarpCalibration::Run(directory.File("calibration"), directory.File("out"), CalibrationSettings(), overrides),
            VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(directory.File("out/" + WarpCalibration::WarpFileName(0))),
            test::TextFileBytes("VERTICES 4\nFACES 2\nMAPPING NORMALIZED\nSAMPLING LINEAR\n"
                                "0 -46.996 1 0 0 \n99 -46.996 1 1 0 \n0 2.004 1 0 1 \n99 2.004 1 1 1 \n"
                                "[ 0 3 1 ]\n[ 3 0 2 ]\n"));
}

int Plain(int status) { return ErrorHelper::GetErrorWithoutCustomMessageFlag(status); }

TEST(WarpCalibration, BadInputGetsItsCodeAndLeavesEarlierOutputsWhole) {
  test::TempDirectory directory;
  const std::string out = directory.File("out");
  auto good = ShiftedFolder(100, 50, 3, 3, {{0, 0}, {80, 0}}, Rectangle(5, 5, 170, 45));
  ASSERT_EQ(good->Write(directory.File("good")), VEK_SUCCESS);
  ASSERT_EQ(WarpCalibration::Run(directory.File("good"), out, CalibrationSettings(), {}), VEK_SUCCESS);
  const std::string firstWarp = test::ReadFile(out + "/" + WarpCalibration::WarpFileName(0));
  const std::string summary = test::ReadFile(out + "/" + WarpCalibration::kSummaryFileName);
  ASSERT_FALSE(firstWarp.empty());

  auto fails = [&](const SmartPointer<CalibrationFolder>& folder, const std::string& name) {
    ErrorHelper::CleanUp();
    EXPECT_EQ(folder->Write(directory.File(name)), VEK_SUCCESS);
    const int status = WarpCalibration::Run(directory.File(name), out, CalibrationSettings(), {});
    EXPECT_EQ(test::ReadFile(out + "/" + WarpCalibration::WarpFileName(0)), firstWarp) << name;
    EXPECT_EQ(test::ReadFile(out + "/" + WarpCalibration::kSummaryFileName), summary) << name;
    return status;
  };
  // A projector whose spots the camera barely saw; the message names its file.
  auto blind = ShiftedFolder(100, 50, 3, 3, {{0, 0}, {80, 0}}, Rectangle(5, 5, 170, 45));
  std::vector<vec2<float>> seen = blind->GetSpotGrids()[1]->GetCameraPoints();
  for (size_t k = 3; k < seen.size(); ++k) seen[k] = vec2<float>();
  blind->GetSpotGrids()[1]->GetCameraPoints() = seen;
  const int blindStatus = fails(blind, "blind");
  EXPECT_EQ(Plain(blindStatus), VEK_TOO_FEW_SPOTS_FOUND);
  EXPECT_NE(ErrorHelper::GetErrorMessageWithNoExtras(blindStatus).find("projector_1.txt"), std::string::npos);
  // A fill region that no projector reaches.
  EXPECT_EQ(Plain(fails(ShiftedFolder(100, 50, 3, 3, {{0, 0}, {80, 0}}, Rectangle(500, 500, 600, 600)), "away")),
            VEK_UNABLE_TO_SET_CAMERA_SPACE_CORNERS_FROM_INPUT_SPACE_CORNERS);
  // Three projectors in a row, the outer two overlapping each other across the middle one's
  // cell: no consistent layout.
  EXPECT_EQ(Plain(fails(ShiftedFolder(100, 50, 3, 3, {{0, 0}, {90, 0}, {45, 0}}, Rectangle(5, 5, 150, 45)), "tangled")),
            VEK_INCONSISTENT_CONNECTIVITY_INFERRED);
  // A spot grid file that went missing.
  ASSERT_EQ(good->Write(directory.File("lost")), VEK_SUCCESS);
  std::filesystem::remove(directory.File("lost/" + CalibrationFolder::DefaultSpotGridFileName(1)));
  EXPECT_EQ(Plain(WarpCalibration::Run(directory.File("lost"), out, CalibrationSettings(), {})), VEK_FILE_NOT_FOUND);
  EXPECT_EQ(test::ReadFile(out + "/" + WarpCalibration::WarpFileName(0)), firstWarp);
}

}  // namespace
}  // namespace vek
