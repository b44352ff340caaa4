#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <sstream>
#include <thread>

#include "vekAlphaTweakingData.h"
#include "vekClassInitializer.h"
#include "vekConfigurationDatabase.h"
#include "vekControlPoints.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekMeshTweakingData.h"
#include "vekRectilinearGrid.h"
#include "vekRecursiveLock.h"
#include "vekRestorePointInfo.h"
#include "vekSmartPointer.h"
#include "vekStoreTestFixture.h"
#include "vekTestSupport.h"
#include "vekUniformAngleRemappingData.h"

namespace vek {
namespace {

constexpr int Flagged(int code) { return code | VEK_CUSTOM_MESSAGE_FLAG; }

class RecordsTest : public test::StoreTest {
 protected:
  static std::string Path(const std::string& name) { return ConfigurationDatabase::GetConfigurationDirectory() + name; }
  static std::string Read(const std::string& name) { return test::ReadFile(Path(name)); }
  static void Write(const std::string& name, const std::string& text) { test::WriteFile(Path(name), text); }
  static bool Exists(const std::string& name) { return std::filesystem::exists(Path(name)); }
};

using Floats = std::vector<float>;

TEST_F(RecordsTest, BoundaryFileTextAndRoundTrip) {
  // Six significant digits; the count is the x list's length, extra y values are not written.
  ASSERT_EQ(Store->SaveExtrudedCurveScreenBoundaryData({1.5f, -2}, {0.25f, 3}, {}, {}, {1234567.0f}, {0.1f, 9}),
            VEK_SUCCESS);
  EXPECT_EQ(Read("ExtrudedCurveScreenBoundary"), test::TextFileBytes("2\n1.5 0.25\n-2 3\n0\n1\n1.23457e+06 0.1\n"));
  EXPECT_FALSE(Exists("ExtrudedCurveScreenBoundary.tmp"));
  Floats x1{7}, y1, x2{7}, y2{7}, x3, y3;
  ASSERT_EQ(Store->LoadExtrudedCurveScreenBoundaryData(x1, y1, x2, y2, x3, y3), VEK_SUCCESS);
  EXPECT_EQ(x1, (Floats{1.5f, -2}));
  EXPECT_EQ(y1, (Floats{0.25f, 3}));
  EXPECT_TRUE(x2.empty() && y2.empty());
  EXPECT_EQ(x3, Floats{1234570.0f});
  EXPECT_EQ(y3, Floats{0.1f});

  ASSERT_EQ(Store->SaveExtrudedCurveScreenBoundaryData({}, {}, {}, {}, {}, {}), VEK_SUCCESS);
  EXPECT_EQ(Read("ExtrudedCurveScreenBoundary"), test::TextFileBytes("0\n0\n0\n"));
  // A y list shorter than its x list is refused and the saved boundary stays.
  EXPECT_EQ(Store->SaveExtrudedCurveScreenBoundaryData({}, {}, {1, 2}, {1}, {}, {}), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Read("ExtrudedCurveScreenBoundary"), test::TextFileBytes("0\n0\n0\n"));
}

TEST_F(RecordsTest, BoundaryLoadFailuresLeaveTheListsAlone) {
  Floats x1{1}, y1{2}, x2{3}, y2{4}, x3{5}, y3{6};
  auto unchanged = [&] {
    return x1 == Floats{1} && y1 == Floats{2} && x2 == Floats{3} && y2 == Floats{4} && x3 == Floats{5} &&
           y3 == Floats{6};
  };
  EXPECT_EQ(Store->LoadExtrudedCurveScreenBoundaryData(x1, y1, x2, y2, x3, y3), VEK_SUCCESS);  // no file
  EXPECT_TRUE(unchanged());

  Write("ExtrudedCurveScreenBoundary", "1\n1 2\n-1\n");
  EXPECT_EQ(Store->LoadExtrudedCurveScreenBoundaryData(x1, y1, x2, y2, x3, y3),
            Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE));
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE)),
            "Negative numbers unexpected");
  EXPECT_TRUE(unchanged());
  for (const char* damaged : {"2\n1 2\n", "1\n1 2\n0\n", "x\n", "1\n1 y\n0\n0\n"}) {
    Write("ExtrudedCurveScreenBoundary", damaged);
    EXPECT_EQ(Store->LoadExtrudedCurveScreenBoundaryData(x1, y1, x2, y2, x3, y3), VEK_UNABLE_TO_READ_NUM_FROM_FILE)
        << damaged;
    EXPECT_TRUE(unchanged());
  }
}

