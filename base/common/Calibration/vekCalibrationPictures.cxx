#include "vekCalibrationPictures.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekIOBase.h"

#define STB_IMAGE_WRITE_STATIC
#define STB_IMAGE_WRITE_IMPLEMENTATION
#include <stb/stb_image_write.h>

namespace vek {

namespace {

// Colours that stay apart from each other and from the black fill outline.
const char* const kColours[] = {"#1f77b4", "#d62728", "#2ca02c", "#ff7f0e", "#9467bd",
                                "#17becf", "#e377c2", "#8c564b", "#bcbd22", "#7f7f7f"};

std::string Colour(size_t projector) { return kColours[projector % (sizeof(kColours) / sizeof(kColours[0]))]; }

// The outer ring of a spot grid's mapping points: first row, last column, last row back, first
// column back; points the mapping could not fill are passed over.
std::vector<vec2<float>> Outline(const ProjectorFootprint& footprint) {
  const TriangleMesh& mesh = *footprint.GetMappingCameraMesh();
  const int columns = footprint.GetColumns(), rows = footprint.GetRows();
  std::vector<int> ring;
  for (int i = 0; i < columns; ++i) ring.push_back(i);
  for (int j = 1; j < rows; ++j) ring.push_back(j * columns + columns - 1);
  for (int i = columns - 2; i >= 0; --i) ring.push_back((rows - 1) * columns + i);
  for (int j = rows - 2; j > 0; --j) ring.push_back(j * columns);
  std::vector<vec2<float>> outline;
  for (int k : ring)
    if (!mesh.GetPoint(k).IsUnset()) outline.push_back(mesh.GetPoint(k));
  return outline;
}

class SvgPath {
 public:
  void MoveTo(double x, double y) { Text << 'M' << Rounded(x) << ' ' << Rounded(y); }
  void LineTo(double x, double y) { Text << 'L' << Rounded(x) << ' ' << Rounded(y); }
  void Close() { Text << 'Z'; }
  std::string Data() const { return Text.str(); }

 private:
  static double Rounded(double value) { return std::round(value * 10) / 10; }
  std::ostringstream Text;
};

}  // namespace

int CalibrationPictures::WriteCameraViewSvg(const std::string& path,
                                            const std::vector<const ProjectorFootprint*>& footprints,
                                            const std::vector<const TextureMesh*>& warps,
                                            const FlatScreenModel& screen) {
  // The view spans the footprints and the fill region, with a margin.
  std::vector<vec2<double>> fill(4);
  const vec2<double> content[4] = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
  double left = 1e300, top = 1e300, right = -1e300, bottom = -1e300;
  auto extend = [&](double x, double y) {
    left = std::min(left, x);
    right = std::max(right, x);
    top = std::min(top, y);
    bottom = std::max(bottom, y);
  };
  for (int k = 0; k < 4; ++k)
    if (screen.ContentToCamera(content[k], fill[k])) extend(fill[k].x, fill[k].y);
  for (const ProjectorFootprint* footprint : footprints)
    if (footprint) {
      extend(footprint->GetCameraMin().x, footprint->GetCameraMin().y);
      extend(footprint->GetCameraMax().x, footprint->GetCameraMax().y);
    }
  if (!(right > left) || !(bottom > top))
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "Nothing to draw in " + path);
  const double margin = 0.03 * std::max(right - left, bottom - top);
  left -= margin;
  top -= margin;
  right += margin;
  bottom += margin;
  const double stroke = 0.0015 * std::max(right - left, bottom - top);

