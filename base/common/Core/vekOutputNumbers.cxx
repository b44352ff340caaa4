#include "vekOutputNumbers.h"

#include <algorithm>
#include <climits>
#include <cstdio>
#include <memory>
#include <new>
#include <string>
#include <type_traits>

#include "vekErrorCodes.h"
#include "vekFileContents.h"
#include "vekPlatform.h"

namespace vek {

namespace {

struct FileCloser {
  void operator()(std::FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<std::FILE, FileCloser>;

// printf's argument for a value: a float goes as the double it is.
int Printable(int value) { return value; }
double Printable(double value) { return value; }
double Printable(float value) { return value; }

template <class T>
void AppendFormatted(std::string& text, const char* format, T value) {
  char buffer[64];  // ample for one number of these formats
  const int length = std::snprintf(buffer, sizeof buffer, format, value);
  if (length > 0) text.append(buffer, static_cast<std::size_t>(std::min<int>(length, sizeof buffer - 1)));
}

// The count, then one value per line, with the platform's line end. The file is replaced in one
// step, so a failure leaves an earlier file whole rather than cut short.
template <class T>
int WriteNumbers(const char* fileName, const T* values, int count, const char* format) {
  std::string text, bytes;
  try {
    AppendFormatted(text, "%i\n", count);
    for (int i = 0; i < count; ++i) AppendFormatted(text, format, Printable(values[i]));
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  const int status = FileContents::TextBytes(text, bytes);
  if (status != VEK_SUCCESS) return status;
  switch (platform::ReplaceFileContents(fileName ? fileName : "", bytes)) {
    case platform::FileReplacement::Done:
      return VEK_SUCCESS;
    case platform::FileReplacement::NotWritten:
      return VEK_FILE_NOT_FOUND;
    case platform::FileReplacement::NotReplaced:
      break;
  }
  return VEK_FAILURE;
}

long RemainingBytes(std::FILE* file) {
  long here = std::ftell(file);
  if (here < 0 || std::fseek(file, 0, SEEK_END) != 0) return -1;
  long end = std::ftell(file);
  std::fseek(file, here, SEEK_SET);
  return end - here;
}

// One value as "%i", "%f" or "%lg" reads it; true when one matched. Integers are read as long
// long: "%i" leaves a number beyond int undefined, and a wrapped count or value would pass a
// damaged file as a good one.
bool Scan(std::FILE* file, long long& value) { return std::fscanf(file, "%lli", &value) == 1; }
bool Scan(std::FILE* file, float& value) { return std::fscanf(file, "%f", &value) == 1; }
bool Scan(std::FILE* file, double& value) { return std::fscanf(file, "%lg", &value) == 1; }

template <class T>
using Scanned = std::conditional_t<std::is_same_v<T, int>, long long, T>;

// A value of the file's type; an integer beyond int does not count as read.
template <class T>
bool ScanValue(std::FILE* file, T& value) {
  Scanned<T> scanned{};
  if (!Scan(file, scanned)) return false;
  if constexpr (std::is_same_v<T, int>)
    if (scanned < INT_MIN || scanned > INT_MAX) return false;
  value = static_cast<T>(scanned);
  return true;
}

// Reads "count, then count values" and checks that nothing follows. Each value takes at least two
// bytes (a digit and a separator), which bounds the allocation by the file's size.
template <class T>
int ReadNumbers(const char* fileName, T*& values, int& count) {
  values = nullptr;
  count = 0;
  File file(std::fopen(fileName, "rb"));
  if (!file) return VEK_FILE_NOT_FOUND;
  int announced = 0;
  if (!ScanValue(file.get(), announced) || announced < 0) return VEK_FAILURE;
  long remaining = RemainingBytes(file.get());
  if (remaining < 0 || announced > remaining / 2 + 1) return VEK_FAILURE;
  std::unique_ptr<T[]> read(new (std::nothrow) T[announced]);
  if (!read && announced > 0) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (int i = 0; i < announced; ++i)
    if (!ScanValue(file.get(), read[i])) return VEK_FAILURE;
  Scanned<T> extra{};
  if (Scan(file.get(), extra)) return VEK_FAILURE;
  values = read.release();
  count = announced;
  return VEK_SUCCESS;
}

}  // namespace

int OutputNumbers::OutputIntFile(const char* fileName, const int* values, int count) {
  return WriteNumbers(fileName, values, count, "%i\n");
}

int OutputNumbers::OutputFloatFile(const char* fileName, const float* values, int count) {
  return WriteNumbers(fileName, values, count, "%.8g\n");
}

int OutputNumbers::OutputDoubleFile(const char* fileName, const double* values, int count) {
  return WriteNumbers(fileName, values, count, "%.15g\n");
}

int OutputNumbers::OutputBoolFile(const char* fileName, const bool* values, int count) {
  std::unique_ptr<int[]> asInts(new (std::nothrow) int[count > 0 ? count : 1]);
  if (!asInts) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (int i = 0; i < count; ++i) asInts[i] = values[i] ? 1 : 0;
  return OutputIntFile(fileName, asInts.get(), count);
}

int OutputNumbers::OutputVector2File(const char* fileName, const vec2<float>* points, int count) {
  std::unique_ptr<float[]> coordinates(new (std::nothrow) float[count > 0 ? 2 * count : 1]);
  if (!coordinates) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  for (int i = 0; i < count; ++i) {
    coordinates[2 * i] = points[i].x;
    coordinates[2 * i + 1] = points[i].y;
  }
  return OutputFloatFile(fileName, coordinates.get(), 2 * count);
}

int OutputNumbers::InputIntFile(const char* fileName, int*& values, int& count) {
  return ReadNumbers(fileName, values, count);
}

int OutputNumbers::InputFloatFile(const char* fileName, float*& values, int& count) {
  return ReadNumbers(fileName, values, count);
}

int OutputNumbers::InputDoubleFile(const char* fileName, double*& values, int& count) {
  return ReadNumbers(fileName, values, count);
}

int OutputNumbers::InputBoolFile(const char* fileName, bool*& values, int& count) {
  values = nullptr;
  int* asInts = nullptr;
  int result = InputIntFile(fileName, asInts, count);
  if (result != VEK_SUCCESS) return result;
  std::unique_ptr<int[]> owned(asInts);
  values = new (std::nothrow) bool[count > 0 ? count : 1];
  if (!values) {
    count = 0;
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  for (int i = 0; i < count; ++i) values[i] = owned[i] > 0;
  return VEK_SUCCESS;
}

int OutputNumbers::InputVector2File(const char* fileName, vec2<float>*& points, int& count) {
  points = nullptr;
  float* coordinates = nullptr;
  int numCoordinates = 0;
  count = 0;
  int result = InputFloatFile(fileName, coordinates, numCoordinates);
  if (result != VEK_SUCCESS) return result;
  std::unique_ptr<float[]> owned(coordinates);
  if (numCoordinates % 2 != 0) return VEK_FAILURE;
  points = new (std::nothrow) vec2<float>[numCoordinates / 2 > 0 ? numCoordinates / 2 : 1];
  if (!points) return VEK_FAILED_TO_ALLOCATE_MEMORY;
  count = numCoordinates / 2;
  for (int i = 0; i < count; ++i) points[i] = vec2<float>(owned[2 * i], owned[2 * i + 1]);
  return VEK_SUCCESS;
}

int OutputNumbers::ReadVectorArrayOfKnownLength(const char* fileName, vec2<float>* points, int expectedCount) {
  vec2<float>* read = nullptr;
  int count = 0;
  int result = InputVector2File(fileName, read, count);
  std::unique_ptr<vec2<float>[]> owned(read);
  if (result != VEK_SUCCESS) return result;
  if (count != expectedCount) return VEK_FAILURE;
  for (int i = 0; i < count; ++i) points[i] = owned[i];
  return VEK_SUCCESS;
}

}  // namespace vek
