// vek error CODE [--language LL]: a status code's name and message.
#include <charconv>
#include <iostream>
#include <memory>
#include <string>

#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekTextConversion.h"
#include "vekTool.h"

namespace vek::tool {

namespace {

// Decimal, or hexadecimal after "0x"; false for anything else or beyond int.
bool ParseNumber(const std::string& text, int& number) {
  const bool hex = text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  const char* begin = text.data() + (hex ? 2 : 0);
  const char* end = text.data() + text.size();
  auto [ptr, error] = std::from_chars(begin, end, number, hex ? 16 : 10);
  return error == std::errc() && ptr == end && begin != end;
}

// Why the number is no status code; "" when it is one.
std::string WhyNoStatusCode(int code) {
  const std::string text = std::to_string(code);
  const int plain = ErrorHelper::GetErrorWithoutCustomMessageFlag(code);
  const bool flagged = ErrorHelper::DoesErrorHaveCustomMessage(code) != 0;
  if (code < 0 || code > 0xFFFF)
    return text + " is no status code: codes are 0 to 32767, plus 32768 when a call gave a custom message";
  if (!ErrorHelper::IsKnownCode(code))
    return flagged ? text + " is no status code: it would be " + std::to_string(plain) +
                         " with the custom-message flag (32768), and " + std::to_string(plain) + " is no code"
                   : text + " is no status code";
  if (flagged && plain == VEK_SUCCESS)
    return text + " is no status code: it would be VEK_SUCCESS (0) with the custom-message flag (32768), "
                  "and success carries no message";
  return "";
}

int ShowError(const std::string& codeText, const std::string& language) {
  int code = 0;
  if (!ParseNumber(codeText, code)) return UsageError("CODE: \"" + codeText + "\" is no number");
  const std::string problem = WhyNoStatusCode(code);
  if (!problem.empty()) return UsageError(problem);
  if (!language.empty()) ConfigurationDatabase::SetLanguage(language);

  const int plain = ErrorHelper::GetErrorWithoutCustomMessageFlag(code);
  const std::string name = ErrorHelper::GetErrorName(plain);
  std::wstring message;
  if (name.empty() || ConfigurationDatabase::GetText(name, message) != VEK_SUCCESS)
    message = Utf8ToWide(ErrorHelper::GetErrorMessageWithNoExtras(plain));
  std::cout << (name.empty() ? "(unnamed)" : name) << " (" << plain << "): " << WideToUtf8(message) << "\n";
  if (code != plain)
    std::cout << code << " is " << plain << " with the custom-message flag (32768): the call that returned it "
              << "gave a message of its own, which only its caller saw; the message above is the code's own.\n";
  return kSuccess;
}

}  // namespace

void AddErrorCommand(Commands& commands) {
  auto code = std::make_shared<std::string>();
  auto language = std::make_shared<std::string>();
  CLI::App* error = commands.Add(commands.GetRoot(), "error", "Print a status code's name and message.",
                                 [code, language] { return ShowError(*code, *language); });
  error->add_option("CODE", *code,
                    "The code, decimal or 0x hexadecimal. A code with 32768 added carries the custom-message "
                    "flag: 32847 is VEK_FILE_NOT_FOUND (79) returned with a message of its own.")
      ->required();
  error->add_option("--language", *language, "The message's language (default: the user's).")
      ->type_name("LL")
      ->check(CLI::IsMember({"en", "de", "fr", "ja"}));
}

}  // namespace vek::tool
