#include "vekKOREnterpriseSystemManager.h"

#include <tinyxml2.h>
#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <new>

#include "vekClassInitializer.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekIOBase.h"
#include "vekPlatform.h"

namespace vek {

namespace {

using System = KOREnterpriseSystemManager::System;

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::size_t kTimeTextLength = 20;  // 2024-05-01T10:20:30Z

int Invalid(const std::string& message) { return ErrorHelper::ErrorWithCustomMessage(VEK_INVALID_PARAMETERS, message); }

int Damaged(const std::string& file, int line, const std::string& fault) {
  std::string where = line > 0 ? ", line " + std::to_string(line) : std::string();
  return ErrorHelper::ErrorWithCustomMessage(
      VEK_FILE_NOT_FORMATTED_PROPERLY,
      "The list of display systems " + file + " is damaged" + where + ": " + fault + ". The file is left as it is.");
}

// XML 1.0 cannot hold most control characters, and other readers would turn tabs and line ends in
// attributes into blanks; malformed UTF-8 makes the whole file unreadable for them.
bool IsCleanText(const std::string& text) {
  for (std::size_t k = 0; k < text.size();) {
    const unsigned char c = static_cast<unsigned char>(text[k]);
    if (c < 0x20 || c == 0x7F) return false;
    const std::size_t length = c < 0x80             ? 1
                               : (c & 0xE0) == 0xC0 ? 2
                               : (c & 0xF0) == 0xE0 ? 3
                               : (c & 0xF8) == 0xF0 ? 4
                                                    : 0;
    if (length == 0 || k + length > text.size()) return false;
    std::uint32_t point = length == 1 ? c : c & (0x7F >> length);
    for (std::size_t j = 1; j < length; ++j) {
      const unsigned char next = static_cast<unsigned char>(text[k + j]);
      if ((next & 0xC0) != 0x80) return false;
      point = point << 6 | (next & 0x3F);
    }
    constexpr std::uint32_t kShortest[] = {0, 0, 0x80, 0x800, 0x10000};
    if (point < kShortest[length] || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) return false;
    k += length;
  }
  return true;
}

int Check(const System& system) {
  if (system.Id.empty()) return Invalid("A display system needs an id.");
  const std::pair<const char*, const std::string*> texts[] = {{"Id", &system.Id},
                                                              {"Name", &system.Name},
                                                              {"BaseDirectory", &system.BaseDirectory},
                                                              {"ScreenType", &system.ScreenType}};
  for (const auto& [field, text] : texts)
    if (!IsCleanText(*text))
      return Invalid(std::string("The ") + field + " of display system \"" + system.Id +
                     "\" holds a control character or is not UTF-8.");
  if (system.NumProjectors < 0 || system.NumCameras < 0)
    return Invalid("Display system \"" + system.Id + "\" cannot have a negative number of projectors or cameras.");
  if (system.LastCalibration != KOREnterpriseSystemManager::kNeverCalibrated &&
      (system.LastCalibration < 0 || system.LastCalibration > KOREnterpriseSystemManager::kLatestTime))
    return Invalid("The last calibration of display system \"" + system.Id + "\" is not a time from 1970 to 9999.");
  return VEK_SUCCESS;
}

bool ParseCount(const char* text, int& count) {
  const char* end = text + std::char_traits<char>::length(text);
  int parsed = 0;
  const auto [stop, error] = std::from_chars(text, end, parsed);
  if (text == end || error != std::errc() || stop != end || parsed < 0) return false;
  count = parsed;
  return true;
}

// The first marked system stays active, or the first one becomes it.
void KeepOneActive(std::vector<System>& systems) {
  auto active = std::find_if(systems.begin(), systems.end(), [](const System& s) { return s.Active; });
  if (active == systems.end()) active = systems.begin();
  for (auto s = systems.begin(); s != systems.end(); ++s) s->Active = s == active;
}

std::string Serialized(const std::vector<System>& systems) {
  tinyxml2::XMLPrinter printer;
  printer.PushDeclaration("xml version=\"1.0\" encoding=\"UTF-8\"");
  printer.OpenElement(kSystemsRootElement);
  for (const System& s : systems) {
    printer.OpenElement(kSystemElement);
    printer.PushAttribute("Id", s.Id.c_str());
    printer.PushAttribute("Name", s.Name.c_str());
    printer.PushAttribute("BaseDirectory", s.BaseDirectory.c_str());
    printer.PushAttribute("ScreenType", s.ScreenType.c_str());
    printer.PushAttribute("NumProjectors", s.NumProjectors);
    printer.PushAttribute("NumCameras", s.NumCameras);
    printer.PushAttribute("LastCalibration", KOREnterpriseSystemManager::TimeText(s.LastCalibration).c_str());
    printer.PushAttribute("Active", s.Active ? "true" : "false");
    printer.CloseElement();
  }
  printer.CloseElement();
  return printer.CStr();
}

std::vector<System>::iterator WithId(std::vector<System>& systems, const std::string& id) {
  return std::find_if(systems.begin(), systems.end(), [&id](const System& s) { return s.Id == id; });
}

int NoSuchId(const std::string& file, const std::string& id) {
  return Invalid("No display system has the id \"" + id + "\" in " + file + ".");
}

}  // namespace

KOREnterpriseSystemManager* KOREnterpriseSystemManager::New() { return new (std::nothrow) KOREnterpriseSystemManager; }

void KOREnterpriseSystemManager::PrintSelf(std::ostream& os, Indent indent) const {
  Object::PrintSelf(os, indent);
  os << indent << "FileName: " << GetFileName() << "\n";
}

std::string KOREnterpriseSystemManager::GetFileName() const {
  if (!FileName.empty()) return FileName;
  ClassInitializer* settings = ClassInitializer::GetInstance();
  return settings ? settings->GetConfigDirectoryName() + kSystemsFileName : std::string(kSystemsFileName);
}

std::string KOREnterpriseSystemManager::TimeText(std::int64_t seconds) {
  if (seconds < 0 || seconds > kLatestTime) return std::string();
  using namespace std::chrono;
  const sys_days day{days{seconds / kSecondsPerDay}};
  const year_month_day date{day};
  const std::int64_t inDay = seconds % kSecondsPerDay;
  char text[32];  // room for any int the compiler cannot rule out
  std::snprintf(text, sizeof text, "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(date.year()),
                static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()), static_cast<int>(inDay / 3600),
                static_cast<int>(inDay / 60 % 60), static_cast<int>(inDay % 60));
  return text;
}

