#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <limits>
#include <string>
#include <vector>

#include "../../fuzz/vekRegressionInputs.h"
#include "vekBrownLensWarp.h"
#include "vekCalibrationFolder.h"
#include "vekCalibrationSettings.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekSmartPointer.h"
#include "vekSpotGrid.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using test::TempDirectory;

int Code(int status) { return ErrorHelper::GetErrorWithoutCustomMessageFlag(status); }
std::string Message(int status) { return ErrorHelper::GetErrorMessageWithNoExtras(status); }

// A 2 x 2 grid of a 4 x 3 projector whose second spot was not found.
SmartPointer<SpotGrid> TinyGrid(float shift = 0) {
  auto grid = SmartPointer<SpotGrid>::New();
  grid->SetProjectorWidth(4);
  grid->SetProjectorHeight(3);
  grid->SetColumns(2);
  grid->SetRows(2);
  grid->GetProjectorPoints() = {{0, 0}, {3, 0}, {0, 2}, {3, 2}};
  grid->GetCameraPoints() = {{10.5f + shift, 20.25f}, {}, {11, 21.5f}, {12.125f, 22}};
  return grid;
}

const char kTinyGridFile[] =
    "#DataFile\n\nFileVersion###1\n"
    "Int###ProjectorWidth###4###\nInt###ProjectorHeight###3###\nInt###GridColumns###2###\nInt###GridRows###2###\n"
    "FloatArray###ProjectorPoints###8@@@0@@@0@@@3@@@0@@@0@@@2@@@3@@@2###\n"
    "FloatArray###CameraPoints###8@@@10.5@@@20.25@@@-5@@@-5@@@11@@@21.5@@@12.125@@@22###\n";

void ExpectSameGrid(const SpotGrid& a, const SpotGrid& b) {
  EXPECT_EQ(a.GetProjectorWidth(), b.GetProjectorWidth());
  EXPECT_EQ(a.GetProjectorHeight(), b.GetProjectorHeight());
  EXPECT_EQ(a.GetColumns(), b.GetColumns());
  EXPECT_EQ(a.GetRows(), b.GetRows());
  EXPECT_EQ(a.GetProjectorPoints(), b.GetProjectorPoints());
  EXPECT_EQ(a.GetCameraPoints(), b.GetCameraPoints());
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
  const size_t at = text.find(from);
  EXPECT_NE(at, std::string::npos) << from;
  if (at != std::string::npos) text.replace(at, from.size(), to);
  return text;
}

TEST(CalibrationSettings, ValidateHoldsEachValueToItsRange) {
  EXPECT_EQ(CalibrationSettings().Validate(), VEK_SUCCESS);
  struct Case {
    double gamma;
    int step, width, height;
    bool valid;
    const char* named;
  };
  const double nan = std::numeric_limits<double>::quiet_NaN();
  for (const Case& c : {Case{10, 1, 1, 1, true, ""}, Case{0.01, 64, 4096, 2160, true, ""},
                        Case{10.0001, 32, 1920, 1080, false, "BlendGamma"}, Case{0, 32, 1920, 1080, false, "BlendGamma"},
                        Case{nan, 32, 1920, 1080, false, "BlendGamma"}, Case{2.2, 0, 1920, 1080, false, "WarpStep"},
                        Case{2.2, 32, 0, 1080, false, "ContentWidth"}, Case{2.2, 32, 1920, -1, false, "ContentHeight"}}) {
    CalibrationSettings settings;
    settings.BlendGamma = c.gamma;
    settings.WarpStep = c.step;
    settings.ContentWidth = c.width;
    settings.ContentHeight = c.height;
    const int status = settings.Validate();
    if (c.valid) {
      EXPECT_EQ(status, VEK_SUCCESS) << c.gamma << " " << c.step;
    } else {
      EXPECT_EQ(Code(status), VEK_INVALID_PARAMETERS) << c.named;
      EXPECT_NE(Message(status).find(c.named), std::string::npos) << Message(status);
    }
  }
}

TEST(SpotGrid, WritesTheDocumentedBytesAndReadsThemBack) {
  TempDirectory dir;
  auto grid = TinyGrid();
  EXPECT_EQ(grid->CountFoundSpots(), 3);
  ASSERT_EQ(grid->Write(dir.File("grid.txt")), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(dir.File("grid.txt")), test::TextFileBytes(kTinyGridFile));

  auto read = SmartPointer<SpotGrid>::New();
  ASSERT_EQ(read->Read(dir.File("grid.txt")), VEK_SUCCESS);
  ExpectSameGrid(*read, *grid);
  EXPECT_TRUE(read->GetCameraPoints()[1].IsUnset());

  // Coordinates that need more than six digits come back exactly.
  grid->GetCameraPoints()[0] = vec2<float>(1234.5677f, 0.1f);
  ASSERT_EQ(grid->Write(dir.File("grid.txt")), VEK_SUCCESS);
  ASSERT_EQ(read->Read(dir.File("grid.txt")), VEK_SUCCESS);
  ExpectSameGrid(*read, *grid);
}