TEST_F(RecordsTest, BoundaryWhoseTemporaryCannotBeWrittenKeepsTheOldFile) {
  Write("ExtrudedCurveScreenBoundary", "0\n0\n0\n");
  std::filesystem::create_directory(Path("ExtrudedCurveScreenBoundary.tmp"));
  EXPECT_EQ(Store->SaveExtrudedCurveScreenBoundaryData({1}, {2}, {}, {}, {}, {}), VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING);
  EXPECT_EQ(Read("ExtrudedCurveScreenBoundary"), "0\n0\n0\n");
}

TEST_F(RecordsTest, ControlPointGridFileTextAndRoundTrip) {
  // 1234.5678f is 1234.5677490234375: nine digits give 1234.56775, which reads back to the same float.
  ASSERT_EQ(Store->SaveInputSpaceBoundaryPoints({0.5f, 1234.5678f}, {-1, 3}, 2, 1), VEK_SUCCESS);
  EXPECT_EQ(Read("ControlPointLocations"),
            test::TextFileBytes("{ ControlPoints 1.0 \n2 1 \n  0.5 -1 \n  1234.56775 3 \n} \n"));
  Floats xs{9}, ys;
  int w = -1, h = -1;
  ASSERT_EQ(Store->LoadInputSpaceBoundaryPoints(xs, ys, w, h), VEK_SUCCESS);
  EXPECT_EQ(xs, (Floats{0.5f, 1234.5678f}));
  EXPECT_EQ(ys, (Floats{-1, 3}));
  EXPECT_EQ(w, 2);
  EXPECT_EQ(h, 1);

  ASSERT_EQ(Store->SaveCameraSpaceBoundaryPoints(12, {1, 2, 3, 4, 5, 6}, {6, 5, 4, 3, 2, 1}, 3, 2), VEK_SUCCESS);
  EXPECT_TRUE(Exists("CameraSpaceControlPoints12"));
  ASSERT_EQ(Store->LoadCameraSpaceBoundaryPoints(12, xs, ys, w, h), VEK_SUCCESS);
  EXPECT_EQ(xs, (Floats{1, 2, 3, 4, 5, 6}));
  EXPECT_EQ(ys, (Floats{6, 5, 4, 3, 2, 1}));
  EXPECT_EQ(w * 10 + h, 32);
  // No grid saved for camera 3: empty, not an error.
  ASSERT_EQ(Store->LoadCameraSpaceBoundaryPoints(3, xs, ys, w, h), VEK_SUCCESS);
  EXPECT_TRUE(xs.empty() && ys.empty());
  EXPECT_EQ(w * 10 + h, 0);
}

TEST_F(RecordsTest, ControlPointGridsThatDoNotFitAreRefused) {
  EXPECT_EQ(Store->SaveInputSpaceBoundaryPoints({1, 2, 3, 4, 5}, {1, 2, 3, 4, 5, 6}, 3, 2), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Store->SaveInputSpaceBoundaryPoints({1, 2, 3, 4, 5, 6}, {1, 2, 3, 4, 5}, 3, 2), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Store->SaveInputSpaceBoundaryPoints({1}, {1}, -1, -1), VEK_INVALID_PARAMETERS);
  EXPECT_EQ(Store->SaveCameraSpaceBoundaryPoints(-1, {1}, {1}, 1, 1), VEK_INVALID_PARAMETERS);
  EXPECT_FALSE(Exists("ControlPointLocations"));
  EXPECT_FALSE(Exists("CameraSpaceControlPoints-1"));
}