bool KOREnterpriseSystemManager::ParseTime(const std::string& text, std::int64_t& seconds) {
  if (text.empty()) {
    seconds = kNeverCalibrated;
    return true;
  }
  constexpr char kPattern[] = "dddd-dd-ddTdd:dd:ddZ";
  if (text.size() != kTimeTextLength) return false;
  for (std::size_t k = 0; k < kTimeTextLength; ++k)
    if (kPattern[k] == 'd' ? text[k] < '0' || text[k] > '9' : text[k] != kPattern[k]) return false;
  auto number = [&text](std::size_t at, std::size_t length) { return std::stoi(text.substr(at, length)); };
  using namespace std::chrono;
  const year_month_day date{year{number(0, 4)}, month{static_cast<unsigned>(number(5, 2))},
                            day{static_cast<unsigned>(number(8, 2))}};
  const int hour = number(11, 2), minute = number(14, 2), second = number(17, 2);
  if (!date.ok() || date.year() < year{1970} || hour > 23 || minute > 59 || second > 59) return false;
  seconds = static_cast<std::int64_t>(sys_days{date}.time_since_epoch().count()) * kSecondsPerDay + hour * 3600 +
            minute * 60 + second;
  return true;
}

int KOREnterpriseSystemManager::Read(const std::string& file, std::vector<System>& result) const {
  result.clear();
  std::vector<System> systems;
  std::string bytes;
  {
    std::error_code error;
    if (!std::filesystem::exists(file, error) && !error) return VEK_SUCCESS;
    std::ifstream in(file, std::ios::binary);
    if (!in)
      return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_OPEN_FILE_FOR_READING,
                                                 "Unable to open the list of display systems " + file + ".");
    bytes.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad())
      return ErrorHelper::ErrorWithCustomMessage(VEK_UNABLE_TO_OPEN_FILE_FOR_READING,
                                                 "Unable to read the list of display systems " + file + ".");
  }
  tinyxml2::XMLDocument document;
  if (document.Parse(bytes.data(), bytes.size()) != tinyxml2::XML_SUCCESS)
    return Damaged(file, document.ErrorLineNum(), std::string("the XML does not parse (") + document.ErrorName() + ")");
  const tinyxml2::XMLElement* root = document.RootElement();
  if (!root || std::string(root->Name()) != kSystemsRootElement)
    return Damaged(
        file, root ? root->GetLineNum() : 0,
        "the root element is " + std::string(root ? root->Name() : "missing") + ", not " + kSystemsRootElement);
  for (const tinyxml2::XMLElement* element = root->FirstChildElement(kSystemElement); element;
       element = element->NextSiblingElement(kSystemElement)) {
    const int line = element->GetLineNum();
    auto text = [element](const char* name) {
      const char* value = element->Attribute(name);
      return value ? value : "";
    };
    System s;
    s.Id = text("Id");
    if (s.Id.empty()) return Damaged(file, line, "a System element has no Id");
    if (WithId(systems, s.Id) != systems.end()) return Damaged(file, line, "the Id \"" + s.Id + "\" is repeated");
    s.Name = text("Name");
    s.BaseDirectory = text("BaseDirectory");
    if (element->Attribute("ScreenType")) s.ScreenType = text("ScreenType");
    for (auto [name, count] : {std::pair<const char*, int*>{"NumProjectors", &s.NumProjectors},
                               std::pair<const char*, int*>{"NumCameras", &s.NumCameras}})
      if (element->Attribute(name) && !ParseCount(text(name), *count))
        return Damaged(file, line, std::string(name) + " \"" + text(name) + "\" is not a whole number from 0 on");
    if (!ParseTime(text("LastCalibration"), s.LastCalibration))
      return Damaged(
          file, line,
          "LastCalibration \"" + std::string(text("LastCalibration")) + "\" is not a time like " + TimeText(0));
    const std::string active = text("Active");
    if (active != "" && active != "true" && active != "false")
      return Damaged(file, line, "Active \"" + active + "\" is neither true nor false");
    s.Active = active == "true";
    systems.push_back(std::move(s));
  }
  KeepOneActive(systems);
  result.swap(systems);
  return VEK_SUCCESS;
}