TEST(SpotGrid, RefusesBadFilesNamingThemAndKeepsWhatItHeld) {
  TempDirectory dir;
  const std::string path = dir.File("projector_3.txt");
  struct Case {
    std::string text;
    const char* says;
  };
  const std::string good = kTinyGridFile;
  const std::vector<Case> cases = {
      {"hello\n", "damaged"},
      {Replace(good, "FloatArray###CameraPoints###8@@@10.5@@@20.25@@@-5@@@-5@@@11@@@21.5@@@12.125@@@22###\n", ""),
       "no FloatArray variable CameraPoints"},
      {Replace(good, "Int###GridColumns###2###", "Float###GridColumns###2###"), "GridColumns should be Int"},
      {Replace(good, "8@@@0@@@0@@@3@@@0@@@0@@@2@@@3@@@2", "6@@@0@@@0@@@3@@@0@@@0@@@2"), "not 8"},
      {Replace(good, "8@@@0@@@0@@@3@@@0@@@0@@@2@@@3@@@2", "7@@@0@@@0@@@3@@@0@@@0@@@2@@@3"), "odd"},
      {Replace(good, "Int###GridRows###2###", "Int###GridRows###1###"), "fewer than 2"},
      {Replace(good, "Int###ProjectorWidth###4###", "Int###ProjectorWidth###0###"), "not positive"},
      {Replace(good, "@@@12.125@@@", "@@@nan@@@"), "element 6 is no number"},
      {Replace(good, "@@@12.125@@@", "@@@1x@@@"), "damaged spot grid file"},
  };
  auto grid = TinyGrid(1);
  for (const Case& c : cases) {
    test::WriteFile(path, c.text);
    const int status = grid->Read(path);
    EXPECT_EQ(Code(status), VEK_BAD_PARSE) << c.text;
    EXPECT_NE(Message(status).find(path), std::string::npos) << Message(status);
    EXPECT_NE(Message(status).find(c.says), std::string::npos) << Message(status);
    ExpectSameGrid(*grid, *TinyGrid(1));
  }
  const int missing = grid->Read(dir.File("absent.txt"));
  EXPECT_EQ(Code(missing), VEK_FILE_NOT_FOUND);
  EXPECT_NE(Message(missing).find(dir.File("absent.txt")), std::string::npos);
  ExpectSameGrid(*grid, *TinyGrid(1));
}

TEST(SpotGrid, WriteRefusesAGridThatWouldNotReadBack) {
  TempDirectory dir;
  auto grid = TinyGrid();
  grid->GetCameraPoints().pop_back();
  EXPECT_EQ(Code(grid->Write(dir.File("g.txt"))), VEK_INVALID_PARAMETERS);
  grid = TinyGrid();
  grid->GetProjectorPoints()[2].x = std::numeric_limits<float>::infinity();
  EXPECT_EQ(Code(grid->Write(dir.File("g.txt"))), VEK_INVALID_PARAMETERS);
  grid = TinyGrid();
  grid->SetColumns(1);
  EXPECT_EQ(Code(grid->Write(dir.File("g.txt"))), VEK_INVALID_PARAMETERS);
  EXPECT_FALSE(std::filesystem::exists(dir.File("g.txt")));
}

SmartPointer<BrownLensWarp> Lens() {
  auto lens = SmartPointer<BrownLensWarp>::New();
  lens->SetCameraDimensions(4000, 3000);
  lens->SetFocalLengthX(3000);
  lens->SetFocalLengthY(3000);
  lens->SetCenterX(1999.5f);
  lens->SetCenterY(1499.5f);
  lens->Setk1(-0.28f);
  lens->Setk2(0.09f);
  return lens;
}

SmartPointer<CalibrationFolder> TwoProjectorFolder() {
  auto folder = SmartPointer<CalibrationFolder>::New();
  folder->SetLens(Lens().GetPointer());
  folder->AddSpotGrid(TinyGrid().GetPointer());
  folder->AddSpotGrid(TinyGrid(100).GetPointer());
  folder->SetFillRegion(OrderedQuadrilateral({100, 200}, {900, 180}, {120, 700}, {880, 720}));
  folder->SetBlendGamma(1.8);
  folder->SetWarpStep(16);
  return folder;
}

