#pragma once
#include <string>

#include "vekObject.h"

namespace vek {

/// A scrolling text window for programs that want to watch messages live. On Windows it is a real
/// top-level window ("OutputWindow", 512 x 512) holding a read-only edit control with a text limit
/// of 5,242,880 characters; on other systems the same text is kept in memory with the same limit,
/// and GetText() shows it on every platform. Each "\n" of a message becomes "\r\n" in the window.
/// The window procedure lives in the platform layer.
class VEK_EXPORT Win32OutputWindow : public Object {
 public:
  static Win32OutputWindow* New();
  /// A new instance and window when no window exists yet; null when the window exists already.
  static Win32OutputWindow* GetInstance();
  /// Makes sure the window exists; returns 1 in every case.
  static int Initialize();
  static void Destroy();
  const char* GetClassName() const override { return "Win32OutputWindow"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  static void AddText(const char* text);
  static void ReportMessage(const char* message);
  static void Error(const char* message) { ReportMessage(message); }
  static void Warning(const char* message) { ReportMessage(message); }
  /// The window's current text ("" when there is no window).
  static std::string GetText();

 protected:
  Win32OutputWindow() = default;
  ~Win32OutputWindow() override = default;
};

}  // namespace vek
