#include "vekControlPoints.h"

#include <algorithm>
#include <climits>
#include <memory>
#include <new>
#include <sstream>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekIOBase.h"
#include "vekObjectStream.h"
#include "vekRecordFile.h"

namespace vek {

ControlPoints* ControlPoints::New() { return new (std::nothrow) ControlPoints; }

void ControlPoints::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "GridWidth: " << Width << "\n";
  os << indent << "GridHeight: " << Height << "\n";
  os << indent << "NumPoints: " << GetNumPoints() << "\n";
}

int ControlPoints::SetGridSize(int width, int height) {
  if (width < 0 || height < 0 || static_cast<long long>(width) * height > INT_MAX) return VEK_INVALID_PARAMETERS;
  try {
    std::vector<vec2<float>> points(static_cast<size_t>(width) * static_cast<size_t>(height));
    Points.swap(points);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  Width = width;
  Height = height;
  return VEK_SUCCESS;
}

int ControlPoints::SetPoint(int k, const vec2<float>& point) {
  if (k < 0 || k >= GetNumPoints()) return VEK_INVALID_PARAMETERS;
  Points[static_cast<size_t>(k)] = point;
  return VEK_SUCCESS;
}

vec2<float> ControlPoints::GetPoint(int k) const {
  if (k < 0 || k >= GetNumPoints()) return vec2<float>();
  return Points[static_cast<size_t>(k)];
}

int ControlPoints::Write(std::ostream& os, const std::string& indent) const {
  std::ostringstream text;
  text.precision(RecordFile::kFloatDigits);
  ObjectStream::WriteObjectHeader(text, indent, kType, kVersion);
  text << indent << Width << " " << Height << " \n";
  for (const vec2<float>& p : Points) text << indent << "  " << p.x << " " << p.y << " \n";
  ObjectStream::WriteObjectFooter(text, indent);
  os << text.str();
  os.flush();
  return os.fail() ? VEK_UNABLE_TO_WRITE_TO_STREAM : VEK_SUCCESS;
}

int ControlPoints::Read(std::istream& in) {
  int status = RecordFile::ReadFrame(in, kType, kVersion);
  if (status != VEK_SUCCESS) return status;
  const std::string failed = "Failed to read ControlPoints from stream, ";
  long long width = -1, height = -1;
  in >> width >> height;
  // Each side is bounded first: two counts from a file may multiply past long long.
  if (!in || width < 0 || height < 0 || width > INT_MAX || height > INT_MAX || width * height > INT_MAX)
    return RecordFile::Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE, failed + "bad grid size.");
  const long long count = width * height;
  std::vector<vec2<float>> points;
  status = RecordFile::ReadValues(in, count, points, failed, "point");
  if (status != VEK_SUCCESS) return status;
  status = RecordFile::ReadEndOfObject(in, kType);
  if (status != VEK_SUCCESS) return status;
  Width = static_cast<int>(width);
  Height = static_cast<int>(height);
  Points.swap(points);
  return VEK_SUCCESS;
}

int ControlPoints::WriteToFile(const std::string& fileName) const { return RecordFile::WriteRecord(*this, fileName); }

int ControlPoints::ReadFromFile(const std::string& fileName) { return RecordFile::ReadRecord(*this, fileName); }

}  // namespace vek
