#include <gtest/gtest.h>

#include <cmath>
#include <regex>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekKeystoneWarp.h"
#include "vekSmartPointer.h"
#include "vekTestSupport.h"

namespace vek {
namespace {

using WarpPtr = SmartPointer<KeystoneWarp>;

// q = (0.5, 0.5, 0.5) has w = 0.5 and is the 120 degree turn about the diagonal, exactly the
// axis cycle R = [0 0 1; 1 0 0; 0 1 0]: camera = (t0, x + t1, y + t2) for the surface point (x, y).
const double kCycle[7] = {0.5, 0.5, 0.5, 1, 2, 10, 100};

WarpPtr MakeWarp(const double* parameters) {
  auto warp = WarpPtr::New();
  warp->SetParameters(parameters);
  warp->SetCameraCenterFromCameraSize(641, 481);  // centre (320, 240)
  return warp;
}

TEST(KeystoneWarp, ForwardOfKnownPoses) {
  const double identity[7] = {0, 0, 0, 1, 2, 10, 100};
  auto warp = MakeWarp(identity);
  double u, v;
  warp->Forward(0.0, 0.0, u, v);
  EXPECT_TRUE(u == 330.0 && v == 260.0);
  warp->ThreeDForward(0, 0, 5, u, v);  // camera (1, 2, 15)
  EXPECT_DOUBLE_EQ(u, 320 + 100.0 / 15);
  warp->ThreeDForward(0, 0, -10, u, v);  // on the camera plane: untouched
  EXPECT_DOUBLE_EQ(u, 320 + 100.0 / 15);

  // A tilt of 0.3 about x: camera = (x + 0.5, cos 0.3 y - 0.3, sin 0.3 y + 5).
  const double tilt[7] = {std::sin(0.15), 0, 0, 0.5, -0.3, 5, 800};
  warp = MakeWarp(tilt);
  warp->Forward(1.0, 2.0, u, v);
  const double z = 2 * std::sin(0.3) + 5;
  EXPECT_NEAR(u, 800 * 1.5 / z + 320, 1e-9);
  EXPECT_NEAR(v, 800 * (2 * std::cos(0.3) - 0.3) / z + 240, 1e-9);
}

TEST(KeystoneWarp, InvertRoundTripsAgreesWithInvertBAndFailsOnParallelRays) {
  const double pose[7] = {0.1, -0.2, 0.05, -0.4, 0.3, 6, 900};
  auto warp = MakeWarp(pose);
  for (auto [x, y] : {std::pair{0.0, 0.0}, {1.5, -0.75}, {-2.0, 2.5}}) {
    double u, v, xa = 99, ya = 99, xb = 99, yb = 99;
    warp->Forward(x, y, u, v);
    ASSERT_EQ(warp->Invert(u, v, xa, ya), 0);
    ASSERT_EQ(warp->InvertB(u, v, xb, yb), 0);
    EXPECT_NEAR(xa, x, 1e-9);
    EXPECT_NEAR(ya, y, 1e-9);
    EXPECT_NEAR(xb, xa, 1e-9);
    EXPECT_NEAR(yb, ya, 1e-9);
  }
  // With the axis cycle the ray of pixel (u, v) has z component (u - cx) / f: parallel to the plane.
  warp = MakeWarp(kCycle);
  double rx, ry, rz;
  warp->GetRinvCamera(320, 250, rx, ry, rz);
  EXPECT_TRUE(rx == 0.1 && ry == 1 && rz == 0);
  double x = 7, y = 8;
  EXPECT_EQ(warp->Invert(320.0, 250.0, x, y), 1);
  EXPECT_EQ(warp->InvertB(320.0, 250.0, x, y), 1);
  EXPECT_TRUE(x == 7 && y == 8);
  float xf = 7, yf = 8;
  EXPECT_EQ(warp->Invert(320.0f, 250.0f, xf, yf), 1);
  EXPECT_TRUE(xf == 7 && yf == 8);
}

TEST(KeystoneWarp, OverlongQuaternionReportsOnceWithTranslationX) {
  test::LogCapture log;
  const double parameters[7] = {0.8, 0.8, 0, 5, 6, 7, 100};
  auto warp = WarpPtr::New();
  warp->SetParameters(parameters);
  const std::string text = log.Text();
  const std::regex line(
      "ERROR:vekMatrix3x3, [0-9]+: This should not happen, sum is bigger than 1:"
      "0\\.8 0\\.8 0 5:1\\.28\n");
  EXPECT_EQ(std::distance(std::sregex_iterator(text.begin(), text.end(), line), std::sregex_iterator()), 1) << text;
  // Real part 0: R^T t, column 0 of R being (1 - 2 y^2, 2 x y, 2 x z) = (-0.28, 1.28, 0).
  double tx, ty, tz;
  warp->GetRinvT(tx, ty, tz);
  EXPECT_NEAR(tx, -0.28 * 5 + 1.28 * 6, 1e-12);

  // The class's own real part reports in its own format: every value followed by a blank.
  test::LogCapture own;
  EXPECT_EQ(KeystoneWarp::get_quaternion_real(parameters), 0.0);
  EXPECT_TRUE(std::regex_search(own.Text(), std::regex("ERROR:vekKeystoneWarp, [0-9]+: This should not happen, sum is "
                                                       "bigger than 10\\.8 0\\.8 0 5 :1\\.28\n")))
      << own.Text();
}

TEST(KeystoneWarp, NumberFileOfSevenFloats) {
  test::TempDirectory dir;
  const std::string name = dir.File("keystone.txt");
  auto warp = MakeWarp(kCycle);
  ASSERT_EQ(warp->Write(name.c_str()), 0);
  EXPECT_EQ(test::ReadFile(name), test::TextFileBytes("7\n0.5\n0.5\n0.5\n1\n2\n10\n100\n"));
  auto read = WarpPtr::New();
  ASSERT_EQ(read->Read(name.c_str()), 0);
  double p[7];
  read->GetParameters(p);
  EXPECT_TRUE(p[0] == 0.5 && p[3] == 1 && p[6] == 100);

  test::WriteFile(name, "6\n0\n0\n0\n1\n2\n3\n");
  EXPECT_EQ(read->Read(name.c_str()), 1);
  read->GetParameters(p);
  EXPECT_EQ(p[3], 1);  // unchanged
  EXPECT_EQ(read->Read(dir.File("missing.txt").c_str()), VEK_FILE_NOT_FOUND);
}

TEST(KeystoneWarp, InitialisedOnlyWithCentreRotationAndPrint) {
  auto warp = WarpPtr::New();
  warp->SetParameters(kCycle);
  EXPECT_EQ(warp->IsInitialized(), 0);
  warp->SetCameraCenterFromCameraSize(640, 480);
  EXPECT_TRUE(warp->GetCenterX() == 319.5 && warp->GetCenterY() == 239.5);
  EXPECT_EQ(warp->IsInitialized(), 1);
  double m[3][3] = {{9, 9, 9}, {9, 9, 9}, {9, 9, 9}};
  KeystoneWarp::UpdatePartialRotationMatrix(kCycle, m);  // the third column is left alone
  const double expected[3][3] = {{0, 0, 9}, {1, 0, 9}, {0, 1, 9}};
  for (int k = 0; k < 9; ++k) EXPECT_EQ(m[k / 3][k % 3], expected[k / 3][k % 3]) << k;

  warp->SetCameraCenterFromCameraSize(641, 481);
  std::ostringstream out;
  warp->PrintSelf(out, Indent(2));
  EXPECT_EQ(out.str(),
            "  Reference Count: 1\n"
            "  Quaternion: 0.5 0.5 0.5\n"
            "  Translation: 1 2 10\n"
            "  Focal_Length: 100\n"
            "  Center: 320 240\n"
            "  Rotation Matrix: 0 0 1 1 0 0 0 1 0\n"
            "  Cached for Inverting Trans: 2 10 1\n");
}

}  // namespace
}  // namespace vek
