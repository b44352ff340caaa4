#include "vekNonUniformRectilinearGrid.h"

#include <new>

#include "vekErrorCodes.h"

namespace vek {

NonUniformRectilinearGrid* NonUniformRectilinearGrid::New() { return new (std::nothrow) NonUniformRectilinearGrid; }

NonUniformRectilinearGrid::~NonUniformRectilinearGrid() {
  if (XCoord) XCoord->UnRegister();
  if (YCoord) YCoord->UnRegister();
}

void NonUniformRectilinearGrid::SetCoord(DataArray<float>*& held, DataArray<float>* coords) {
  if (held == coords) return;
  if (held) held->UnRegister();
  held = coords;
  if (held) held->Register();
}

DataArray<float>* NonUniformRectilinearGrid::CreateCoord(int n, float start, float step) {
  DataArray<float>* coords = DataArray<float>::New();
  if (!coords) return nullptr;
  if (coords->SetNumberOfValues(n > 0 ? n : 0) != VEK_SUCCESS) {
    coords->Release();
    return nullptr;
  }
  double value = start;
  for (int i = 0; i < n; ++i, value += step) (*coords)[i] = static_cast<float>(value);
  return coords;
}

int NonUniformRectilinearGrid::CreateXCoord(int n, float start, float step) {
  DataArray<float>* coords = CreateCoord(n, start, step);
  if (!coords) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if (XCoord) XCoord->UnRegister();
  XCoord = coords;  // keeps the reference New gave
  return VEK_SUCCESS;
}

int NonUniformRectilinearGrid::CreateYCoord(int n, float start, float step) {
  DataArray<float>* coords = CreateCoord(n, start, step);
  if (!coords) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  if (YCoord) YCoord->UnRegister();
  YCoord = coords;
  return VEK_SUCCESS;
}

OrderedQuadrilateral NonUniformRectilinearGrid::GetRegion(int i, int j) const {
  float x0 = GetPointx(i), x1 = GetPointx(i + 1), y0 = GetPointy(j), y1 = GetPointy(j + 1);
  return OrderedQuadrilateral(vec2<float>(x0, y0), vec2<float>(x1, y0), vec2<float>(x0, y1), vec2<float>(x1, y1));
}

Rectangle NonUniformRectilinearGrid::GetRegionRectangle(int i, int j) const {
  return Rectangle(GetPointx(i), GetPointy(j), GetPointx(i + 1), GetPointy(j + 1));
}

int NonUniformRectilinearGrid::FindSection(float value, const DataArray<float>* coords) {
  int n = coords ? coords->GetNumberOfValues() : 0;
  if (n == 0) return -1;
  const float* c = coords->GetPointer();
  if (c[0] > value) return -1;
  if (value > c[n - 1]) return n - 1;
  int lo = 0, hi = n - 1, mid = hi / 2;
  if (mid == 0) return 0;
  while (mid != lo) {
    if (c[mid] > value)
      hi = mid;
    else
      lo = mid;
    mid = (hi + lo) / 2;
  }
  return mid;
}

void NonUniformRectilinearGrid::FindPointsInside(const vec2<float>& min, const vec2<float>& max, int& i0, int& j0,
                                                 int& i1, int& j1, float tolerance) const {
  i0 = FindSection(min.x - tolerance, XCoord) + 1;
  i1 = FindSection(max.x + tolerance, XCoord);
  j0 = FindSection(min.y - tolerance, YCoord) + 1;
  j1 = FindSection(max.y + tolerance, YCoord);
}

int NonUniformRectilinearGrid::IsInRange(const vec2<float>& p) const {
  if (GetNumx() == 0 || GetNumy() == 0) return 0;
  return p.x > GetPointx(0) && p.y > GetPointy(0) && GetLastPointx() > p.y && GetLastPointy() > p.y ? 1 : 0;
}

void NonUniformRectilinearGrid::FillInPoints(vec2<float>* out) const {
  int nx = GetNumx(), ny = GetNumy();
  for (int j = 0; j < ny; ++j)
    for (int i = 0; i < nx; ++i) *out++ = vec2<float>(GetPointx(i), GetPointy(j));
}

void NonUniformRectilinearGrid::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "XCoord:" << (XCoord ? " Not Null" : " NULL") << "\n";
  if (XCoord) XCoord->PrintSelf(os, indent.GetNextIndent());
  os << indent << "YCoord:" << (YCoord ? " Not Null" : " NULL") << "\n";
  if (YCoord) YCoord->PrintSelf(os, indent.GetNextIndent());
}

}  // namespace vek
