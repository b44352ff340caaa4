// The line and record primitives of IOBase and the object header, each given the whole input as a
// stream: the buffer and string line readers, the key-value line, the grid record as text and raw,
// and the object frame. Lines handed out must keep the readers' promises; a grid that fails to
// read is left as it was, and one read is written and read again unchanged (raw: bit for bit;
// text, printed with six digits: from the second round on).
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekFuzzSupport.h"
#include "vekIOBase.h"
#include "vekObjectStream.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"

using namespace vek;

namespace {

constexpr int kMaxLines = 4096;

void BufferLines(const std::string& input) {
  std::istringstream in(input);
  char buffer[IOBase::kLineBufferSize];
  for (int k = 0; k < kMaxLines && IOBase::ReadLine(&in, buffer) == VEK_SUCCESS; ++k)
    VEK_FUZZ_CHECK(std::strlen(buffer) < IOBase::kLineBufferSize, "a line overran the buffer");
  std::istringstream relevant(input);
  for (int k = 0; k < kMaxLines && IOBase::ReadLineIgnoreIrrelevantLines(&relevant, buffer) == VEK_SUCCESS; ++k) {
    const std::string line = buffer;
    VEK_FUZZ_CHECK(!line.empty() && line[0] != '#' && line.find_first_not_of(' ') != std::string::npos,
                   "an irrelevant line was handed out: '" + line + "'");
  }
}

void StringLines(const std::string& input) {
  std::istringstream in(input);
  std::string line;
  for (int k = 0; k < kMaxLines && IOBase::ReadLineIgnoreIrrelevantLines(&in, line) == VEK_SUCCESS; ++k)
    VEK_FUZZ_CHECK(!line.empty() && line[0] != '#', "an irrelevant line was handed out: '" + line + "'");
  std::istringstream keyed(input);
  std::string value;
  for (int k = 0; k < kMaxLines && keyed.good(); ++k)
    if (IOBase::ReadLineWithSingleValue(keyed, "key", " =\t", value) == VEK_SUCCESS)
      VEK_FUZZ_CHECK(!value.empty() && value.find_first_of(" =\t") == std::string::npos,
                     "a value holds a delimiter: '" + value + "'");
}

SmartPointer<RectilinearGrid> KnownGrid() {
  auto grid = SmartPointer<RectilinearGrid>::New();
  grid->SetOffsetx(1.25f);
  grid->SetOffsety(-2.5f);
  grid->SetSpacex(0.5f);
  grid->SetSpacey(4.0f);
  grid->SetNumx(3);
  grid->SetNumy(7);
  return grid;
}

bool SameGrid(const RectilinearGrid& a, const RectilinearGrid& b) {
  const float fa[4] = {a.GetOffsetx(), a.GetOffsety(), a.GetSpacex(), a.GetSpacey()};
  const float fb[4] = {b.GetOffsetx(), b.GetOffsety(), b.GetSpacex(), b.GetSpacey()};
  return std::memcmp(fa, fb, sizeof fa) == 0 && a.GetNumx() == b.GetNumx() && a.GetNumy() == b.GetNumy();
}

std::string Written(const RectilinearGrid& grid, int raw) {
  std::ostringstream out(std::ios::binary);
  IOBase::WriteRectilinearGrid(&out, "Grid", grid, raw);
  return out.str();
}

void GridRecord(const std::string& input, int raw) {
  std::istringstream in(input, std::ios::binary);
  auto grid = KnownGrid();
  if (IOBase::ReadRectilinearGrid(&in, "Grid", raw, *grid) != VEK_SUCCESS) {
    VEK_FUZZ_CHECK(SameGrid(*grid, *KnownGrid()), "a failed read changed the grid");
    return;
  }
  std::string written = Written(*grid, raw);
  auto again = KnownGrid();
  std::istringstream back(written, std::ios::binary);
  VEK_FUZZ_CHECK(IOBase::ReadRectilinearGrid(&back, "Grid", raw, *again) == VEK_SUCCESS,
                 "a grid written does not read back:\n" + written);
  if (raw) {
    VEK_FUZZ_CHECK(SameGrid(*grid, *again), "a raw grid reads back different");
    return;
  }
  written = Written(*again, raw);
  std::istringstream third(written);
  VEK_FUZZ_CHECK(IOBase::ReadRectilinearGrid(&third, "Grid", raw, *grid) == VEK_SUCCESS,
                 "a grid written twice does not read back");
  VEK_FUZZ_CHECK(SameGrid(*grid, *again), "a text grid changes on a second round:\n" + written);
}

void ObjectFrames(const std::string& input) {
  std::istringstream in(input);
  for (int k = 0; k < kMaxLines && in.good(); ++k) {
    const std::istream::pos_type start = in.tellg();
    bool empty = false;
    const int status = ObjectStream::ReadObjectHeader(in, "bad header", empty);
    if (status == VEK_SUCCESS) {
      if (!empty && ObjectStream::ReadObjectTypeAndVersion(in, "DataArray", "1.0") == VEK_SUCCESS &&
          !ObjectStream::IsAtEndOfObject(in))
        ObjectStream::ReadToEndOfObject(in);
      continue;
    }
    if (!in.good()) break;
    // A header that is not there leaves the stream where it was, for another reader to try.
    if (ErrorHelper::GetErrorWithoutCustomMessageFlag(status) == VEK_UNABLE_TO_READ_FROM_STREAM) {
      VEK_FUZZ_CHECK(in.tellg() == start, "a missing header moved the stream");
      in.ignore(1);
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  fuzz::AllocationWatch watch(size);
  BufferLines(input);
  StringLines(input);
  GridRecord(input, 0);
  GridRecord(input, 1);
  ObjectFrames(input);
  return 0;
}
