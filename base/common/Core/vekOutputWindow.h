#pragma once
#include "vekObject.h"

namespace vek {

/// The console channel: errors and warnings to standard error, everything else to standard
/// output, each text exactly as given (no line end added).
class VEK_EXPORT OutputWindow : public Object {
 public:
  static OutputWindow* New();
  /// The process-wide instance, created on first use.
  static OutputWindow* GetInstance();
  static void Destroy();
  const char* GetClassName() const override { return "OutputWindow"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  static void Error(const char* message);
  static void Warning(const char* message);
  static void ConsoleMessage(const char* message);
  static void ProgrammerMessage(const char* message);
  static void ReportMessage(const char* message);

 protected:
  OutputWindow() = default;
  ~OutputWindow() override = default;

 private:
  static OutputWindow* Instance;
};

}  // namespace vek