const char kIndexFile[] =
    "#DataFile\n\nFileVersion###1\n"
    "String###LensFile###camera.lens###\n"
    "StringArray###SpotGridFiles###2@@@projector_0.txt@@@projector_1.txt###\n"
    "FloatArray###FillRegion###8@@@100@@@200@@@900@@@180@@@120@@@700@@@880@@@720###\n"
    "Double###BlendGamma###1.8###\n"
    "Int###WarpStep###16###\n";

TEST(CalibrationFolder, RoundTripsThroughTheDocumentedFiles) {
  TempDirectory dir;
  const std::string where = (dir.Path() / "new" / "folder").string();
  auto folder = TwoProjectorFolder();
  ASSERT_EQ(folder->Write(where), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(where + "/calibration.txt"), test::TextFileBytes(kIndexFile));
  EXPECT_EQ(test::ReadFile(where + "/projector_0.txt"), test::TextFileBytes(kTinyGridFile));
  EXPECT_TRUE(std::filesystem::exists(where + "/projector_1.txt"));
  EXPECT_TRUE(std::filesystem::exists(where + "/camera.lens"));

  auto read = SmartPointer<CalibrationFolder>::New();
  ASSERT_EQ(read->Read(where), VEK_SUCCESS);
  ASSERT_EQ(read->GetNumberOfSpotGrids(), 2);
  ExpectSameGrid(*read->GetSpotGrid(0), *TinyGrid());
  ExpectSameGrid(*read->GetSpotGrid(1), *TinyGrid(100));
  EXPECT_EQ(read->GetSpotGridFileNames(), (std::vector<std::string>{"projector_0.txt", "projector_1.txt"}));
  EXPECT_EQ(read->GetLensFileName(), "camera.lens");
  auto* lens = dynamic_cast<BrownLensWarp*>(read->GetLens());
  ASSERT_NE(lens, nullptr);
  EXPECT_EQ(lens->GetFocalLengthX(), 3000.0f);
  EXPECT_EQ(lens->GetCenterY(), 1499.5f);
  EXPECT_EQ(lens->Getk1(), -0.28f);
  EXPECT_EQ(lens->Getk2(), 0.09f);
  for (int k = 0; k < 4; ++k) EXPECT_EQ(read->GetFillRegion().GetPoint(k), folder->GetFillRegion().GetPoint(k));
  EXPECT_EQ(read->GetBlendGamma(), 1.8);
  EXPECT_EQ(read->GetWarpStep(), 16);
  EXPECT_FALSE(read->GetContentWidth().has_value());
  EXPECT_FALSE(read->GetContentHeight().has_value());

  // Only what the folder sets overrides what the caller brought.
  CalibrationSettings settings;
  settings.BlendGamma = 2.4;
  settings.ContentWidth = 1280;
  read->ApplySettingsTo(settings);
  EXPECT_EQ(settings.BlendGamma, 1.8);
  EXPECT_EQ(settings.WarpStep, 16);
  EXPECT_EQ(settings.ContentWidth, 1280);
  EXPECT_EQ(settings.ContentHeight, CalibrationSettings::kDefaultContentHeight);
}

