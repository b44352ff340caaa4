#include "vekSpatialSubdivisionData.h"

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
#include "vekRectilinearGrid.h"

namespace vek {

namespace {

// The number of values, or -1 when the counts are negative or give more than INT_MAX values.
long long ValueCount(long long numx, long long numy, long long layers, long long components) {
  if (numx < 0 || numy < 0 || layers < 0 || numx > INT_MAX || numy > INT_MAX || layers > INT_MAX) return -1;
  const long long points = numx * numy;
  if (points > INT_MAX) return -1;
  const long long perLayer = points * components;
  if (perLayer > 0 && layers > INT_MAX / perLayer) return -1;
  return perLayer * layers;
}

}  // namespace

SpatialSubdivisionData* SpatialSubdivisionData::New() { return new (std::nothrow) SpatialSubdivisionData(1, 0.0f); }

void SpatialSubdivisionData::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Grid: " << Offsetx << " " << Offsety << " " << Spacex << " " << Spacey << " " << Numx << " " << Numy
     << "\n";
  os << indent << "NumberOfLayers: " << Layers << "\n";
  os << indent << "NumberOfComponents: " << Components << "\n";
}

int SpatialSubdivisionData::SetSubdivision(const RectilinearGrid& grid, int layers) {
  const long long count = ValueCount(grid.GetNumx(), grid.GetNumy(), layers, Components);
  if (count < 0) return VEK_INVALID_PARAMETERS;
  try {
    std::vector<float> values(static_cast<size_t>(count), DefaultValue);
    Values.swap(values);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  Offsetx = grid.GetOffsetx();
  Offsety = grid.GetOffsety();
  Spacex = grid.GetSpacex();
  Spacey = grid.GetSpacey();
  Numx = grid.GetNumx();
  Numy = grid.GetNumy();
  Layers = layers;
  return VEK_SUCCESS;
}

void SpatialSubdivisionData::GetGrid(RectilinearGrid& grid) const {
  grid.SetOffsetx(Offsetx);
  grid.SetOffsety(Offsety);
  grid.SetSpacex(Spacex);
  grid.SetSpacey(Spacey);
  grid.SetNumx(Numx);
  grid.SetNumy(Numy);
}

long long SpatialSubdivisionData::IndexOf(int layer, int point, int component) const {
  if (layer < 0 || layer >= Layers || point < 0 || point >= GetNumberOfPoints() || component < 0 ||
      component >= Components)
    return -1;
  return (static_cast<long long>(layer) * GetNumberOfPoints() + point) * Components + component;
}

float SpatialSubdivisionData::GetValue(int layer, int point, int component) const {
  const long long index = IndexOf(layer, point, component);
  return index < 0 ? DefaultValue : Values[static_cast<size_t>(index)];
}

int SpatialSubdivisionData::SetValue(int layer, int point, int component, float value) {
  const long long index = IndexOf(layer, point, component);
  if (index < 0) return VEK_INVALID_PARAMETERS;
  Values[static_cast<size_t>(index)] = value;
  return VEK_SUCCESS;
}

int SpatialSubdivisionData::Write(std::ostream& os, const std::string& indent) const {
  std::ostringstream text;
  text.precision(RecordFile::kFloatDigits);
  ObjectStream::WriteObjectHeader(text, indent, GetClassName(), kVersion);
  text << indent << "Grid " << Offsetx << " " << Offsety << " " << Spacex << " " << Spacey << " " << Numx << " " << Numy
       << " \n";
  text << indent << "Layers " << Layers << " Components " << Components << " \n";
  for (size_t k = 0; k < Values.size(); k += static_cast<size_t>(Components)) {
    text << indent << " ";
    for (int c = 0; c < Components; ++c) text << " " << Values[k + static_cast<size_t>(c)];
    text << " \n";
  }
  ObjectStream::WriteObjectFooter(text, indent);
  os << text.str();
  os.flush();
  return os.fail() ? VEK_UNABLE_TO_WRITE_TO_STREAM : VEK_SUCCESS;
}

int SpatialSubdivisionData::Read(std::istream& in) {
  const std::string type = GetClassName();
  int status = RecordFile::ReadFrame(in, type, kVersion);
  if (status != VEK_SUCCESS) return status;
  const std::string failed = "Failed to read " + type + " from stream, ";
  std::string label;
  auto expectLabel = [&](const char* expected) {
    label.clear();
    in >> label;
    return label == expected;
  };
  float offsetx, offsety, spacex, spacey;
  long long numx = -1, numy = -1, layers = -1, components = -1;
  if (!expectLabel("Grid"))
    return RecordFile::Damaged(in, VEK_FILE_NOT_FORMATTED_PROPERLY, failed + "label 'Grid' expected.");
  if (!(in >> offsetx >> offsety >> spacex >> spacey >> numx >> numy))
    return RecordFile::Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE, failed + "bad grid.");
  if (!expectLabel("Layers"))
    return RecordFile::Damaged(in, VEK_FILE_NOT_FORMATTED_PROPERLY, failed + "label 'Layers' expected.");
  if (!(in >> layers))
    return RecordFile::Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE, failed + "bad number of layers.");
  if (!expectLabel("Components"))
    return RecordFile::Damaged(in, VEK_FILE_NOT_FORMATTED_PROPERLY, failed + "label 'Components' expected.");
  if (!(in >> components))
    return RecordFile::Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE, failed + "bad number of components.");
  if (components != Components)
    return RecordFile::Damaged(in, VEK_FILE_NOT_FORMATTED_PROPERLY,
                               failed + std::to_string(Components) + " components per point expected.");
  const long long count = ValueCount(numx, numy, layers, components);
  if (count < 0) return RecordFile::Damaged(in, VEK_UNABLE_TO_READ_NUM_FROM_FILE, failed + "bad counts.");
  std::vector<float> values;
  status = RecordFile::ReadValues(in, count, values, failed, "value");
  if (status != VEK_SUCCESS) return status;
  status = RecordFile::ReadEndOfObject(in, type);
  if (status != VEK_SUCCESS) return status;
  Offsetx = offsetx;
  Offsety = offsety;
  Spacex = spacex;
  Spacey = spacey;
  Numx = static_cast<int>(numx);
  Numy = static_cast<int>(numy);
  Layers = static_cast<int>(layers);
  Values.swap(values);
  return VEK_SUCCESS;
}

int SpatialSubdivisionData::WriteToFile(const std::string& fileName) const {
  return RecordFile::WriteRecord(*this, fileName);
}

int SpatialSubdivisionData::ReadFromFile(const std::string& fileName) {
  return RecordFile::ReadRecord(*this, fileName);
}

}  // namespace vek
