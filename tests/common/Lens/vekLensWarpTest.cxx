#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <sstream>
#include <vector>

#include "vekBrownLensWarp.h"
#include "vekEqualAreaFishEyeLensWarp.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekFishEyeLensWarp.h"
#include "vekLensWarpIO.h"
#include "vekRadialLensWarp.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using P = vec2<float>;

// 641 x 481: centre (320, 240), radial unit 320 px, so k1 = 0.1 / 320^2 and k2 = 0.01 / 320^4.
const double kRadialParameters[6] = {641, 481, 0, 0, 0.1, 0.01};

SmartPointer<RadialLensWarp> MakeRadial(const double* parameters = kRadialParameters) {
  auto warp = SmartPointer<RadialLensWarp>::New();
  warp->SetParameters(parameters);
  return warp;
}

const float kBrown[8] = {-0.28f, 0.09f, 0.001f, -0.0005f, -0.01f};

// 640 x 480, focal lengths 500 and 400, centre (320, 240).
template <class Warp>
SmartPointer<Warp> MakeGeneric(const float* distortion = nullptr) {
  auto warp = SmartPointer<Warp>::New();
  warp->SetCameraDimensions(640, 480);
  warp->SetFocalLengthX(500);
  warp->SetFocalLengthY(400);
  warp->SetCenterX(320);
  warp->SetCenterY(240);
  if (distortion) warp->SetDistortionParams(distortion);
  return warp;
}

void ExpectFailure(int code, int expected, const std::string& message) {
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(code), expected);
  EXPECT_TRUE(ErrorHelper::DoesErrorHaveCustomMessage(code));
  EXPECT_EQ(ErrorHelper::GetErrorMessageWithNoExtras(code), message);
}

TEST(RadialLensWarp, ParametersCentreAndPrint) {
  auto warp = MakeRadial();
  EXPECT_TRUE(warp->GetCenterX() == 320.0f && warp->GetCenterY() == 240.0f);  // k1 and k2 show in Forward
  double back[6];
  warp->SetCenterX(480);  // normalised 0.5
  warp->GetParameters(back);
  EXPECT_TRUE(back[0] == 641 && back[1] == 481 && back[3] == 0);
  EXPECT_DOUBLE_EQ(back[2], 0.5);
  EXPECT_NEAR(back[4], 0.1, 1e-8);
  EXPECT_NEAR(back[5], 0.01, 1e-9);
  const float old[4] = {1.5f, 2, 0.25f, -0.125f};
  warp->OldSetParameters(old);
  std::ostringstream os;
  warp->PrintSelf(os, Indent(2));
  EXPECT_EQ(os.str(),
            "  Reference Count: 1\n  Center: (1.5,2)\n  k1 : cubic coefficient :0.25\n"
            "  k2 : fifth order coefficient :-0.125\n");

  // A new size centres an unset normalised centre and keeps a set one; the same size recomputes nothing.
  auto fresh = SmartPointer<RadialLensWarp>::New();
  fresh->SetCameraDimensions(101, 51);
  EXPECT_TRUE(fresh->GetCenterX() == 50.0f && fresh->GetCenterY() == 25.0f);
  EXPECT_FLOAT_EQ(fresh->Getk1(), -4.0 / 10000);  // the unset scaled k1, -1, over 50^2
  fresh->SetCenterX(7);
  fresh->SetCameraDimensions(101, 51);
  EXPECT_EQ(fresh->GetCenterX(), 7.0f);
  fresh->SetCameraDimensions(201, 51);
  EXPECT_EQ(fresh->GetCenterX(), 100.0f);
  const double placed[6] = {101, 51, 0.5, -0.5, 0, 0};
  warp = MakeRadial(placed);
  warp->SetCameraDimensions(201, 101);
  EXPECT_TRUE(warp->GetCenterX() == 150.0f && warp->GetCenterY() == 25.0f);
}

TEST(RadialLensWarp, ForwardAndInverses) {
  auto warp = MakeRadial();
  float x, y;
  warp->Forward(640, 240, x, y);  // r = 320: factor 1 + 0.1 + 0.01
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
  for (const P& p : {P(675.2f, 240), P(10, 20), P(600, 470)}) {
    P undistorted, back;
    EXPECT_EQ(warp->Invert(p, undistorted), VEK_SUCCESS);
    warp->Forward(undistorted, back);
    EXPECT_NEAR(back.x, p.x, 1e-3);
    EXPECT_NEAR(back.y, p.y, 1e-3);
  }
  // Invert assumes k0 = 1; InvertB honours k0.
  float ux, uy;
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
  EXPECT_EQ(warp->GetCenterX(), 320.0f);  // the first value counts the rest; the second is a version
  test::WriteFile(file, "6\n1.1\n641\n481\n0\n0\n0.1\n");
  EXPECT_EQ(warp->Read(file.c_str()), 1);
  EXPECT_EQ(warp->Read(directory.File("missing.txt").c_str()), VEK_FILE_NOT_FOUND);
}