TEST(CalibrationFolder, ReadRefusesEachBadPieceNamingItsFileAndChangesNothing) {
  struct Case {
    const char* file;  // the file changed, and named in the message
    std::string text;  // its new content; empty: the file is removed
    int code;
    const char* says;
  };
  const std::string index = kIndexFile;
  const std::vector<Case> cases = {
      {"calibration.txt", "", VEK_FILE_NOT_FOUND, "not found"},
      {"camera.lens", "", VEK_FILE_NOT_FOUND, "not found"},
      {"projector_1.txt", "", VEK_FILE_NOT_FOUND, "not found"},
      {"camera.lens", "garbage\n", VEK_BAD_PARSE, "lens"},
      {"camera.lens", "3 1.1 4000 3000 -1 -1 -1 -1 0 0 0 0 0 0 0 0\n", VEK_BAD_PARSE, "focal length"},
      {"projector_0.txt", Replace(kTinyGridFile, "Int###GridRows###2###\n", ""), VEK_BAD_PARSE, "GridRows"},
      {"calibration.txt", Replace(index, "8@@@100@@@200@@@900@@@180@@@120@@@700@@@880@@@720", "6@@@100@@@200@@@900@@@180@@@120@@@700"),
       VEK_BAD_PARSE, "not 8"},
      {"calibration.txt", Replace(index, "@@@880@@@720", "@@@-5@@@-5"), VEK_BAD_PARSE, "corner 3"},
      {"calibration.txt", Replace(index, "StringArray###SpotGridFiles###2@@@projector_0.txt@@@projector_1.txt###\n", ""),
       VEK_BAD_PARSE, "SpotGridFiles"},
      {"calibration.txt", Replace(index, "String###LensFile###camera.lens###\n", ""), VEK_BAD_PARSE, "LensFile"},
      {"calibration.txt", Replace(index, "camera.lens", "camera.lens\tx"), VEK_BAD_PARSE, "control character"},
      {"calibration.txt", Replace(index, "Double###BlendGamma###1.8###", "Double###BlendGamma###0###"), VEK_BAD_PARSE,
       "BlendGamma"},
      {"calibration.txt", Replace(index, "Int###WarpStep###16###", "Double###WarpStep###16###"), VEK_BAD_PARSE,
       "WarpStep should be Int"},
      {"calibration.txt", "#DataFile\n\nFileVersion###x\n", VEK_BAD_PARSE, "damaged"},
  };
  for (const Case& c : cases) {
    TempDirectory dir;
    const std::string where = dir.Path().string();
    ASSERT_EQ(TwoProjectorFolder()->Write(where), VEK_SUCCESS);
    const std::string changed = dir.File(c.file);
    if (c.text.empty())
      std::filesystem::remove(changed);
    else
      test::WriteFile(changed, c.text);

    auto folder = TwoProjectorFolder();
    LensWarp* lens = folder->GetLens();
    folder->SetWarpStep(std::nullopt);
    const int status = folder->Read(where);
    EXPECT_EQ(Code(status), c.code) << c.file << ": " << Message(status);
    EXPECT_NE(Message(status).find(changed), std::string::npos) << Message(status);
    EXPECT_NE(Message(status).find(c.says), std::string::npos) << Message(status);
    EXPECT_EQ(folder->GetLens(), lens);
    EXPECT_FALSE(folder->GetWarpStep().has_value());
    EXPECT_EQ(folder->GetNumberOfSpotGrids(), 2);
  }
}

// A zero byte in a spot grid's name once made Read open the file named by the part before it,
// while Write refused the whole name.
TEST(CalibrationFolder, ReadRefusesAZeroByteInAFileName) {
  TempDirectory dir;
  const std::string input = test::RegressionInput("CalibrationFolder", "nul-in-file-name");
  const std::vector<std::string> names = {"calibration.txt", "camera.lens", "projector_0.txt"};
  size_t begin = 0;
  for (const std::string& name : names) {
    const size_t end = std::min(input.find("\n%%%%\n", begin), input.size());
    test::WriteFile(dir.File(name), input.substr(begin, end - begin));
    begin = end + 6;
  }
  auto folder = SmartPointer<CalibrationFolder>::New();
  const int status = folder->Read(dir.Path().string());
  EXPECT_EQ(Code(status), VEK_BAD_PARSE) << Message(status);
  EXPECT_NE(Message(status).find("SpotGridFiles holds a control character"), std::string::npos) << Message(status);
  EXPECT_EQ(folder->GetNumberOfSpotGrids(), 0);
}

TEST(CalibrationFolder, WriteRefusesAFolderThatWouldNotReadBackAndWritesNothing) {
  std::vector<SmartPointer<CalibrationFolder>> bad;
  for (int k = 0; k < 8; ++k) bad.push_back(TwoProjectorFolder());
  bad[0]->SetLens(nullptr);
  bad[1]->RemoveAllSpotGrids();
  bad[2]->SetFillRegion(OrderedQuadrilateral({100, 200}, {900, 180}, {}, {880, 720}));
  bad[3]->AddSpotGrid(TinyGrid().GetPointer(), "projector_0.txt");
  bad[4]->SetLensFileName("odd@@@name.lens");
  bad[5]->SetContentHeight(0);
  bad[6]->AddSpotGrid(TinyGrid().GetPointer(), "calibration.txt");
  bad[7]->AddSpotGrid(TinyGrid().GetPointer(), std::string("projector_2.txt\0x", 17));
  for (size_t k = 0; k < bad.size(); ++k) {
    TempDirectory dir;
    const std::string where = (dir.Path() / "out").string();
    EXPECT_EQ(Code(bad[k]->Write(where)), VEK_INVALID_PARAMETERS) << k;
    EXPECT_FALSE(std::filesystem::exists(where)) << k;
  }
}

}  // namespace
}  // namespace vek