template <class Change>
int KOREnterpriseSystemManager::Modify(Change change) {
  try {
    const std::string file = GetFileName();
    platform::FileLock otherWriters(file + ".lock");
    std::vector<System> systems;
    int status = Read(file, systems);
    if (status == VEK_SUCCESS) status = change(file, systems);
    if (status != VEK_SUCCESS) return status;
    KeepOneActive(systems);
    return IOBase::ReplaceTextFile(file, Serialized(systems));
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

int KOREnterpriseSystemManager::List(std::vector<System>& systems) const {
  try {
    return Read(GetFileName(), systems);
  } catch (const std::bad_alloc&) {
    systems.clear();
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

int KOREnterpriseSystemManager::FindById(const std::string& id, System& system) const {
  std::vector<System> systems;
  int status = List(systems);
  if (status != VEK_SUCCESS) return status;
  auto found = WithId(systems, id);
  if (found == systems.end()) return NoSuchId(GetFileName(), id);
  system = *found;
  return VEK_SUCCESS;
}

int KOREnterpriseSystemManager::FindByName(const std::string& name, System& system) const {
  std::vector<System> systems;
  int status = List(systems);
  if (status != VEK_SUCCESS) return status;
  auto found = std::find_if(systems.begin(), systems.end(), [&name](const System& s) { return s.Name == name; });
  if (found == systems.end())
    return Invalid("No display system has the name \"" + name + "\" in " + GetFileName() + ".");
  system = *found;
  return VEK_SUCCESS;
}

int KOREnterpriseSystemManager::Add(const System& system) {
  int status = Check(system);
  if (status != VEK_SUCCESS) return status;
  return Modify([&system](const std::string& file, std::vector<System>& systems) {
    if (WithId(systems, system.Id) != systems.end())
      return Invalid("A display system with the id \"" + system.Id + "\" is already in " + file + ".");
    if (system.Active)
      for (System& s : systems) s.Active = false;
    systems.push_back(system);
    // The first system is active whatever it says; KeepOneActive sees to that.
    return VEK_SUCCESS;
  });
}

int KOREnterpriseSystemManager::Update(const System& system) {
  int status = Check(system);
  if (status != VEK_SUCCESS) return status;
  return Modify([&system](const std::string& file, std::vector<System>& systems) {
    auto found = WithId(systems, system.Id);
    if (found == systems.end()) return NoSuchId(file, system.Id);
    const bool active = found->Active;
    *found = system;
    found->Active = active;
    return VEK_SUCCESS;
  });
}

int KOREnterpriseSystemManager::Remove(const std::string& id) {
  return Modify([&id](const std::string& file, std::vector<System>& systems) {
    auto found = WithId(systems, id);
    if (found == systems.end()) return NoSuchId(file, id);
    systems.erase(found);
    return VEK_SUCCESS;
  });
}

int KOREnterpriseSystemManager::SetActive(const std::string& id) {
  return Modify([&id](const std::string& file, std::vector<System>& systems) {
    auto found = WithId(systems, id);
    if (found == systems.end()) return NoSuchId(file, id);
    for (System& s : systems) s.Active = &s == &*found;
    return VEK_SUCCESS;
  });
}

int KOREnterpriseSystemManager::Clear() {
  try {
    const std::string file = GetFileName();
    platform::FileLock otherWriters(file + ".lock");
    return IOBase::ReplaceTextFile(file, Serialized({}));
  } catch (const std::bad_alloc&) {
    return VEK_FAILED_TO_ALLOCATE_MEMORY;
  }
}

}  // namespace vek
