#pragma once

namespace vek {

// The message catalogue behind ErrorHelper (library-internal): rows sorted by code.
struct ErrorTableRow {
  int code;
  const char* name;     // "" for codes that have a message but no name
  const char* message;  // the default (English) message
};

const ErrorTableRow* FindErrorTableRow(int code);
const ErrorTableRow* ErrorTableBegin();
const ErrorTableRow* ErrorTableEnd();

}  // namespace vek
