#pragma once
#include "vekCommonExport.h"
#include "vekVec2.h"

namespace vek {

/// Plain number-array files: the count on the first line, then one value per line
/// (integers "%i", floats "%.8g", doubles "%.15g", booleans as 1/0). Files are written with the
/// platform's line end (CR LF on Windows, LF elsewhere); readers take either. Readers reject a file that holds more
/// or fewer values than it announces, and never hand out a partly filled array: on failure the
/// array pointer is null and the count 0. Arrays handed out are the caller's (delete[]).
/// Writers build the whole text first and put it in place of the file in one step (through
/// "<file>.tmp"), so a failed write leaves an earlier file whole.
/// All functions return a status code: VEK_FILE_NOT_FOUND when the file cannot be opened (for a
/// writer: a directory or a read-only file in its place, a folder that does not exist), VEK_FAILURE
/// when its content does not match (or the written temporary could not replace the file).
class VEK_EXPORT OutputNumbers {
 public:
  static int OutputIntFile(const char* fileName, const int* values, int count);
  static int OutputFloatFile(const char* fileName, const float* values, int count);
  static int OutputDoubleFile(const char* fileName, const double* values, int count);
  static int OutputBoolFile(const char* fileName, const bool* values, int count);
  /// A float file of 2 * count values: x then y of each point.
  static int OutputVector2File(const char* fileName, const vec2<float>* points, int count);

  static int InputIntFile(const char* fileName, int*& values, int& count);
  static int InputFloatFile(const char* fileName, float*& values, int& count);
  static int InputDoubleFile(const char* fileName, double*& values, int& count);
  /// Reads an integer file; each value v becomes (v > 0).
  static int InputBoolFile(const char* fileName, bool*& values, int& count);
  /// Reads a float file of an even number of values into count/2 points.
  static int InputVector2File(const char* fileName, vec2<float>*& points, int& count);
  /// Reads a vector file into the caller's array only when it holds exactly `expectedCount` points.
  static int ReadVectorArrayOfKnownLength(const char* fileName, vec2<float>* points, int expectedCount);

 private:
  OutputNumbers() = delete;
  OutputNumbers(const OutputNumbers&) = delete;
  OutputNumbers& operator=(const OutputNumbers&) = delete;
};

}  // namespace vek