TEST_F(RecordsTest, DamagedControlPointFilesGiveTheirCodeAndEmptyGrids) {
  const std::pair<const char*, int> cases[] = {
      {"{ ControlPoints 1.0 \n2 1 \n  0.5 -1 \n} \n", Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE)},  // a point short
      {"{ ControlPoints 1.0 \n-2 -1 \n} \n", Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE)},
      {"{ ControlPoints 1.0 \n1 1 \n  1 2 \n  3 4 \n} \n", Flagged(VEK_FILE_NOT_FORMATTED_PROPERLY)},
      {"{ ControlPoints 2.0 \n0 0 \n} \n", Flagged(VEK_UNABLE_TO_READ_FROM_STREAM)},
      {"{ DataArray 1.0 \n0 \n} \n", Flagged(VEK_UNABLE_TO_READ_FROM_STREAM)},
      {"{}", Flagged(VEK_UNABLE_TO_READ_FROM_STREAM)},
      {"", Flagged(VEK_UNABLE_TO_READ_FROM_STREAM)},
  };
  for (const auto& [text, code] : cases) {
    Write("ControlPointLocations", text);
    Floats xs{1}, ys{1};
    int w = 5, h = 5;
    EXPECT_EQ(Store->LoadInputSpaceBoundaryPoints(xs, ys, w, h), code) << text;
    EXPECT_TRUE(xs.empty() && ys.empty() && w == 0 && h == 0) << text;
  }
}

TEST(ControlPointsStream, ADamagedObjectIsSkippedSoTheNextOneReads) {
  std::istringstream in("{ ControlPoints 1.0 \n1 1 \n  1 oops \n} \n{ ControlPoints 1.0 \n1 1 \n  7 8 \n} \n");
  SmartPointer<ControlPoints> points = SmartPointer<ControlPoints>::New();
  EXPECT_EQ(points->Read(in), Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE));
  EXPECT_EQ(points->GetNumPoints(), 0);
  ASSERT_EQ(points->Read(in), VEK_SUCCESS);
  EXPECT_EQ(points->GetPoint(0), vec2<float>(7, 8));
  EXPECT_TRUE(points->GetPoint(1).IsUnset());
  EXPECT_EQ(points->SetPoint(1, {0, 0}), VEK_INVALID_PARAMETERS);
}

void SetGrid(SpatialSubdivisionData& data, float spacex, float spacey, int numx, int numy, int layers) {
  SmartPointer<RectilinearGrid> grid = SmartPointer<RectilinearGrid>::New();
  grid->SetOffsetx(0);
  grid->SetOffsety(0);
  grid->SetSpacex(spacex);
  grid->SetSpacey(spacey);
  grid->SetNumx(numx);
  grid->SetNumy(numy);
  ASSERT_EQ(data.SetSubdivision(*grid, layers), VEK_SUCCESS);
}

TEST_F(RecordsTest, MeshAndAlphaTweakingFileTextAndRoundTrip) {
  SmartPointer<MeshTweakingData> mesh = SmartPointer<MeshTweakingData>::New();
  SetGrid(*mesh, 0.5f, 0.25f, 2, 1, 1);
  ASSERT_EQ(mesh->SetOffset(0, 1, {1.5f, -0.125f}), VEK_SUCCESS);
  EXPECT_EQ(mesh->SetOffset(1, 0, {1, 1}), VEK_INVALID_PARAMETERS);  // one layer only
  ASSERT_EQ(Store->SaveOrthographicMeshTweakingData(mesh), VEK_SUCCESS);
  EXPECT_EQ(
      Read("OrthographicMeshTweakingData.txt"),
      test::TextFileBytes(
          "{ MeshTweakingData 1.0 \nGrid 0 0 0.5 0.25 2 1 \nLayers 1 Components 2 \n  0 0 \n  1.5 -0.125 \n} \n"));
  SmartPointer<MeshTweakingData> loaded;  // none handed: the loader makes one
  ASSERT_EQ(Store->LoadOrthographicMeshTweakingData(loaded), VEK_SUCCESS);
  ASSERT_TRUE(loaded);
  EXPECT_EQ(loaded->GetNumx() * 10 + loaded->GetNumy(), 21);
  EXPECT_EQ(loaded->GetOffset(0, 0), vec2<float>(0, 0));
  EXPECT_EQ(loaded->GetOffset(0, 1), vec2<float>(1.5f, -0.125f));

  SmartPointer<AlphaTweakingData> alpha = SmartPointer<AlphaTweakingData>::New();
  SetGrid(*alpha, 1, 1, 1, 1, 2);
  ASSERT_EQ(alpha->SetGain(1, 0, 0.5f), VEK_SUCCESS);
  ASSERT_EQ(Store->SaveAlphaTweakingData(alpha), VEK_SUCCESS);
  EXPECT_EQ(
      Read("AlphaTweakingData.txt"),
      test::TextFileBytes("{ AlphaTweakingData 1.0 \nGrid 0 0 1 1 1 1 \nLayers 2 Components 1 \n  1 \n  0.5 \n} \n"));
  SmartPointer<AlphaTweakingData> gains = SmartPointer<AlphaTweakingData>::New();
  ASSERT_EQ(Store->LoadAlphaTweakingData(gains), VEK_SUCCESS);
  EXPECT_EQ(gains->GetNumberOfLayers(), 2);
  EXPECT_EQ(gains->GetGain(0, 0), 1.0f);
  EXPECT_EQ(gains->GetGain(1, 0), 0.5f);

  EXPECT_EQ(Store->SaveAlphaTweakingData(nullptr), VEK_INVALID_PARAMETERS);
}

