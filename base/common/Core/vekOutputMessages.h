#pragma once
#include <sstream>
#include <string>

#include "vekCommonExport.h"

namespace vek {

// The channels every diagnostic of the library leaves through. All of them end in the rotating
// debug log (OutputFile); the kind of a message is part of its text ("ERROR:", "WARNING:",
// "Message:", "Coder:"), not of the channel.
VEK_EXPORT void OutputWindowError(const char* message);
VEK_EXPORT void OutputWindowWarning(const char* message);
VEK_EXPORT void OutputWindowConsoleMessage(const char* message);
VEK_EXPORT void OutputWindowProgrammerMessage(const char* message);
VEK_EXPORT void OutputWindowReportMessage(const char* message);

/// kind + source-file stem + ", " + line + ": ", e.g. "ERROR:vekStack, 42: ".
VEK_EXPORT std::string LocationPrefix(const char* kind, const char* sourceFile, int line);

}  // namespace vek

// Sends one line "<kind><stem>, <line>: <text>\n" to a channel; `text` may be a stream
// expression: VEK_REPORT_ERROR("Read " << count << " values").
#define VEK_REPORT_AT(channel, kind, line, text)                                     \
  do {                                                                               \
    std::ostringstream vekReportStream_;                                             \
    vekReportStream_ << ::vek::LocationPrefix(kind, __FILE__, line) << text << '\n'; \
    channel(vekReportStream_.str().c_str());                                         \
  } while (false)
#define VEK_REPORT(channel, kind, text) VEK_REPORT_AT(channel, kind, __LINE__, text)
#define VEK_REPORT_ERROR(text) VEK_REPORT(::vek::OutputWindowError, "ERROR:", text)
#define VEK_REPORT_WARNING(text) VEK_REPORT(::vek::OutputWindowWarning, "WARNING:", text)
#define VEK_REPORT_MESSAGE(text) VEK_REPORT(::vek::OutputWindowConsoleMessage, "Message:", text)
#define VEK_REPORT_CODER(text) VEK_REPORT(::vek::OutputWindowError, "Coder:", text)
