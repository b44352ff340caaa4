#include "vekRestorePointInfo.h"

#include <tinyxml2.h>
#include <charconv>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>

#include "vekCustomLanguageString.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekIOBase.h"
#include "vekOutputMessages.h"
#include "vekRecordFile.h"

namespace vek {

namespace {

constexpr char kRoot[] = "RestorePointInfo";

// The plain code, which callers compare with; the reason goes to the error channel.
int NotFormatted(const std::string& path, const std::string& why) {
  VEK_REPORT_ERROR("Failed to read restore point description " << path << ": " << why);
  return VEK_FILE_NOT_FORMATTED_PROPERLY;
}

// An empty or missing count is 0; otherwise the whole text must be the number: tinyxml2's own
// reader would take "12abc" as 12.
bool ParseCount(const char* text, int& value) {
  value = RestorePointInfo::kUnsetCount;
  if (!*text) return true;
  const char* end = text + std::char_traits<char>::length(text);
  const auto [stop, error] = std::from_chars(text, end, value);
  return error == std::errc() && stop == end;
}

// XML reads a CR inside a text as a line end, and runs of them not always as many: a value's line
// ends are written as LF, which reads back as written.
std::string WithLineFeeds(const std::string& text) {
  std::string result;
  result.reserve(text.size());
  for (size_t k = 0; k < text.size(); ++k) {
    if (text[k] != '\r') result += text[k];
    else if (k + 1 >= text.size() || text[k + 1] != '\n') result += '\n';
  }
  return result;
}

// The XML reader drops a text of nothing but white space (as isspace counts it, form feeds too);
// a CDATA section keeps it.
bool IsWhiteSpaceOnly(const std::string& text) {
  return !text.empty() && text.find_first_not_of(" \t\n\v\f\r") == std::string::npos;
}

}  // namespace

RestorePointInfo* RestorePointInfo::New() { return new (std::nothrow) RestorePointInfo; }

void RestorePointInfo::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "ProductName: " << ProductName << "\n";
  os << indent << "ProductVersion: " << ProductVersion << "\n";
  os << indent << "BuildId: " << BuildId << "\n";
  os << indent << "NumProjectors: " << NumProjectors << "\n";
  os << indent << "NumCameras: " << NumCameras << "\n";
  os << indent << "ScreenType: " << ScreenType << "\n";
  os << indent << "Description: " << Description << "\n";
}

int RestorePointInfo::WriteToFile(const std::string& path) const {
  std::string content;
  try {
    tinyxml2::XMLPrinter printer;
    printer.PushDeclaration("xml version=\"1.0\" encoding=\"UTF-8\"");
    printer.OpenElement(kRoot);
    auto field = [&printer](const char* name, const std::string& value) {
      printer.OpenElement(name);
      const std::string text = WithLineFeeds(value);
      printer.PushText(text.c_str(), IsWhiteSpaceOnly(text));
      printer.CloseElement();
    };
    field("ProductName", ProductName);
    field("ProductVersion", ProductVersion);
    field("BuildId", BuildId);
    field("NumProjectors", std::to_string(NumProjectors));
    field("NumCameras", std::to_string(NumCameras));
    field("ScreenType", ScreenType);
    field("Description", Description);
    printer.CloseElement();
    content = printer.CStr();
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  return RecordFile::Replace(path, content);
}

int RestorePointInfo::ReadFromFile(const std::string& path) {
  std::string bytes;
  {
    std::ifstream* opened = nullptr;
    const int status = IOBase::OpenFileForReading(opened, path);
    if (status != VEK_SUCCESS) return status;
    std::unique_ptr<std::ifstream> in(opened);
    try {
      bytes.assign(std::istreambuf_iterator<char>(*in), std::istreambuf_iterator<char>());
    } catch (const std::bad_alloc&) {
      return VEK_FAILED_TO_ALLOCATE_MEMORY;
    }
    if (in->bad())
      return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_OPEN_FILE_FOR_READING,
                                                 CustomLanguageString("VEK_UNABLE_TO_OPEN_FILE_FOR_READING_CUSTOM")
                                                     << path);
  }
  tinyxml2::XMLDocument document;
  if (document.Parse(bytes.data(), bytes.size()) != tinyxml2::XML_SUCCESS)
    return NotFormatted(path, std::string("the XML does not parse (") + document.ErrorStr() + ").");
  const tinyxml2::XMLElement* root = document.RootElement();
  if (!root || std::string(root->Name()) != kRoot) return NotFormatted(path, "no RestorePointInfo element.");

  const char* texts[7];
  const char* const names[7] = {"ProductName", "ProductVersion", "BuildId",    "NumProjectors",
                                "NumCameras",  "ScreenType",     "Description"};
  for (int k = 0; k < 7; ++k) {
    const tinyxml2::XMLElement* element = root->FirstChildElement(names[k]);
    const bool required = k >= 5;  // ScreenType and Description
    if (!element && required) return NotFormatted(path, std::string("no ") + names[k] + " element.");
    texts[k] = element && element->GetText() ? element->GetText() : "";
  }
  int projectors = kUnsetCount, cameras = kUnsetCount;
  if (!ParseCount(texts[3], projectors)) return NotFormatted(path, "NumProjectors is no integer.");
  if (!ParseCount(texts[4], cameras)) return NotFormatted(path, "NumCameras is no integer.");
  try {
    std::string productName = texts[0], productVersion = texts[1], buildId = texts[2], screenType = texts[5],
                description = texts[6];
    ProductName.swap(productName);
    ProductVersion.swap(productVersion);
    BuildId.swap(buildId);
    ScreenType.swap(screenType);
    Description.swap(description);
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
  NumProjectors = projectors;
  NumCameras = cameras;
  return VEK_SUCCESS;
}

}  // namespace vek