TEST_F(RecordsTest, TweakingRecordsRefuseOtherKindsAndDamage) {
  SmartPointer<MeshTweakingData> mesh = SmartPointer<MeshTweakingData>::New();
  SetGrid(*mesh, 1, 1, 1, 1, 1);
  ASSERT_EQ(mesh->SetOffset(0, 0, {3, 4}), VEK_SUCCESS);
  const std::pair<const char*, int> cases[] = {
      {"{ AlphaTweakingData 1.0 \nGrid 0 0 1 1 1 1 \nLayers 1 Components 1 \n  1 \n} \n",
       Flagged(VEK_UNABLE_TO_READ_FROM_STREAM)},
      {"{ MeshTweakingData 1.0 \nGrid 0 0 1 1 1 1 \nLayers 1 Components 1 \n  1 \n} \n",
       Flagged(VEK_FILE_NOT_FORMATTED_PROPERLY)},
      {"{ MeshTweakingData 1.0 \nGrid 0 0 1 1 1 1 \nLayer 1 Components 2 \n  1 1 \n} \n",
       Flagged(VEK_FILE_NOT_FORMATTED_PROPERLY)},
      {"{ MeshTweakingData 1.0 \nGrid 0 0 1 1 2 1 \nLayers 1 Components 2 \n  1 1 \n  1 \n} \n",
       Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE)},
      {"{ MeshTweakingData 1.0 \nGrid 0 0 1 1 -1 1 \nLayers 1 Components 2 \n} \n",
       Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE)},
  };
  for (const auto& [text, code] : cases) {
    Write("OrthographicMeshTweakingData.txt", text);
    EXPECT_EQ(Store->LoadOrthographicMeshTweakingData(mesh), code) << text;
    EXPECT_EQ(mesh->GetOffset(0, 0), vec2<float>(3, 4)) << text;  // all or nothing
  }
  std::filesystem::remove(Path("OrthographicMeshTweakingData.txt"));
  EXPECT_EQ(Store->LoadOrthographicMeshTweakingData(mesh), Flagged(VEK_FILE_NOT_FOUND));
}

