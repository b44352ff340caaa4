// Handles and compares status codes. Every fallible call returns an int: 0 (VEK_SUCCESS) is
// success. A failure may carry the custom-message flag (bit 15, 32768): the code then has a message
// of its own, which names the file, value or projector it is about.
#include <cstdio>

#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekLensWarpIO.h"

int main() {
  using namespace vek;
  SmartPointer<LensWarp> lens;
  const int status = LensWarpIO::ReadFromFile("no-such-folder/camera.lens", lens);
  if (ErrorHelper::Succeeded(status)) return 1;  // cannot happen: there is no such file

  // The code as returned: VEK_FILE_NOT_FOUND (79) with the flag, 32847.
  std::printf("status %d: %s (%d), %s custom message\n", status, ErrorHelper::GetErrorName(status).c_str(),
              ErrorHelper::GetErrorWithoutCustomMessageFlag(status),
              ErrorHelper::DoesErrorHaveCustomMessage(status) ? "with a" : "without a");

  // So never compare codes with ==: AreErrorsTheSame ignores the flag.
  std::printf("status == VEK_FILE_NOT_FOUND: %s; AreErrorsTheSame: %s\n", status == VEK_FILE_NOT_FOUND ? "yes" : "no",
              ErrorHelper::AreErrorsTheSame(status, VEK_FILE_NOT_FOUND) ? "yes" : "no");

  // The message: the custom one for a flagged code, the catalogue's otherwise. "WithExtras" adds
  // " (Error 79)" and also writes the message to the debug log.
  std::printf("message: %s\n", ErrorHelper::GetErrorMessageWithNoExtras(status).c_str());
  std::printf("catalogue: %s\n", ErrorHelper::GetErrorMessageWithNoExtras(VEK_FILE_NOT_FOUND).c_str());
  std::printf("with extras: %s\n", ErrorHelper::GetErrorMessageWithExtras(status).c_str());

  // Your own failure with a message: the flag is set for you. The message lives in one process-wide
  // record that the next custom message replaces, so fetch it before making another.
  const int mine = ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, "a gamma of 0 is no display's");
  std::printf("mine %d: %s\n", mine, ErrorHelper::GetErrorMessageWithNoExtras(mine).c_str());
  return ErrorHelper::AreErrorsTheSame(mine, VEK_INVALID_PARAMETERS) ? 0 : 1;
}