// Every point, bit for bit (not-a-number at the radial centre compares as itself); enough points for
// the models that split arrays over threads.
// A model whose point formulas a user changed: the array operations must follow them.
template <class Model>
struct Shifted : Model {
  static Shifted* New() { return new Shifted; }
  void Forward(float const& x, float const& y, float& outX, float& outY) const override {
    outX = x + 1;
    outY = y - 2;
  }
  int Invert(float const& x, float const& y, float& outX, float& outY) const override {
    outX = x * 2;
    outY = y;
    return 0;
  }
  using LensWarp::Forward;
  using LensWarp::Invert;
};

TEST(LensWarp, ArraysSkipUnsetPointsAndMatchOnePointResults) {
  auto fishEye = SmartPointer<FishEyeLensWarp>::New();
  fishEye->SetCameraDimensions(640, 480);
  auto brown = MakeGeneric<BrownLensWarp>(kBrown);
  auto radial = MakeRadial();
  auto equalArea = MakeGeneric<EqualAreaFishEyeLensWarp>();
  std::vector<P> source;
  for (int i = 0; i < 20000; ++i) source.emplace_back(static_cast<float>(i % 640), static_cast<float>((i * 7) % 480));
  source[3] = source[15000] = P();
  auto shiftedRadial = SmartPointer<Shifted<RadialLensWarp>>::New();
  auto shiftedEqualArea = SmartPointer<Shifted<EqualAreaFishEyeLensWarp>>::New();
  auto shiftedFishEye = SmartPointer<Shifted<FishEyeLensWarp>>::New();
  auto shiftedBrown = SmartPointer<Shifted<BrownLensWarp>>::New();
  for (LensWarp* warp :
       std::initializer_list<LensWarp*>{radial.GetPointer(), equalArea.GetPointer(), fishEye.GetPointer(),
                                        brown.GetPointer(), shiftedRadial.GetPointer(), shiftedEqualArea.GetPointer(),
                                        shiftedFishEye.GetPointer(), shiftedBrown.GetPointer()}) {
    for (bool forward : {true, false}) {
      std::vector<P> points = source, expected = source;
      for (size_t i = 0; i < source.size(); ++i) {
        if (!source[i].IsUnset())
          forward ? warp->Forward(source[i], expected[i]) : void(warp->Invert(source[i], expected[i]));
      }
      const unsigned int n = static_cast<unsigned int>(points.size());
      forward ? warp->InplaceForwardArray(points.data(), n) : warp->InplaceInvertArray(points.data(), n);
      EXPECT_TRUE(points[3].IsUnset() && points[15000].IsUnset()) << warp->GetClassName();
      EXPECT_EQ(std::memcmp(points.data(), expected.data(), n * sizeof(P)), 0) << warp->GetClassName() << forward;
    }
  }
}

