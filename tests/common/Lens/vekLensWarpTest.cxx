#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <sstream>
#include <vector>

#include "vekEqualAreaFishEyeLensWarp.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekFishEyeLensWarp.h"
#include "vekLensWarpIO.h"
#include "vekOutputNumbers.h"
#include "vekRadialLensWarp.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

// 641 x 481: centre (320, 240), radial unit 320 px, so k1 = 0.1 / 320^2 and k2 = 0.01 / 320^4.
const double kRadialParameters[6] = {641, 481, 0, 0, 0.1, 0.01};

SmartPointer<RadialLensWarp> MakeRadial() {
  auto warp = SmartPointer<RadialLensWarp>::New();
  warp->SetParameters(kRadialParameters);
  return warp;
}

SmartPointer<EqualAreaFishEyeLensWarp> MakeEqualArea() {
  auto warp = SmartPointer<EqualAreaFishEyeLensWarp>::New();
  warp->SetCameraDimensions(640, 480);
  warp->SetFocalLengthX(500);
  warp->SetFocalLengthY(400);
  warp->SetCenterX(320);
  warp->SetCenterY(240);
  return warp;
}

void ExpectFailure(int code, int expected, const std::string& message) {
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(code), expected);
  EXPECT_TRUE(ErrorHelper::DoesErrorHaveCustomMessage(code));
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(code), message);
}

TEST(RadialLensWarp, ParametersToPixelsAndBack) {
  auto warp = MakeRadial();
  EXPECT_TRUE(warp->IsInitialized());
  EXPECT_EQ(warp->GetCenterX(), 320.0f);
  EXPECT_EQ(warp->GetCenterY(), 240.0f);
  EXPECT_FLOAT_EQ(warp->Getk1(), 0.1 / (320.0 * 320.0));
  EXPECT_FLOAT_EQ(warp->Getk2(), 0.01 / (320.0 * 320.0 * 320.0 * 320.0));

  double back[6];
  warp->SetCenterX(480);  // normalised 0.5
  warp->GetParameters(back);
  EXPECT_TRUE(back[0] == 641 && back[1] == 481 && back[3] == 0);
  EXPECT_DOUBLE_EQ(back[2], 0.5);
  EXPECT_NEAR(back[4], 0.1, 1e-8);
  EXPECT_NEAR(back[5], 0.01, 1e-9);

  warp->SetScaledk2(-0.02);
  EXPECT_FLOAT_EQ(warp->Getk2(), -0.02 / (320.0 * 320.0 * 320.0 * 320.0));
  const float old[4] = {1.5f, 2, 0.25f, -0.125f};
  warp->OldSetParameters(old);
  std::ostringstream os;
  warp->PrintSelf(os, Indent(2));
  EXPECT_NE(
      os.str().find("  Center: (1.5,2)\n  k1 : cubic coefficient :0.25\n  k2 : fifth order coefficient :-0.125\n"),
      std::string::npos)
      << os.str();
}

TEST(RadialLensWarp, CameraDimensionsCentreUnsetOnly) {
  auto warp = SmartPointer<RadialLensWarp>::New();
  warp->SetCameraDimensions(101, 51);
  EXPECT_EQ(warp->GetCenterX(), 50.0f);
  EXPECT_EQ(warp->GetCenterY(), 25.0f);
  EXPECT_FLOAT_EQ(warp->Getk1(), -4.0 / 10000);  // the unset scaled k1, -1, over 50^2
  warp->SetCenterX(7);
  warp->SetCameraDimensions(101, 51);  // same size: nothing recomputed
  EXPECT_EQ(warp->GetCenterX(), 7.0f);
  warp->SetCameraDimensions(201, 51);
  EXPECT_EQ(warp->GetCenterX(), 100.0f);

  auto placed = SmartPointer<RadialLensWarp>::New();
  const double parameters[6] = {101, 51, 0.5, -0.5, 0, 0};
  placed->SetParameters(parameters);
  placed->SetCameraDimensions(201, 101);  // a set normalised centre is kept
  EXPECT_EQ(placed->GetCenterX(), 150.0f);
  EXPECT_EQ(placed->GetCenterY(), 25.0f);
}

