// vek option get|set|list: the option store of the library's base folder.
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "vekConfigurationDatabase.h"
#include "vekOptionListing.h"
#include "vekOptionValueCheck.h"
#include "vekSmartPointer.h"
#include "vekTool.h"

namespace vek::tool {

namespace {

struct OptionArguments {
  std::string Key, Type, Value;
  bool All = false;
};

int WithStore(const std::function<int(ConfigurationDatabase&)>& work) {
  auto store = SmartPointer<ConfigurationDatabase>::New();
  int status = store->LoadOptionsDatabase();
  return status == 0 ? work(*store) : Report(status);
}

int Get(ConfigurationDatabase& store, const std::string& key) {
  OptionListing::Entry entry;
  int status = OptionListing::Find(store, key, entry);
  if (status != 0) return Report(status);
  if (entry.From == OptionListing::Nowhere) return Fail("no option file sets or describes " + key);
  std::cout << entry.Value << "\n";
  return kSuccess;
}

int Set(ConfigurationDatabase& store, const OptionArguments& a) {
  int status = OptionValueCheck::Check(store, a.Key, a.Type, a.Value);
  if (status == 0) status = store.SetOptionAsString(a.Key, a.Type, a.Value);
  return Report(status);
}

int List(ConfigurationDatabase& store, bool all) {
  std::vector<OptionListing::Entry> entries;
  int status = OptionListing::List(store, all, entries);
  if (status != 0) return Report(status);
  std::string text;
  for (const auto& e : entries) {
    text += e.Name + "\t" + e.Type + "\t" + e.Value;
    if (all) text += e.From == OptionListing::OptionsFile ? "\tset" : "\tdefault";
    text += "\n";
  }
  std::cout << text;
  return kSuccess;
}

}  // namespace

void AddOptionCommands(Commands& commands) {
  auto a = std::make_shared<OptionArguments>();
  CLI::App* option = commands.AddGroup(commands.GetRoot(), "option", "Read and write the option store.");
  option->footer(
      "Options live in Config/ of the base folder: KOROptions.txt (values set), KOROptionDefaults.txt\n"
      "(factory values) and KOROptionInfo.txt (type, visibility, default).");

  CLI::App* get = commands.Add(*option, "get", "Print an option's value text.", [a] {
    return WithStore([a](ConfigurationDatabase& store) { return Get(store, a->Key); });
  });
  get->add_option("KEY", a->Key, "The option's name.")->required();
  get->footer(
      "The value is the options file's, else the factory default (defaults file, then the info file).\n"
      "An option that no file sets or describes is an error (exit status 1).");

  CLI::App* set = commands.Add(*option, "set", "Set an option, checking the value against the type first.", [a] {
    return WithStore([a](ConfigurationDatabase& store) { return Set(store, *a); });
  });
  set->add_option("KEY", a->Key, "The option's name: one word.")->required();
  set->add_option("TYPE", a->Type, "Int, Float, Double, Bool, String, IntArray, FloatArray, BoolArray or StringArray.")
      ->required();
  set->add_option("VALUE", a->Value, "The value text.")->required();
  set->footer(
      "Int: decimal digits with an optional sign. Float, Double: a finite decimal number (\"0.75\",\n"
      "\"-1e-05\"); the store keeps six significant digits. Bool: true, false, 1 or 0.\n"
      "Arrays: the elements separated by blanks, as one argument (quote it); only a StringArray may be\n"
      "empty, and its elements cannot hold blanks:\n"
      "  vek option set Weights FloatArray \"0.5 1 2\"\n"
      "A value that does not fit the type, or a type other than the one the info file describes for\n"
      "the option, is refused (exit status 1) and nothing is written. A value starting with \"-\" and\n"
      "no digit can follow \"--\".");

  CLI::App* list = commands.Add(*option, "list", "List the options the options file sets.", [a] {
    return WithStore([a](ConfigurationDatabase& store) { return List(store, a->All); });
  });
  list->add_flag("--all", a->All, "Also list the options only described (info file) or given a factory default.");
  list->footer(
      "One line per option, tab-separated: name, type (Unknown when the info file has none), value.\n"
      "With --all a fourth column says \"set\" (the options file's value) or \"default\".");
}

}  // namespace vek::tool
