// The initialisation files of the class initializer: the input is one file, read in place of all
// settings and then added a second time. Every look-up of a name the file mentions must stay in
// the range asked for, and reading the file twice must hold twice its lines.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>
#include <vector>

#include "vekClassInitializer.h"
#include "vekFuzzSupport.h"

using namespace vek;

namespace {

// The first word of every line, which is where a setting's name stands.
std::vector<std::string> FirstWords(const std::string& text) {
  std::vector<std::string> words;
  std::istringstream lines(text);
  std::string line, word;
  while (std::getline(lines, line) && words.size() < 64) {
    std::istringstream in(line);
    if (in >> word) words.push_back(word);
  }
  return words;
}

void LookUp(const std::string& name) {
  const char* key = name.c_str();
  int i = 0;
  ClassInitializer::Get(key, i, 3, -5, 5);
  VEK_FUZZ_CHECK(i >= -5 && i <= 5, name + " read as int " + std::to_string(i));
  float f = 0;
  ClassInitializer::Get(key, f, 0.5f, -1.5f, 2.5f);
  VEK_FUZZ_CHECK(f >= -1.5f && f <= 2.5f, name + " read as float " + std::to_string(f));
  double d = 0;
  ClassInitializer::Get(key, d, 0.5, -1.5, 2.5);
  VEK_FUZZ_CHECK(d >= -1.5 && d <= 2.5, name + " read as double " + std::to_string(d));
  bool b = false;
  ClassInitializer::Get(key, b, true, false, true);
  std::string s;
  ClassInitializer::Get(key, s, "default");
  char* copy = nullptr;
  ClassInitializer::Get(key, copy, "default");
  // A C string ends at the first zero byte, wherever the std::string does.
  VEK_FUZZ_CHECK(copy && std::strcmp(copy, s.c_str()) == 0, name + " read differently as std::string and as char*");
  delete[] copy;
  std::vector<std::string> words;
  std::vector<int> ints;
  std::vector<float> floats;
  const bool found = ClassInitializer::Get(key, words);
  ClassInitializer::Get(key, ints);
  ClassInitializer::Get(key, floats);
  VEK_FUZZ_CHECK(ints.size() == words.size() && floats.size() == words.size(), name + ": lists of different lengths");
  char** values = nullptr;
  int count = -1;
  VEK_FUZZ_CHECK(ClassInitializer::DeprecatedGet(key, values, count) == (found ? 1 : 0),
                 name + ": DeprecatedGet disagrees on whether it is there");
  VEK_FUZZ_CHECK(count == static_cast<int>(words.size()), name + ": DeprecatedGet counts differently");
  for (int k = 0; k < count; ++k) {
    VEK_FUZZ_CHECK(std::strcmp(values[k], words[static_cast<size_t>(k)].c_str()) == 0,
                   name + ": DeprecatedGet word differs");
    delete[] values[k];
  }
  delete[] values;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string path = fuzz::WriteInput(input, "Initialization");
  fuzz::AllocationWatch watch(size);
  ClassInitializer::ReInitialize(path.c_str());
  const int lines = ClassInitializer::GetNumberOfLines();
  ClassInitializer::ConcatenatedInitialize(path.c_str());
  VEK_FUZZ_CHECK(ClassInitializer::GetNumberOfLines() == 2 * lines, "a second reading of the file holds other lines");
  ClassInitializer::GetReportGets();
  for (const std::string& name : FirstWords(input)) LookUp(name);
  std::ostringstream printed;
  ClassInitializer::PrintMe(printed);
  return 0;
}