  std::ostringstream svg;
  svg << "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"" << left << ' ' << top << ' ' << right - left << ' '
      << bottom - top << "\" width=\"1600\" height=\"" << static_cast<int>(1600 * (bottom - top) / (right - left))
      << "\">\n<rect x=\"" << left << "\" y=\"" << top << "\" width=\"" << right - left << "\" height=\""
      << bottom - top << "\" fill=\"white\"/>\n";
  for (size_t p = 0; p < footprints.size(); ++p) {
    if (!footprints[p]) continue;
    SvgPath outline;
    const std::vector<vec2<float>> ring = Outline(*footprints[p]);
    for (size_t k = 0; k < ring.size(); ++k) k == 0 ? outline.MoveTo(ring[k].x, ring[k].y) : outline.LineTo(ring[k].x, ring[k].y);
    outline.Close();
    svg << "<path d=\"" << outline.Data() << "\" fill=\"" << Colour(p) << "\" fill-opacity=\"0.25\" stroke=\""
        << Colour(p) << "\" stroke-width=\"" << 2 * stroke << "\"/>\n";
  }
  for (size_t p = 0; p < warps.size() && p < footprints.size(); ++p) {
    if (!warps[p]) continue;
    const TextureMesh& warp = *warps[p];
    std::vector<vec2<double>> camera(static_cast<size_t>(warp.GetNumPoints()));
    std::vector<char> known(camera.size(), 0);
    for (int v = 0; v < warp.GetNumPoints(); ++v) {
      const vec2<float>& uv = warp.GetPointUV(v);
      known[v] = screen.ContentToCamera({uv.x, uv.y}, camera[v]) ? 1 : 0;
    }
    SvgPath grid;
    for (int t = 0; t < warp.GetNumTriangles(); ++t) {
      int a = 0, b = 0, c = 0;
      warp.GetTriangle(t, a, b, c);
      if (!known[a] || !known[b] || !known[c]) continue;
      grid.MoveTo(camera[a].x, camera[a].y);
      grid.LineTo(camera[b].x, camera[b].y);
      grid.LineTo(camera[c].x, camera[c].y);
      grid.Close();
    }
    svg << "<path d=\"" << grid.Data() << "\" fill=\"none\" stroke=\"" << Colour(p) << "\" stroke-opacity=\"0.6\" "
        << "stroke-width=\"" << 0.4 * stroke << "\"/>\n";
  }
  SvgPath fillOutline;
  for (int k = 0; k < 4; ++k) k == 0 ? fillOutline.MoveTo(fill[k].x, fill[k].y) : fillOutline.LineTo(fill[k].x, fill[k].y);
  fillOutline.Close();
  svg << "<path d=\"" << fillOutline.Data() << "\" fill=\"none\" stroke=\"black\" stroke-width=\"" << 3 * stroke
      << "\" stroke-dasharray=\"" << 12 * stroke << ' ' << 6 * stroke << "\"/>\n";
  for (size_t p = 0; p < footprints.size(); ++p) {
    if (!footprints[p]) continue;
    const double x = 0.5 * (footprints[p]->GetCameraMin().x + footprints[p]->GetCameraMax().x);
    const double y = 0.5 * (footprints[p]->GetCameraMin().y + footprints[p]->GetCameraMax().y);
    svg << "<text x=\"" << x << "\" y=\"" << y << "\" font-family=\"sans-serif\" font-size=\"" << 30 * stroke
        << "\" text-anchor=\"middle\" fill=\"" << Colour(p) << "\">Projector " << p << "</text>\n";
  }
  svg << "</svg>\n";
  return IOBase::ReplaceTextFile(path, svg.str());
}

int CalibrationPictures::WriteAlphaPng(const std::string& path, const TextureMesh& warp, int width, int height) {
  if (width < 1 || height < 1 || static_cast<long long>(width) * height > (1LL << 30))
    return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "No picture of that size for " + path);
  std::vector<unsigned char> pixels(static_cast<size_t>(width) * height, 0);
  for (int t = 0; t < warp.GetNumTriangles(); ++t) {
    int corner[3];
    warp.GetTriangle(t, corner[0], corner[1], corner[2]);
    vec2<double> p[3];
    double alpha[3];
    for (int k = 0; k < 3; ++k) {
      p[k] = {warp.GetPointXY(corner[k]).x, warp.GetPointXY(corner[k]).y};
      alpha[k] = warp.GetAlpha(corner[k]);
    }
    const double area = (p[1].x - p[0].x) * (p[2].y - p[0].y) - (p[1].y - p[0].y) * (p[2].x - p[0].x);
    if (!(std::abs(area) > 0)) continue;
    const int x0 = std::max(0, static_cast<int>(std::ceil(std::min({p[0].x, p[1].x, p[2].x}))));
    const int x1 = std::min(width - 1, static_cast<int>(std::floor(std::max({p[0].x, p[1].x, p[2].x}))));
    const int y0 = std::max(0, static_cast<int>(std::ceil(std::min({p[0].y, p[1].y, p[2].y}))));
    const int y1 = std::min(height - 1, static_cast<int>(std::floor(std::max({p[0].y, p[1].y, p[2].y}))));
    for (int y = y0; y <= y1; ++y)
      for (int x = x0; x <= x1; ++x) {
        // Barycentric weights of the pixel centre; a little slack keeps shared edges gap-free.
        const double w1 = ((x - p[0].x) * (p[2].y - p[0].y) - (y - p[0].y) * (p[2].x - p[0].x)) / area;
        const double w2 = ((p[1].x - p[0].x) * (y - p[0].y) - (p[1].y - p[0].y) * (x - p[0].x)) / area;
        const double w0 = 1 - w1 - w2;
        if (w0 < -1e-9 || w1 < -1e-9 || w2 < -1e-9) continue;
        const double value = std::clamp(w0 * alpha[0] + w1 * alpha[1] + w2 * alpha[2], 0.0, 1.0);
        pixels[static_cast<size_t>(y) * width + x] = static_cast<unsigned char>(std::lround(value * 255));
      }
  }
  std::string png;
  auto append = [](void* context, void* data, int size) {
    static_cast<std::string*>(context)->append(static_cast<const char*>(data), static_cast<size_t>(size));
  };
  if (!stbi_write_png_to_func(append, &png, width, height, 1, pixels.data(), width))
    return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_WRITE_IMAGE_FILE, "Could not encode " + path);
  return IOBase::ReplaceFile(path, png);
}

}  // namespace vek
