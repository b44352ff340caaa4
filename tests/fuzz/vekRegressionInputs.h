#pragma once
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

// The inputs that once made a fuzz target fail, kept in tests/fuzz/regressions/<target>/ so that
// the fuzz targets replay them as well, and what comparing their results takes. Included by the
// ordinary tests that pin each one down and by the fuzz targets.
namespace vek::test {

/// The bytes of tests/fuzz/regressions/<target>/<name>, found from this header's own place.
inline std::string RegressionInput(const std::string& target, const std::string& name) {
  const std::filesystem::path file = std::filesystem::path(__FILE__).parent_path() / "regressions" / target / name;
  std::ifstream in(file, std::ios::binary);
  std::ostringstream bytes;
  bytes << in.rdbuf();
  return bytes.str();
}

/// `text` with every line end as LF: CR LF as one, a lone CR as one, as XML reads a value back.
inline std::string WithLineFeeds(const std::string& text) {
  std::string result;
  for (size_t k = 0; k < text.size(); ++k)
    if (text[k] != '\r') result += text[k];
    else if (k + 1 >= text.size() || text[k + 1] != '\n') result += '\n';
  return result;
}

}  // namespace vek::test