TEST(RadialLensWarp, ForwardAndInverses) {
  auto warp = MakeRadial();
  float x, y;
  // r = 320: factor 1 + 0.1 + 0.01.
  warp->Forward(640, 240, x, y);
  EXPECT_NEAR(x, 320 + 1.11 * 320, 1e-4);
  EXPECT_EQ(y, 240);
  // r = 200, (r/320)^2 = 0.390625: factor 1 + 0.0390625 + 0.00152587890625.
  warp->Forward(480, 360, x, y);
  EXPECT_NEAR(x, 320 + 160 * 1.04058837890625, 1e-4);
  EXPECT_NEAR(y, 240 + 120 * 1.04058837890625, 1e-4);

  warp->Forward(320, 240, x, y);
  EXPECT_TRUE(std::isnan(x) && std::isnan(y));
  warp->Invert(320, 240, x, y);
  EXPECT_TRUE(x == 320 && y == 240);
  warp->InvertB(320, 240, x, y);
  EXPECT_TRUE(x == 320 && y == 240);

  for (const auto& p : {vec2<float>(675.2f, 240), vec2<float>(10, 20), vec2<float>(600, 470)}) {
    vec2<float> undistorted, back;
    EXPECT_EQ(warp->Invert(p, undistorted), VEK_SUCCESS);
    warp->Forward(undistorted, back);
    EXPECT_NEAR(back.x, p.x, 1e-3);
    EXPECT_NEAR(back.y, p.y, 1e-3);
  }
  float ux, uy;

  // Invert assumes k0 = 1; InvertB honours k0.
  warp->Setk0(1.1f);
  warp->Invert(600, 470, ux, uy);
  warp->Forward(ux, uy, x, y);
  EXPECT_GT(std::fabs(x - 600), 10);
  warp->InvertB(600, 470, ux, uy);
  warp->Forward(ux, uy, x, y);
  EXPECT_NEAR(x, 600, 2e-3);
  EXPECT_NEAR(y, 470, 2e-3);
}

class ExposedRadial : public RadialLensWarp {
 public:
  using RadialLensWarp::Read;
};

TEST(RadialLensWarp, NumberFileNeedsSevenValues) {
  test::TempDirectory directory;
  const std::string file = directory.File("radial.txt");
  auto warp = SmartPointer<ExposedRadial>::TakeReference(new ExposedRadial);
  test::WriteFile(file, "7\n9.5\n641\n481\n0\n0\n0.1\n0.01\n");
  ASSERT_EQ(warp->Read(file.c_str()), VEK_SUCCESS);
  EXPECT_EQ(warp->GetCenterX(), 320.0f);
  EXPECT_FLOAT_EQ(warp->Getk1(), 0.1 / (320.0 * 320.0));
  test::WriteFile(file, "6\n1.1\n641\n481\n0\n0\n0.1\n");
  EXPECT_EQ(warp->Read(file.c_str()), 1);
  EXPECT_EQ(warp->Read(directory.File("missing.txt").c_str()), VEK_FILE_NOT_FOUND);
}

TEST(LensWarp, ArraysSkipUnsetPointsAndMatchOnePointResults) {
  auto radial = MakeRadial();
  auto equalArea = MakeEqualArea();
  auto fishEye = SmartPointer<FishEyeLensWarp>::New();
  fishEye->SetCameraDimensions(640, 480);
  std::vector<vec2<float>> source;
  for (int i = 0; i < 20000; ++i) source.emplace_back(static_cast<float>(i % 640), static_cast<float>((i * 7) % 480));
  source[3] = vec2<float>();
  source[15000] = vec2<float>();
  for (LensWarp* warp :
       std::initializer_list<LensWarp*>{radial.GetPointer(), equalArea.GetPointer(), fishEye.GetPointer()}) {
    for (bool forward : {true, false}) {
      std::vector<vec2<float>> points = source;
      if (forward)
        warp->InplaceForwardArray(points.data(), static_cast<unsigned int>(points.size()));
      else
        warp->InplaceInvertArray(points.data(), static_cast<unsigned int>(points.size()));
      EXPECT_TRUE(points[3].IsUnset() && points[15000].IsUnset()) << warp->GetClassName();
      for (size_t i = 0; i < points.size(); i += 97) {
        if (source[i].IsUnset()) continue;
        vec2<float> one;
        if (forward)
          warp->Forward(source[i], one);
        else
          warp->Invert(source[i], one);
        // Bit for bit (not-a-number at the radial centre compares as itself).
        EXPECT_EQ(std::memcmp(&one, &points[i], sizeof one), 0) << warp->GetClassName() << " " << i;
      }
    }
  }
}

