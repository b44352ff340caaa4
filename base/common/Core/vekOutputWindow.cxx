#include "vekOutputWindow.h"

#include <iostream>

namespace vek {

OutputWindow* OutputWindow::Instance = nullptr;

OutputWindow* OutputWindow::New() { return new OutputWindow; }

OutputWindow* OutputWindow::GetInstance() {
  if (!Instance) Instance = New();
  return Instance;
}

void OutputWindow::Destroy() {
  if (Instance) Instance->Release();
  Instance = nullptr;
}

void OutputWindow::PrintSelf(std::ostream& os, Indent indent) const { Object::PrintSelf(os, indent); }

void OutputWindow::Error(const char* message) { std::cerr << message << std::flush; }
void OutputWindow::Warning(const char* message) { std::cerr << message << std::flush; }
void OutputWindow::ConsoleMessage(const char* message) { std::cout << message << std::flush; }
void OutputWindow::ProgrammerMessage(const char* message) { std::cout << message << std::flush; }
void OutputWindow::ReportMessage(const char* message) { std::cout << message << std::flush; }

}  // namespace vek
