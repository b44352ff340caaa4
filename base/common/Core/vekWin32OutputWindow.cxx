#include "vekWin32OutputWindow.h"

#include "vekPlatform.h"

namespace vek {

Win32OutputWindow* Win32OutputWindow::New() { return new Win32OutputWindow; }

Win32OutputWindow* Win32OutputWindow::GetInstance() {
  if (platform::TextWindowExists()) return nullptr;
  Initialize();
  return New();
}

int Win32OutputWindow::Initialize() {
  platform::TextWindowCreate();
  return 1;
}

void Win32OutputWindow::Destroy() { platform::TextWindowDestroy(); }

void Win32OutputWindow::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "Window: " << (platform::TextWindowExists() ? "open" : "none") << "\n";
}

void Win32OutputWindow::AddText(const char* text) {
  Initialize();
  if (text && *text) platform::TextWindowAppend(text);
}

void Win32OutputWindow::ReportMessage(const char* message) {
  std::string rest = message ? message : "";
  for (auto newline = rest.find('\n'); newline != std::string::npos; newline = rest.find('\n')) {
    AddText(rest.substr(0, newline).c_str());
    AddText("\r\n");
    rest.erase(0, newline + 1);
  }
  AddText(rest.c_str());
}

std::string Win32OutputWindow::GetText() { return platform::TextWindowText(); }

}  // namespace vek
