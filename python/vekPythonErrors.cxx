// vek.Error and the status codes: every failure the library reports reaches Python as vek.Error,
// with the code, its name and the message in the language in force.
#include <pybind11/eval.h>
#include <pybind11/stl.h>

#include <optional>
#include <string>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekLanguageTables.h"
#include "vekPython.h"
#include "vekTextConversion.h"

namespace vek::python {

namespace {

// A new reference, kept for the life of the process: freeing it after the interpreter has gone
// would touch a dead heap.
PyObject* g_errorType = nullptr;

constexpr const char* kErrorClass = R"(
class Error(Exception):
    """A failure reported by the vek library.

    Attributes:
        code: the status code (an int, without the custom-message flag 32768).
        name: the code's symbolic name, e.g. "VEK_FILE_NOT_FOUND" ("" for a code without one).
        message: what went wrong, in the language in force (see vek.set_language); for a
            failure that gave a message of its own (a file name, a line number), that message.

    str(error) is "NAME (code): message".
    """

    __module__ = "vek"

    def __init__(self, code, name, message):
        super().__init__(f"{name or '(unnamed)'} ({code}): {message}")
        self.code = code
        self.name = name
        self.message = message

    def __reduce__(self):
        return (type(self), (self.code, self.name, self.message))
)";

constexpr const char* kLanguages[] = {"en", "de", "fr", "ja"};

void CheckLanguage(const std::string& language) {
  for (const char* known : kLanguages)
    if (language == known) return;
  Fail(VEK_INVALID_PARAMETERS, "\"" + language + "\" is no language of the library: en, de, fr or ja");
}

void RaiseError(const StatusError& error) {
  py::object instance = py::reinterpret_borrow<py::object>(g_errorType)(error.GetCode(), error.GetName(),
                                                                        error.GetMessage());
  PyErr_SetObject(g_errorType, instance.ptr());
}

// The message of a plain code in `language` (the language in force when empty). The language in
// force is put back afterwards: the tables are process-wide.
std::string CodeMessage(int code, const std::string& language) {
  if (code < 0 || code > 0x7FFF || !ErrorHelper::IsKnownCode(code))
    Fail(VEK_INVALID_PARAMETERS,
         std::to_string(code) + " is no status code: codes are 0 to 32767 (without the custom-message flag)");
  if (language.empty()) return MessageOf(code);
  CheckLanguage(language);
  const std::string previous = LanguageTables::GetTwoLetterLanguageCode();
  LanguageTables::SetLanguage(language);
  std::string text = MessageOf(code);
  LanguageTables::SetLanguage(previous);
  return text;
}

}  // namespace

StatusError::StatusError(int status)
    : Code(ErrorHelper::GetErrorWithoutCustomMessageFlag(status)),
      Name(ErrorHelper::GetErrorName(status)),
      Message(MessageOf(status)),
      Text((Name.empty() ? "(unnamed)" : Name) + " (" + std::to_string(Code) + "): " + Message) {}

void Check(int status) {
  if (status != VEK_SUCCESS) throw StatusError(status);
}

void Fail(int code, const std::string& message) {
  throw StatusError(ErrorHelper::ErrorWithCustomMessage(code, message));
}

std::string MessageOf(int status) {
  if (ErrorHelper::DoesErrorHaveCustomMessage(status))
    return WideToUtf8(ErrorHelper::GetErrorMessageIntlWithNoExtras(status));
  const std::string name = ErrorHelper::GetErrorName(status);
  std::wstring text;
  if (!name.empty() && LanguageTables::GetText(name, text) == VEK_SUCCESS) return WideToUtf8(text);
  return ErrorHelper::GetErrorMessageWithNoExtras(status);
}

void AddErrorBindings(py::module_& m) {
  py::dict scope;
  scope["__builtins__"] = py::module_::import("builtins");
  py::exec(kErrorClass, scope);
  py::object errorClass = scope["Error"];
  g_errorType = errorClass.inc_ref().ptr();
  m.add_object("Error", errorClass);

  py::register_exception_translator([](std::exception_ptr failure) {
    try {
      if (failure) std::rethrow_exception(failure);
    } catch (const StatusError& error) {
      RaiseError(error);
    }
  });

  m.def(
      "error_message",
      [](int code, const std::optional<std::string>& language) { return CodeMessage(code, language.value_or("")); },
      py::arg("code"), py::arg("language") = py::none(),
      R"(The message of a status code.

Args:
    code: a status code, 0 to 32767 (vek.Error.code).
    language: "en", "de", "fr" or "ja"; None for the language in force. The language in force
        is the same afterwards.

Raises vek.Error (VEK_INVALID_PARAMETERS) for a number that is no status code or an unknown
language.)");
  m.def(
      "error_name",
      [](int code) {
        if (code < 0 || code > 0x7FFF || !ErrorHelper::IsKnownCode(code))
          Fail(VEK_INVALID_PARAMETERS, std::to_string(code) + " is no status code");
        return ErrorHelper::GetErrorName(code);
      },
      py::arg("code"),
      R"(The symbolic name of a status code, e.g. "VEK_FILE_NOT_FOUND" for 79 ("" for a code that has a
message but no name). Raises vek.Error for a number that is no status code.)");
  m.def(
      "set_language",
      [](const std::string& language) {
        HeldObject::CheckRunning();
        CheckLanguage(language);
        LanguageTables::SetLanguage(language);
      },
      py::arg("language"),
      R"(Chooses the language of every message for the whole process: "en", "de", "fr" or "ja".
Without a call, messages follow the user's language (LC_ALL, LC_MESSAGES or LANG).)");
  m.def(
      "language", [] { return LanguageTables::GetTwoLetterLanguageCode(); },
      R"(The language in force: "en", "de", "fr" or "ja" ("en" for every language without texts of its
own).)");
}

}  // namespace vek::python