TEST_F(RecordsTest, PerspectiveTweakingFileTextAndRoundTrip) {
  SmartPointer<UniformAngleRemappingData> angles = SmartPointer<UniformAngleRemappingData>::New();
  ASSERT_EQ(angles->SetUniformSampling(-1, 1, 0, 0.5f, 3, 2), VEK_SUCCESS);
  ASSERT_EQ(angles->SetRemappedAngle(4, {0.125f, 0.75f}), VEK_SUCCESS);
  EXPECT_EQ(angles->SetRemappedAngle(6, {0, 0}), VEK_INVALID_PARAMETERS);
  ASSERT_EQ(Store->SavePerspectiveMeshTweakingData(angles.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(Read("PerspectiveMeshTweakingData.txt"),
            test::TextFileBytes("{ UniformAngleRemappingData 1.0 \nAzimuth -1 1 \nElevation 0 0.5 \nNodes 3 2 \n"
                                "  -1 0 \n  0 0 \n  1 0 \n  -1 0.5 \n  0.125 0.75 \n  1 0.5 \n} \n"));

  SmartPointer<UniformAngleRemappingData> loaded = SmartPointer<UniformAngleRemappingData>::New();
  ASSERT_EQ(Store->LoadPerspectiveMeshTweakingData(loaded.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(loaded->GetNumberOfNodes(), 6);
  EXPECT_EQ(loaded->GetRemappedAngle(4), vec2<float>(0.125f, 0.75f));
  EXPECT_EQ(loaded->GetRemappedAngle(5), vec2<float>(1, 0.5f));
  EXPECT_EQ(loaded->GetNominalAngle(1, 1), vec2<float>(0, 0.5f));
  EXPECT_EQ(Store->LoadPerspectiveMeshTweakingData(nullptr), VEK_INVALID_PARAMETERS);

  // A single column sits at the minimum azimuth.
  ASSERT_EQ(angles->SetUniformSampling(0.25f, 1, 0, 1, 1, 1), VEK_SUCCESS);
  EXPECT_EQ(angles->GetRemappedAngle(0), vec2<float>(0.25f, 0));

  Write("PerspectiveMeshTweakingData.txt",
        "{ UniformAngleRemappingData 1.0 \nAzimuth -1 1 \nElevation 0 0.5 \nNodes 1 1 \n  1 \n} \n");
  EXPECT_EQ(Store->LoadPerspectiveMeshTweakingData(loaded.GetPointer()), Flagged(VEK_UNABLE_TO_READ_NUM_FROM_FILE));
  Write("PerspectiveMeshTweakingData.txt", "{ UniformAngleRemappingData 1.0 \nAzimuth -1 1 \nNodes 1 1 \n} \n");
  EXPECT_EQ(Store->LoadPerspectiveMeshTweakingData(loaded.GetPointer()), Flagged(VEK_FILE_NOT_FORMATTED_PROPERLY));
  EXPECT_EQ(loaded->GetNumberOfNodes(), 6);
}

TEST_F(RecordsTest, RestorePointXmlTextAndRoundTrip) {
  SmartPointer<RestorePointInfo> info = SmartPointer<RestorePointInfo>::New();
  info->SetProductName("Calibrator");
  info->SetProductVersion("3.2");
  info->SetBuildId("b417");
  info->SetNumProjectors(4);
  info->SetNumCameras(-2);
  info->SetScreenType("Dome");
  info->SetDescription("Before <aiming> & after");
  const std::string file = Base.File("RestorePoint.xml");
  ASSERT_EQ(ConfigurationDatabase::SaveRestorePointInfoFile(file, *info), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(file),
            test::TextFileBytes(
                "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<RestorePointInfo>\n"
                "    <ProductName>Calibrator</ProductName>\n    <ProductVersion>3.2</ProductVersion>\n"
                "    <BuildId>b417</BuildId>\n    <NumProjectors>4</NumProjectors>\n    <NumCameras>-2</NumCameras>\n"
                "    <ScreenType>Dome</ScreenType>\n    <Description>Before &lt;aiming&gt; &amp; after</Description>\n"
                "</RestorePointInfo>\n"));

  SmartPointer<RestorePointInfo> loaded = SmartPointer<RestorePointInfo>::New();
  ASSERT_EQ(ConfigurationDatabase::LoadRestorePointInfoFile(file, *loaded), VEK_SUCCESS);
  EXPECT_EQ(loaded->GetProductName(), "Calibrator");
  EXPECT_EQ(loaded->GetProductVersion(), "3.2");
  EXPECT_EQ(loaded->GetBuildId(), "b417");
  EXPECT_EQ(loaded->GetNumProjectors(), 4);
  EXPECT_EQ(loaded->GetNumCameras(), -2);
  EXPECT_EQ(loaded->GetScreenType(), "Dome");
  EXPECT_EQ(loaded->GetDescription(), "Before <aiming> & after");

  // Elements by name in any order; an empty element is an empty text.
  test::WriteFile(file,
                  "<RestorePointInfo><Description/><ScreenType>Flat</ScreenType><NumCameras>1</NumCameras>"
                  "<NumProjectors>2</NumProjectors><BuildId/><ProductVersion/><ProductName/></RestorePointInfo>");
  ASSERT_EQ(ConfigurationDatabase::LoadRestorePointInfoFile(file, *loaded), VEK_SUCCESS);
  EXPECT_EQ(loaded->GetScreenType(), "Flat");
  EXPECT_EQ(loaded->GetDescription(), "");
  EXPECT_EQ(loaded->GetNumProjectors() * 10 + loaded->GetNumCameras(), 21);

  // Only the screen type and the description must be there.
  test::WriteFile(file,
                  "<RestorePointInfo><NumCameras/><ScreenType>Dome</ScreenType><Description>D</Description>"
                  "</RestorePointInfo>");
  ASSERT_EQ(ConfigurationDatabase::LoadRestorePointInfoFile(file, *loaded), VEK_SUCCESS);
  EXPECT_EQ(loaded->GetProductName() + loaded->GetBuildId() + loaded->GetScreenType(), "Dome");
  EXPECT_EQ(loaded->GetNumProjectors() * 10 + loaded->GetNumCameras(), 0);
}

TEST_F(RecordsTest, RecordsThatCannotBeWrittenGiveTheirCodesAndStayAsTheyWere) {
  SmartPointer<MeshTweakingData> mesh = SmartPointer<MeshTweakingData>::New();
  SetGrid(*mesh, 1, 1, 1, 1, 1);
  SmartPointer<AlphaTweakingData> alpha = SmartPointer<AlphaTweakingData>::New();
  SetGrid(*alpha, 1, 1, 1, 1, 1);
  SmartPointer<UniformAngleRemappingData> angles = SmartPointer<UniformAngleRemappingData>::New();
  ASSERT_EQ(angles->SetUniformSampling(-1, 1, 0, 0.5f, 1, 1), VEK_SUCCESS);
  SmartPointer<RestorePointInfo> info = SmartPointer<RestorePointInfo>::New();
  const char* names[] = {"ExtrudedCurveScreenBoundary",
                         "ControlPointLocations",
                         "CameraSpaceControlPoints0",
                         "PerspectiveMeshTweakingData.txt",
                         "OrthographicMeshTweakingData.txt",
                         "AlphaTweakingData.txt",
                         "RestorePoint.xml"};
  auto saveAll = [&] {
    return std::vector<int>{Store->SaveExtrudedCurveScreenBoundaryData({1}, {2}, {}, {}, {}, {}),
                            Store->SaveInputSpaceBoundaryPoints({1}, {2}, 1, 1),
                            Store->SaveCameraSpaceBoundaryPoints(0, {1}, {2}, 1, 1),
                            Store->SavePerspectiveMeshTweakingData(angles.GetPointer()),
                            Store->SaveOrthographicMeshTweakingData(mesh),
                            Store->SaveAlphaTweakingData(alpha),
                            ConfigurationDatabase::SaveRestorePointInfoFile(Path("RestorePoint.xml"), *info)};
  };
  // The boundary's code is plain; the records written in their object form name the file.
  const int named = Flagged(VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING);
  const std::vector<int> expected{VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING, named, named, named, named, named, named};

  for (const char* name : names) std::filesystem::create_directory(Path(name));
  EXPECT_EQ(saveAll(), expected);
  for (const char* name : names) {
    EXPECT_TRUE(std::filesystem::is_directory(Path(name))) << name;
    EXPECT_FALSE(Exists(std::string(name) + ".tmp")) << name;
  }
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(named),
            "Unable to open file for writing: " + Path("RestorePoint.xml"));

  const std::string folder = ConfigurationDatabase::GetConfigurationDirectory();
  std::filesystem::remove_all(folder);  // every record now lies in a folder that does not exist
  EXPECT_EQ(saveAll(), expected);
  EXPECT_FALSE(std::filesystem::exists(folder));
}

TEST_F(RecordsTest, RecordsReadEitherLineEnd) {
  Write("ExtrudedCurveScreenBoundary", "1\r\n1.5 2\r\n0\r\n1\r\n3 4\r\n");
  Floats x1, y1, x2, y2, x3, y3;
  ASSERT_EQ(Store->LoadExtrudedCurveScreenBoundaryData(x1, y1, x2, y2, x3, y3), VEK_SUCCESS);
  EXPECT_EQ(x1, Floats{1.5f});
  EXPECT_EQ(y3, Floats{4});
  Write("ControlPointLocations", "{ ControlPoints 1.0 \r\n1 1 \r\n  7 8 \r\n} \r\n");
  int w = 0, h = 0;
  ASSERT_EQ(Store->LoadInputSpaceBoundaryPoints(x1, y1, w, h), VEK_SUCCESS);
  EXPECT_EQ(x1, Floats{7});
  EXPECT_EQ(y1, Floats{8});
  // A line break inside a value comes back as it was given, whatever the file's line end.
  SmartPointer<RestorePointInfo> info = SmartPointer<RestorePointInfo>::New();
  info->SetScreenType("Flat");
  info->SetDescription("two\nlines");
  ASSERT_EQ(ConfigurationDatabase::SaveRestorePointInfoFile(Path("RestorePoint.xml"), *info), VEK_SUCCESS);
  EXPECT_NE(Read("RestorePoint.xml").find(test::TextFileBytes("<Description>two\nlines</Description>\n")),
            std::string::npos);
  SmartPointer<RestorePointInfo> loaded = SmartPointer<RestorePointInfo>::New();
  ASSERT_EQ(ConfigurationDatabase::LoadRestorePointInfoFile(Path("RestorePoint.xml"), *loaded), VEK_SUCCESS);
  EXPECT_EQ(loaded->GetDescription(), "two\nlines");
}

TEST_F(RecordsTest, DamagedRestorePointXmlLeavesTheRecordAlone) {
  const std::string fields =
      "<ProductName>P</ProductName><ProductVersion>1</ProductVersion><BuildId>B</BuildId>"
      "<NumProjectors>2</NumProjectors><NumCameras>1</NumCameras>";
  const std::string damaged[] = {
      "<RestorePointInfo>" + fields + "<ScreenType>Flat</ScreenType><Description>D</Description>",  // not closed
      "<Other>" + fields + "<ScreenType>Flat</ScreenType><Description>D</Description></Other>",
      "<RestorePointInfo>" + fields + "<Description>D</Description></RestorePointInfo>",
      "<RestorePointInfo>" + fields + "<ScreenType>Flat</ScreenType></RestorePointInfo>",
      "<RestorePointInfo><NumProjectors>2x</NumProjectors>" + fields.substr(fields.find("<NumCameras>")) +
          "<ScreenType>F</ScreenType><Description>D</Description></RestorePointInfo>",
      "",
  };
  const std::string file = Base.File("RestorePoint.xml");
  SmartPointer<RestorePointInfo> info = SmartPointer<RestorePointInfo>::New();
  info->SetScreenType("Cylinder");
  for (const std::string& text : damaged) {
    test::WriteFile(file, text);
    EXPECT_EQ(ConfigurationDatabase::LoadRestorePointInfoFile(file, *info), VEK_FILE_NOT_FORMATTED_PROPERLY) << text;
    EXPECT_EQ(info->GetScreenType(), "Cylinder");
  }
  EXPECT_EQ(ConfigurationDatabase::LoadRestorePointInfoFile(Base.File("none.xml"), *info), Flagged(VEK_FILE_NOT_FOUND));
}

TEST_F(RecordsTest, RecordMembersWaitForTheConfigurationLock) {
  RecursiveLock& lock = RecursiveLock::ConfigurationLock();
  lock.Lock();
  std::thread writer([this] { Store->SaveInputSpaceBoundaryPoints({1}, {2}, 1, 1); });
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_FALSE(Exists("ControlPointLocations"));
  lock.Unlock();
  writer.join();
  EXPECT_TRUE(Exists("ControlPointLocations"));
}

}  // namespace
}  // namespace vek
