#pragma once
#include <istream>
#include <string>

#include "vekCommonExport.h"
#include "vekSmartPointer.h"
#include "vekTextureMesh.h"

namespace vek {

/// Reads the mesh warp file that TextureMesh::Serialize writes into a new TextureMesh, for tools
/// and tests that look at warps already handed to a renderer. For a file the writer produced on a
/// default-formatted stream it is the writer's exact inverse: serializing what it read gives the
/// same bytes again. That holds because every float has more precision than the six digits the
/// writer prints: x, u, v, alpha and the anisotropy take the float nearest their text, and y the
/// float nearest text + 46.996 (the writer's shift undone in double), which prints back as the
/// same text.
///
/// Accepted: the writer's lines in its order, tokens separated by blanks or tabs (the vertex
/// lines' trailing blank may be missing), lines ended by LF or CR LF, empty lines after the last
/// face. Numbers are read as std::from_chars reads them. A mapping other than NORMALIZED reads as
/// PIXELS and a sampling other than LINEAR as ANISOTROPIC, the writer's only spellings of them.
///
/// Refused, each with a custom message "<source>, line <n>: <what>" (the source is the file name
/// or "warp mesh"), and the pointer left empty:
/// - VEK_FILE_NOT_FORMATTED_PROPERLY: the input ends before the declared vertex and face lines,
///   its last line has no line end (a file cut short, perhaps inside a number), or text follows
///   the last face.
/// - VEK_BAD_PARSE: a line that is not what its place requires: another keyword, another number
///   of values, a value that is no finite number (NaN and infinities are no warp), a negative
///   count, a y beyond the float range, or a vertex index outside 0 .. VERTICES - 1.
/// Storage grows with the lines actually read, not with the declared counts, so a damaged count
/// cannot make a short input allocate much; the mesh itself is allocated once all lines are in.
class VEK_EXPORT TextureMeshReader {
 public:
  static int Read(std::istream& in, SmartPointer<TextureMesh>& mesh);
  /// VEK_FILE_NOT_FOUND or VEK_UNABLE_TO_OPEN_FILE_FOR_READING, naming the file, when it cannot
  /// be opened (as IOBase::OpenFileForReading reports them); otherwise Read of its bytes.
  static int ReadFile(const std::string& fileName, SmartPointer<TextureMesh>& mesh);

 private:
  TextureMeshReader() = delete;
};

}  // namespace vek