TEST(FishEyeLensWarp, IdentityWithCentre) {
  auto warp = SmartPointer<FishEyeLensWarp>::New();
  warp->SetCameraDimensions(640, 481);
  std::ostringstream os;
  warp->PrintSelf(os, Indent(0));
  EXPECT_NE(os.str().find("Center: (319.5,240)\n"), std::string::npos);
  float x, y;
  EXPECT_EQ(warp->Invert(7, 8, x, y), VEK_SUCCESS);
  EXPECT_TRUE(x == 7 && y == 8);
}

TEST(EqualAreaFishEyeLensWarp, MatchesTrigonometricFormulas) {
  auto unset = SmartPointer<EqualAreaFishEyeLensWarp>::New();
  EXPECT_FALSE(unset->IsInitialized());
  unset->SetFocalLengthX(1);
  unset->SetFocalLengthY(1);
  unset->SetCenterX(0);
  EXPECT_TRUE(unset->IsInitialized());  // centre y is not looked at
  auto warp = MakeEqualArea();
  // Direct from the definitions, in double.
  auto forwardScale = [](double rho) { return 2 * std::sin(std::atan(rho) / 2) / rho; };
  auto inverseScale = [](double rho) { return std::tan(2 * std::asin(rho / 2)) / rho; };
  for (const auto& uv :
       {vec2<float>(0.6f, 0.8f), vec2<float>(-0.1f, 0.05f), vec2<float>(1.0f, -0.7f), vec2<float>(1e-4f, 0)}) {
    const double rho = std::hypot(double(uv.x), double(uv.y));
    const float px = 320 + 500 * uv.x, py = 240 + 400 * uv.y;
    float x, y;
    warp->Forward(px, py, x, y);
    EXPECT_NEAR(x, 320 + 500 * uv.x * forwardScale(rho), 2e-4);
    EXPECT_NEAR(y, 240 + 400 * uv.y * forwardScale(rho), 2e-4);
    warp->Invert(px, py, x, y);
    EXPECT_NEAR(x, 320 + 500 * uv.x * inverseScale(rho), 1e-3);
    EXPECT_NEAR(y, 240 + 400 * uv.y * inverseScale(rho), 1e-3);
    float bx, by;
    warp->Forward(x, y, bx, by);
    EXPECT_NEAR(bx, px, 1e-3);
    EXPECT_NEAR(by, py, 1e-3);
  }
  float x, y;
  warp->Forward(320, 240, x, y);
  EXPECT_TRUE(x == 320 && y == 240);
  warp->Invert(320 + 500 * 2.5f, 240, x, y);  // beyond the largest radius, 2
  EXPECT_TRUE(std::isnan(x));
}

class UnknownLens : public LensWarp {
 public:
  bool IsInitialized() const override { return true; }
  void SetCameraDimensions(int const&, int const&) override {}
  void Forward(float const& x, float const& y, float& ox, float& oy) const override { ox = x, oy = y; }
  int Invert(float const& x, float const& y, float& ox, float& oy) const override { return ox = x, oy = y, 0; }

 protected:
  int Read(std::istream*) override { return 0; }
  int Write(std::ostream*) override { return 0; }
};

std::string Written(LensWarp* warp) {
  std::ostringstream os;
  EXPECT_EQ(LensWarpIO::WriteToStream(&os, warp), VEK_SUCCESS);
  return os.str();
}

TEST(LensWarpIO, BodiesWithTypeTags) {
  auto radial = MakeRadial();
  EXPECT_EQ(Written(radial.GetPointer()), "7 1.1 641 481 0 0 0.1 0.01 \n");
  auto fishEye = SmartPointer<FishEyeLensWarp>::New();
  EXPECT_EQ(Written(fishEye.GetPointer()), "1 1 \n");
  auto equalArea = MakeEqualArea();
  EXPECT_EQ(Written(equalArea.GetPointer()), "2 1.1 640 480 500 400 320 240 0 0 0 0 0 0 0 0 \n");

  UnknownLens* unknown = new UnknownLens;
  std::ostringstream os;
  ExpectFailure(LensWarpIO::WriteToStream(&os, unknown), VEK_INVALID_PARAMETERS,
                "Unable to write lens distortion warp to file.  Unknown lens distortion correction type.");
  EXPECT_EQ(os.str(), "");
  unknown->Release();
}

