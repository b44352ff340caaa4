#pragma once
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// The inputs that once made a fuzz target fail, kept in tests/fuzz/regressions/<target>/ so that
// the fuzz targets replay them as well. Included by the ordinary tests that pin each one down.
namespace vek::test {

/// The bytes of tests/fuzz/regressions/<target>/<name>, found from this header's own place.
inline std::string RegressionInput(const std::string& target, const std::string& name) {
  const std::filesystem::path file = std::filesystem::path(__FILE__).parent_path() / "regressions" / target / name;
  std::ifstream in(file, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

}  // namespace vek::test