TEST(EqualAreaFishEyeLensWarp, MatchesTrigonometricFormulasAndFishEyeCentre) {
  auto unset = SmartPointer<EqualAreaFishEyeLensWarp>::New();
  EXPECT_FALSE(unset->IsInitialized());
  unset->SetFocalLengthX(1);
  unset->SetFocalLengthY(1);
  unset->SetCenterX(0);
  EXPECT_TRUE(unset->IsInitialized());  // centre y is not looked at
  auto warp = MakeGeneric<EqualAreaFishEyeLensWarp>();
  // Direct from the definitions, in double.
  auto forwardScale = [](double rho) { return 2 * std::sin(std::atan(rho) / 2) / rho; };
  auto inverseScale = [](double rho) { return std::tan(2 * std::asin(rho / 2)) / rho; };
  for (const P& uv : {P(0.6f, 0.8f), P(-0.1f, 0.05f), P(1.0f, -0.7f), P(1e-4f, 0)}) {
    const double rho = std::hypot(double(uv.x), double(uv.y));
    const float px = 320 + 500 * uv.x, py = 240 + 400 * uv.y;
    float x, y;
    warp->Forward(px, py, x, y);
    EXPECT_NEAR(x, 320 + 500 * uv.x * forwardScale(rho), 2e-4);
    EXPECT_NEAR(y, 240 + 400 * uv.y * forwardScale(rho), 2e-4);
    warp->Invert(px, py, x, y);
    EXPECT_NEAR(x, 320 + 500 * uv.x * inverseScale(rho), 1e-3);
    EXPECT_NEAR(y, 240 + 400 * uv.y * inverseScale(rho), 1e-3);
  }
  float x, y;
  warp->Forward(320, 240, x, y);
  EXPECT_TRUE(x == 320 && y == 240);
  warp->Invert(320 + 500 * 2.5f, 240, x, y);  // beyond the largest radius, 2
  EXPECT_TRUE(std::isnan(x));

  auto fishEye = SmartPointer<FishEyeLensWarp>::New();
  fishEye->SetCameraDimensions(640, 481);
  std::ostringstream os;
  fishEye->PrintSelf(os, Indent(0));
  EXPECT_EQ(os.str(), "Reference Count: 1\nCenter: (319.5,240)\n");
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

TEST(LensWarpIO, EveryModelWithItsTypeTagAndBack) {
  const std::string equalAreaBody = "2 1.1 640 480 500 400 320 240 1 2 3 4 5 6 7 8 \n",
                    written = "7 1.1 641 481 0 0 0.1 0.01 \n1 1 \n" + equalAreaBody +
                              "3 1.1 640 480 500 400 320 240 -0.28 0.09 0.001 -0.0005 -0.01 0 0 0 \n";
  const float eight[8] = {1, 2, 3, 4, 5, 6, 7, 8};
  auto radial = MakeRadial();
  auto fishEye = SmartPointer<FishEyeLensWarp>::New();
  auto equalArea = MakeGeneric<EqualAreaFishEyeLensWarp>(eight);
  auto brown = MakeGeneric<BrownLensWarp>(kBrown);
  std::ostringstream os;
  for (LensWarp* warp : std::initializer_list<LensWarp*>{radial.GetPointer(), fishEye.GetPointer(),
                                                         equalArea.GetPointer(), brown.GetPointer()})
    EXPECT_EQ(LensWarpIO::WriteToStream(&os, warp), VEK_SUCCESS);
  EXPECT_EQ(os.str(), written);
  auto unknown = SmartPointer<UnknownLens>::TakeReference(new UnknownLens);
  ExpectFailure(LensWarpIO::WriteToStream(&os, unknown.GetPointer()), VEK_INVALID_PARAMETERS,
                "Unable to write lens distortion warp to file.  Unknown lens distortion correction type.");
  EXPECT_EQ(os.str(), written);

  // What is read writes the same bytes again (the type tag included).
  std::istringstream in(written);
  std::ostringstream again;
  SmartPointer<LensWarp> warp;
  for (int k = 0; k < 4; ++k) {
    ASSERT_EQ(LensWarpIO::ReadFromStream(&in, warp), VEK_SUCCESS);
    EXPECT_EQ(warp->GetReferenceCount(), 1);
    EXPECT_EQ(LensWarpIO::WriteToStream(&again, warp.GetPointer()), VEK_SUCCESS);
  }
  EXPECT_EQ(again.str(), written);
  std::istringstream placed("7 1.1 641 481 0.5 0 0.1 0.01");  // the pixel centre follows the normalised one
  ASSERT_EQ(LensWarpIO::ReadFromStream(&placed, warp), VEK_SUCCESS);
  EXPECT_EQ(dynamic_cast<RadialLensWarp&>(*warp).GetCenterX(), 480.0f);

  test::TempDirectory directory;
  const std::string file = directory.File("lens.txt");
  ASSERT_EQ(LensWarpIO::WriteToFile(file.c_str(), equalArea.GetPointer()), VEK_SUCCESS);
  EXPECT_EQ(test::ReadFile(file), test::TextFileBytes(equalAreaBody));
  ASSERT_EQ(LensWarpIO::ReadFromFile(file.c_str(), warp), VEK_SUCCESS);
  EXPECT_STREQ(warp->GetClassName(), "EqualAreaFishEyeLensWarp");
  const int missing = LensWarpIO::ReadFromFile(directory.File("none.txt").c_str(), warp);
  EXPECT_EQ(ErrorHelper::GetErrorWithoutCustomMessageFlag(missing), VEK_FILE_NOT_FOUND);
  EXPECT_FALSE(warp);
  // A folder in the file's place, or a folder that does not exist: the file cannot be opened.
  for (const std::string& target : {directory.Path().string(), directory.File("no-dir/lens.txt")})
    EXPECT_EQ(LensWarpIO::WriteToFile(target.c_str(), equalArea.GetPointer()),
              VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING | VEK_CUSTOM_MESSAGE_FLAG)
        << target;
  // Either line end reads.
  test::WriteFile(file, "2 1.1 0 0 0 0 0 0 0 0 0 0 0 0 0 0\r\n");
  EXPECT_EQ(LensWarpIO::ReadFromFile(file.c_str(), warp), VEK_SUCCESS);
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
  // Sizes beyond int are held to its range rather than cast, so a damaged body reads into a
  // useless but well-defined model.
  std::istringstream huge("7 1.1 6.5e90 -1e300 0.5 0 0.1 0.01");
  SmartPointer<LensWarp> read;
  ASSERT_EQ(LensWarpIO::ReadFromStream(&huge, read), VEK_SUCCESS);
  auto* radial = static_cast<RadialLensWarp*>(read.GetPointer());
  EXPECT_EQ(radial->GetWidth(), INT_MAX);
  EXPECT_EQ(radial->GetHeight(), INT_MIN);
  // A version within 0.001 is accepted.
  std::istringstream close("1 1.0009");
  SmartPointer<LensWarp> warp;
  EXPECT_EQ(LensWarpIO::ReadFromStream(&close, warp), VEK_SUCCESS);
}

}  // namespace
}  // namespace vek
