#include "vekOptionListing.h"

#include <map>
#include <set>

#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekErrorHelper.h"
#include "vekOptionFile.h"
#include "vekOptionValue.h"
#include "vekRecursiveLock.h"

namespace vek {

namespace {

// What one file says about each name it holds: its last line's value (and, for the info file,
// type); names in the order of their first lines.
struct FileView {
  std::vector<std::string> Order;
  std::map<std::string, std::pair<std::string, std::string>> Values;  // name -> (value, type)

  void Put(const std::string& name, const std::string& value, const std::string& type = "") {
    if (Values.find(name) == Values.end()) Order.push_back(name);
    Values[name] = {value, type};
  }
  const std::pair<std::string, std::string>* Get(const std::string& name) const {
    auto found = Values.find(name);
    return found == Values.end() ? nullptr : &found->second;
  }
};

int Damaged(int code, const std::string& file, std::size_t index) {
  return ErrorHelper::ErrorWithCustomMessage(code, file + ", line " + std::to_string(index + 1) +
                                                       ": the option store cannot read this line");
}

// A missing file holds nothing; a store that was never loaded has no file names at all.
int Read(const std::string& file, bool info, FileView& view) {
  if (file.empty()) return VEK_FILE_NOT_FOUND;
  std::vector<std::string> lines;
  if (OptionFile::GetFileLines(file, lines) != VEK_SUCCESS) return VEK_SUCCESS;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    std::string& line = lines[i];
    if (!line.empty() && line.back() == '\r') line.pop_back();
    std::vector<std::string> tokens;
    OptionFile::Tokenize(line, tokens);
    if (tokens.empty() || tokens[0][0] == '#') continue;
    std::string value;
    if (!info) {
      int status = OptionFile::ParseOptionLine(line, value);
      if (status != VEK_SUCCESS) return Damaged(status, file, i);
      view.Put(tokens[0], value);
      continue;
    }
    std::string name, type, minimum, maximum;
    int visibility = 0;
    int status = OptionFile::ParseOptionInfoLine(line, name, type, visibility, value, minimum, maximum);
    if (status != VEK_SUCCESS) return Damaged(status, file, i);
    std::string normalized;
    if ((type == "Bool" || type == "BoolArray") && OptionValue::NormalizeBoolText(value, normalized))
      value = normalized;
    view.Put(name, value, type);
  }
  return VEK_SUCCESS;
}

struct StoreView {
  FileView Options, Defaults, Info;

  int Load(ConfigurationDatabase& store) {
    int status = Read(store.GetOptionsFileName(), false, Options);
    if (status == VEK_SUCCESS) status = Read(store.GetDefaultsFileName(), false, Defaults);
    if (status == VEK_SUCCESS) status = Read(store.GetOptionInfoFileName(), true, Info);
    return status;
  }

  OptionListing::Entry Resolve(const std::string& name) const {
    OptionListing::Entry entry;
    entry.Name = name;
    const auto* described = Info.Get(name);
    if (described) entry.Type = described->second;
    if (const auto* set = Options.Get(name)) {
      entry.Value = set->first;
      entry.From = OptionListing::OptionsFile;
    } else if (const auto* factory = Defaults.Get(name)) {
      entry.Value = factory->first;
      entry.From = OptionListing::DefaultsFile;
    } else if (described) {
      entry.Value = described->first;
      entry.From = OptionListing::InfoFile;
    }
    return entry;
  }
};

}  // namespace

int OptionListing::Find(ConfigurationDatabase& store, const std::string& key, Entry& entry) {
  RecursiveLockGuard lock(RecursiveLock::ConfigurationLock());
  StoreView view;
  int status = view.Load(store);
  if (status != VEK_SUCCESS) return status;
  entry = view.Resolve(key);
  return VEK_SUCCESS;
}

int OptionListing::List(ConfigurationDatabase& store, bool all, std::vector<Entry>& entries) {
  RecursiveLockGuard lock(RecursiveLock::ConfigurationLock());
  entries.clear();
  StoreView view;
  int status = view.Load(store);
  if (status != VEK_SUCCESS) return status;
  std::set<std::string> listed;
  auto add = [&](const std::vector<std::string>& names) {
    for (const std::string& name : names)
      if (listed.insert(name).second) entries.push_back(view.Resolve(name));
  };
  add(view.Options.Order);
  if (all) {
    add(view.Info.Order);
    add(view.Defaults.Order);
  }
  return VEK_SUCCESS;
}

}  // namespace vek
