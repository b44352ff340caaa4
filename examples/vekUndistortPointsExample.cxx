// Reads a camera lens file and undistorts camera points, the first thing a calibration does with
// every spot the camera found. Usage: vekUndistortPointsExample LENS_FILE (e.g. examples/camera.lens)
#include <cstdio>

#include "vekErrorHelper.h"
#include "vekLensWarp.h"
#include "vekLensWarpIO.h"
#include "vekSmartPointer.h"

int main(int argc, char** argv) {
  using namespace vek;
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s LENS_FILE\n", argv[0]);
    return 2;
  }
  // The file's type tag picks the model (3 is Brown); the holder owns the object it makes.
  SmartPointer<LensWarp> lens;
  const int status = LensWarpIO::ReadFromFile(argv[1], lens);
  if (status != VEK_SUCCESS) {
    std::fprintf(stderr, "%s\n", ErrorHelper::GetErrorMessageWithNoExtras(status).c_str());
    return 1;
  }

  // Camera pixels as the camera delivered them, distorted. (-5, -5) is the unset point (a spot
  // that was not found): the array operations pass over it and leave it as it is.
  constexpr unsigned int kCount = 4;
  const vec2<float> delivered[kCount] = {{1999.5f, 1499.5f}, {400, 300}, {3600, 2700}, {-5, -5}};
  vec2<float> ideal[kCount];
  for (unsigned int i = 0; i < kCount; ++i) ideal[i] = delivered[i];

  // Invert undistorts (delivered -> ideal pinhole pixels); Forward distorts (ideal -> delivered).
  lens->InplaceInvertArray(ideal, kCount);
  for (unsigned int i = 0; i < kCount; ++i) {
    if (ideal[i].IsUnset()) {
      std::printf("delivered (%8.2f, %8.2f) is the unset point, passed over\n", delivered[i].x, delivered[i].y);
      continue;
    }
    vec2<float> back;
    lens->Forward(ideal[i], back);
    std::printf("delivered (%8.2f, %8.2f) -> undistorted (%8.2f, %8.2f) -> distorted again (%8.2f, %8.2f)\n",
                delivered[i].x, delivered[i].y, ideal[i].x, ideal[i].y, back.x, back.y);
  }

  // One point at a time, Invert reports whether its solver converged.
  vec2<float> one;
  if (lens->Invert(delivered[1], one) != VEK_SUCCESS) std::printf("the point did not converge\n");
  return 0;
}
