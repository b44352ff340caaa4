// The warp mesh reader, the input being the mesh file. A mesh read is serialized, and that text
// must read back into a mesh that serializes to the same bytes again.
#include <cstdint>
#include <sstream>
#include <string>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekTextureMeshReader.h"

using namespace vek;

namespace {

std::string Serialized(const TextureMesh& mesh) {
  std::ostringstream out;
  mesh.Serialize(out);
  return out.str();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  std::istringstream in(input);
  fuzz::AllocationWatch watch(size);
  SmartPointer<TextureMesh> mesh;
  if (TextureMeshReader::Read(in, mesh) != VEK_SUCCESS) {
    VEK_FUZZ_CHECK(!mesh, "a failed read handed out a mesh");
    return 0;
  }
  const std::string first = Serialized(*mesh);
  std::istringstream back(first);
  SmartPointer<TextureMesh> again;
  VEK_FUZZ_CHECK(TextureMeshReader::Read(back, again) == VEK_SUCCESS,
                 "a mesh serialized does not read back:\n" + first);
  VEK_FUZZ_CHECK(Serialized(*again) == first, "a mesh serialized reads back different:\n" + first);
  return 0;
}
