#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <sstream>
#include <string>

#include "vekErrorCodes.h"
#include "vekIOBase.h"
#include "vekRectilinearGrid.h"
#include "vekSmartPointer.h"

namespace vek {
namespace {

using GridPtr = SmartPointer<RectilinearGrid>;

GridPtr MakeGrid(float ox, float oy, float sx, float sy, int nx, int ny) {
  auto grid = GridPtr::New();
  grid->SetOffsetx(ox);
  grid->SetOffsety(oy);
  grid->SetSpacex(sx);
  grid->SetSpacey(sy);
  grid->SetNumx(nx);
  grid->SetNumy(ny);
  return grid;
}

template <class T>
unsigned Bits(T value) {
  unsigned bits;
  std::memcpy(&bits, &value, 4);
  return bits;
}

bool SameBits(const RectilinearGrid& a, const RectilinearGrid& b) {
  return Bits(a.GetOffsetx()) == Bits(b.GetOffsetx()) && Bits(a.GetOffsety()) == Bits(b.GetOffsety()) &&
         Bits(a.GetSpacex()) == Bits(b.GetSpacex()) && Bits(a.GetSpacey()) == Bits(b.GetSpacey()) &&
         a.GetNumx() == b.GetNumx() && a.GetNumy() == b.GetNumy();
}

TEST(IOBaseGridRecord, TextFormExactAndReadBack) {
  std::ostringstream out;
  EXPECT_EQ(IOBase::WriteRectilinearGrid(&out, "Grid", *MakeGrid(10, -2.5f, 0.5f, 4, 3, 2), 0), 0);
  EXPECT_EQ(out.str(), "Grid\n10 -2.5 0.5 4 3 2 \n");

  std::istringstream in("# comment\n\n   \nthe Grid label\n10 -2.5 0.5 4 3 2 \n");
  auto grid = GridPtr::New();
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&in, "Grid", 0, *grid), 0);
  EXPECT_TRUE(SameBits(*grid, *MakeGrid(10, -2.5f, 0.5f, 4, 3, 2)));
}

TEST(IOBaseGridRecord, RawFormIsLittleEndianAndExact) {
  std::ostringstream out;
  EXPECT_EQ(IOBase::WriteRectilinearGrid(&out, "G", *MakeGrid(10, -2.5f, 0.5f, 4, 3, 2), 1), 0);
  const unsigned char expected[] = {'G',  '\n', 0, 0,    0x20, 0x41, 0, 0, 0x20, 0xC0, 0, 0, 0,
                                    0x3F, 0,    0, 0x80, 0x40, 3,    0, 0, 0,    2,    0, 0, 0};
  EXPECT_EQ(out.str(), std::string(reinterpret_cast<const char*>(expected), sizeof(expected)));

  // Bit for bit, including values that print inexactly and line-end bytes inside the record.
  auto written = MakeGrid(0.1f, -0.0f, 1.0f / 3.0f, NAN, 10, -1);
  std::stringstream io;
  IOBase::WriteRectilinearGrid(&io, "G", *written, 1);
  auto grid = GridPtr::New();
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&io, "G", 1, *grid), 0);
  EXPECT_TRUE(SameBits(*grid, *written));
}

TEST(IOBaseGridRecord, DamagedRecordsLeaveTheGridUntouched) {
  const auto unset = GridPtr::New();
  auto grid = GridPtr::New();
  std::istringstream wrongLabel("Other\n1 2 3 4 5 6 \n");
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&wrongLabel, "Grid", 0, *grid), VEK_FILE_NOT_FORMATTED_PROPERLY);
  std::istringstream noLine("# only a comment\n");
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&noLine, "Grid", 0, *grid), VEK_FILE_NOT_FORMATTED_PROPERLY);
  std::istringstream badNumber("Grid\n1 2 3 4 x 6 \n");
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&badNumber, "Grid", 0, *grid), VEK_UNABLE_TO_READ_NUM_FROM_FILE);
  std::istringstream shortText("Grid\n1 2 3 4 5");
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&shortText, "Grid", 0, *grid), VEK_UNABLE_TO_READ_NUM_FROM_FILE);
  std::istringstream shortRaw(std::string("Grid\n") + std::string(23, '\x7f'));
  EXPECT_EQ(IOBase::ReadRectilinearGrid(&shortRaw, "Grid", 1, *grid), VEK_UNABLE_TO_READ_NUM_FROM_FILE);
  EXPECT_TRUE(SameBits(*grid, *unset));
  EXPECT_EQ(IOBase::WriteRectilinearGrid(nullptr, "Grid", *grid, 0), VEK_UNABLE_TO_WRITE_TO_STREAM);
}

}  // namespace
}  // namespace vek
