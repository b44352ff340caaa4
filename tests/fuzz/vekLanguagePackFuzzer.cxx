// Language packs, the input being a pack file. It is read directly, and then as the file
// LanguagePack.lang of the configuration folder, which replaces the built-in pack: every text is
// looked up through the tables and its placeholders filled. No text may keep the two characters
// that stand for a line break, and the tables must go back to the built-in pack afterwards.
// Reading the built-in pack costs more than the rest of an input, so that last check runs for one
// input size in kRestoreCheckEvery: the choice depends only on the input, which keeps the coverage
// of an input the same from run to run.
#include <cstdint>
#include <sstream>
#include <string>

#include "vekErrorCodes.h"
#include "vekFuzzSupport.h"
#include "vekLanguageTables.h"

using namespace vek;

namespace {

constexpr std::size_t kMaxKeys = 64;
// A key of the built-in English pack, present whatever the input held.
constexpr char kBuiltInKey[] = "VEK_FILE_NOT_FOUND_CUSTOM";
constexpr std::size_t kRestoreCheckEvery = 8;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input = fuzz::BeginInput(data, size);
  const std::string pack = fuzz::ConfigDirectory() + "LanguagePack.lang";
  fuzz::WriteFile(pack, input);
  {
    fuzz::AllocationWatch watch(size);
    LanguageTables::Table table;
    VEK_FUZZ_CHECK(LanguageTables::LoadLanguagePackFromFile(pack, table) == VEK_SUCCESS, "a pack file does not load");
    std::istringstream stream(input);
    LanguageTables::Table suffixed;
    LanguageTables::LoadLanguagePackFromStream(stream, suffixed, L"!");
    if (input.compare(0, 3, "\xEF\xBB\xBF") != 0) {
      VEK_FUZZ_CHECK(suffixed.size() == table.size(), "the stream and the file give different tables");
      for (const auto& [key, text] : table)
        VEK_FUZZ_CHECK(suffixed.count(key) && suffixed[key] == text + L"!", "the suffix is missing: " + key);
    }

    LanguageTables::CleanUp();
    std::size_t looked = 0;
    for (const auto& [key, text] : table) {
      if (++looked > kMaxKeys) break;
      std::wstring found;
      VEK_FUZZ_CHECK(LanguageTables::GetText(key, found) == VEK_SUCCESS, "a key of the pack is not found: " + key);
      VEK_FUZZ_CHECK(found == text, "the tables hold another text than the file: " + key);
      VEK_FUZZ_CHECK(found.find(L"\\n") == std::wstring::npos, "a text keeps an escaped line break: " + key);
      LanguageTables::FormatLanguageString(found, 0, L"%d", 12);
      LanguageTables::FormatLanguageString(found, 1, L"%.3f", 2.5);
      LanguageTables::FormatLanguageString(found, 2, L"%g", 1.0f);
    }
  }
  fuzz::RemoveFile(pack);
  LanguageTables::CleanUp();
  if (size % kRestoreCheckEvery != 0) return 0;
  std::wstring builtIn;
  VEK_FUZZ_CHECK(LanguageTables::GetText(kBuiltInKey, builtIn) == VEK_SUCCESS && !builtIn.empty(),
                 "the built-in pack does not come back");
  return 0;
}