TEST(LensWarpIO, ReadsEveryModelBack) {
  std::istringstream in("7 1.1 641 481 0.5 0 0.1 0.01 \n1 1 \n2 1.1 640 480 500 400 320 240 1 2 3 4 5 6 7 8 \n");
  SmartPointer<LensWarp> warp;
  ASSERT_EQ(LensWarpIO::ReadFromStream(&in, warp), VEK_SUCCESS);
  auto* radial = dynamic_cast<RadialLensWarp*>(warp.GetPointer());
  ASSERT_NE(radial, nullptr);
  EXPECT_EQ(radial->GetCenterX(), 480.0f);
  EXPECT_FLOAT_EQ(radial->Getk2(), 0.01 / (320.0 * 320.0 * 320.0 * 320.0));
  ASSERT_EQ(LensWarpIO::ReadFromStream(&in, warp), VEK_SUCCESS);
  EXPECT_STREQ(warp->GetClassName(), "FishEyeLensWarp");
  ASSERT_EQ(LensWarpIO::ReadFromStream(&in, warp), VEK_SUCCESS);
  auto* equalArea = dynamic_cast<EqualAreaFishEyeLensWarp*>(warp.GetPointer());
  ASSERT_NE(equalArea, nullptr);
  EXPECT_EQ(equalArea->GetFocalLengthY(), 400.0f);
  float distortion[8];
  equalArea->GetDistortionParams(distortion);
  EXPECT_EQ(distortion[7], 8.0f);
  EXPECT_EQ(warp->GetReferenceCount(), 1);

  test::TempDirectory directory;
  const std::string file = directory.File("lens.txt");
  ASSERT_EQ(LensWarpIO::WriteToFile(file.c_str(), MakeEqualArea().GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(file), "2 1.1 640 480 500 400 320 240 0 0 0 0 0 0 0 0 \n");
  ASSERT_EQ(LensWarpIO::ReadFromFile(file.c_str(), warp), VEK_SUCCESS);
  EXPECT_STREQ(warp->GetClassName(), "EqualAreaFishEyeLensWarp");
  const int missing = LensWarpIO::ReadFromFile(directory.File("none.txt").c_str(), warp);
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(missing), VEK_FILE_NOT_FOUND);
  EXPECT_FALSE(warp);
}

TEST(LensWarpIO, DamagedBodies) {
  const std::string tooFew = "Not enough data in file while reading the radial lens distortion.";
  struct Case {
    const char* text;
    const char* model;  // left in the pointer; null for none
    std::string message;
  } cases[] = {
      {"7 1.1 640 480", "RadialLensWarp", tooFew},
      {"7 1.2 641 481 0 0 0.1 0.01", "RadialLensWarp",
       "Unknown File Version 1.2 while reading the radial lens distortion."},
      {"2 1.1 1 2 3 4 5 6 7 8 9 10 11 12 13", "EqualAreaFishEyeLensWarp", tooFew},
      {"2 1.1 1 2 3 x 5 6 7 8 9 10 11 12 13 14", "EqualAreaFishEyeLensWarp", tooFew},
      {"3 1.0 1 2 3 4 5 6 7 8 9 10 11 12 13 14", "BrownLensWarp",
       "Unknown File Version 1 while reading the radial lens distortion."},
      {"1 1.002", "FishEyeLensWarp", "Unknown File Version 1.002 while reading the radial lens distortion."},
      {"5 1.1 640 480", nullptr, "Invalid File for reading lens warp information"},
      {"lens 7", nullptr, "Invalid File for reading lens warp information"},
  };
  for (const Case& c : cases) {
    std::istringstream in(c.text);
    SmartPointer<LensWarp> warp = SmartPointer<LensWarp>::TakeReference(FishEyeLensWarp::New());
    ExpectFailure(LensWarpIO::ReadFromStream(&in, warp), VEK_BAD_PARSE, c.message);
    if (c.model) {
      ASSERT_TRUE(warp) << c.text;
      EXPECT_STREQ(warp->GetClassName(), c.model);
    } else {
      EXPECT_FALSE(warp) << c.text;
    }
  }
  // A version within 0.001 is accepted.
  std::istringstream close("1 1.0009");
  SmartPointer<LensWarp> warp;
  EXPECT_EQ(LensWarpIO::ReadFromStream(&close, warp), VEK_SUCCESS);
}

}  // namespace
}  // namespace vek
