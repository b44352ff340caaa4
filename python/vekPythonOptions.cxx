// vek.Options: the option store as a Python mapping. Values are typed by the store's info file;
// a value set from Python is checked against that type as `vek option set` checks a typed-in one.
#include <pybind11/stl.h>

#include <charconv>
#include <optional>
#include <string>
#include <vector>

#include "vekConfigurationDatabase.h"
#include "vekErrorCodes.h"
#include "vekOptionListing.h"
#include "vekOptionValue.h"
#include "vekOptionValueCheck.h"
#include "vekPython.h"

namespace vek::python {

namespace {

class PyOptions {
 public:
  PyOptions() : Store(ConfigurationDatabase::New()) { Check(Store.Get()->LoadOptionsDatabase()); }
  ConfigurationDatabase& Get() const { return *Store.Get(); }

 private:
  Held<ConfigurationDatabase> Store;
};

enum class Kind { Bool, Integer, Real, String, Other };

Kind KindOf(const py::handle& value) {
  // Imported at each call: a static Python object would be freed after the interpreter has gone.
  const py::object numbers = py::module_::import("numbers");
  const py::object numpyBool = py::module_::import("numpy").attr("bool_");
  if (py::isinstance<py::bool_>(value) || py::isinstance(value, numpyBool)) return Kind::Bool;
  if (py::isinstance(value, numbers.attr("Integral"))) return Kind::Integer;
  if (py::isinstance(value, numbers.attr("Real"))) return Kind::Real;
  if (py::isinstance<py::str>(value)) return Kind::String;
  return Kind::Other;
}

bool IsSequence(const py::handle& value) {
  return !py::isinstance<py::str>(value) && !py::isinstance<py::bytes>(value) &&
         (py::isinstance<py::list>(value) || py::isinstance<py::tuple>(value) ||
          py::isinstance(value, py::module_::import("numpy").attr("ndarray")));
}

template <class T>
std::string ShortestText(T value) {
  char text[64];
  return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

[[noreturn]] void Refuse(const std::string& key, const py::handle& value, const std::string& type) {
  Fail(VEK_INVALID_PARAMETERS, "option " + key + ": " + std::string(py::repr(value)) + " is no " + type);
}

// The store's text of one scalar of `type`; the store's own check follows.
std::string ScalarText(const std::string& key, const py::handle& value, const std::string& type) {
  const Kind kind = KindOf(value);
  if (type == "Int" && kind == Kind::Integer) return std::string(py::str(py::int_(py::reinterpret_borrow<py::object>(value))));
  if ((type == "Float" || type == "Double") && (kind == Kind::Integer || kind == Kind::Real)) {
    const double number = py::float_(py::reinterpret_borrow<py::object>(value));
    return type == "Float" ? ShortestText(static_cast<float>(number)) : ShortestText(number);
  }
  if (type == "Bool" && kind == Kind::Bool) return value.cast<bool>() ? "1" : "0";
  if (type == "String" && kind == Kind::String) return value.cast<std::string>();
  Refuse(key, value, type);
}

std::string ValueText(const std::string& key, const py::handle& value, const std::string& type) {
  const std::string suffix = "Array";
  if (type.size() <= suffix.size() || type.compare(type.size() - suffix.size(), suffix.size(), suffix) != 0)
    return ScalarText(key, value, type);
  if (!IsSequence(value)) Refuse(key, value, type + " (a list is needed)");
  const std::string elementType = type.substr(0, type.size() - suffix.size());
  std::string text;
  for (const py::handle element : py::iter(value)) {
    const std::string elementText = ScalarText(key, element, elementType);
    // The store separates elements by blanks; such an element would come back as several.
    if (elementType == "String" && (elementText.empty() || elementText.find_first_of(" \t\r\n") != std::string::npos))
      Fail(VEK_INVALID_PARAMETERS, "option " + key + ": the StringArray element " + std::string(py::repr(element)) +
                                       " is empty or holds a blank, which the store cannot keep apart");
    text += (text.empty() ? "" : " ") + elementText;
  }
  return text;
}

// The type a new option gets from the Python value given.
std::string InferredType(const std::string& key, const py::handle& value) {
  switch (KindOf(value)) {
    case Kind::Bool: return "Bool";
    case Kind::Integer: return "Int";
    case Kind::Real: return "Double";
    case Kind::String: return "String";
    case Kind::Other: break;
  }
  if (IsSequence(value) && py::len(value) > 0) {
    bool allBool = true, allInteger = true, allReal = true, allString = true;
    for (const py::handle element : py::iter(value)) {
      const Kind kind = KindOf(element);
      allBool &= kind == Kind::Bool;
      allInteger &= kind == Kind::Integer;
      allReal &= kind == Kind::Integer || kind == Kind::Real;
      allString &= kind == Kind::String;
    }
    if (allBool) return "BoolArray";
    if (allInteger) return "IntArray";
    if (allReal) return "FloatArray";
    if (allString) return "StringArray";
  }
  Fail(VEK_INVALID_PARAMETERS, "option " + key + ": no option type fits " + std::string(py::repr(value)) +
                                   " (bool, int, float, str, or a non-empty list of one of them)");
}

OptionListing::Entry Find(const PyOptions& options, const std::string& key) {
  OptionListing::Entry entry;
  Check(OptionListing::Find(options.Get(), key, entry));
  return entry;
}

OptionListing::Entry FindExisting(const PyOptions& options, const std::string& key) {
  OptionListing::Entry entry = Find(options, key);
  if (entry.From == OptionListing::Nowhere) throw py::key_error(key);
  return entry;
}

template <class T>
T Converted(const OptionListing::Entry& entry) {
  T value{};
  if (!OptionValue::FromText(entry.Value, value))
    Fail(VEK_BAD_PARSE, "option " + entry.Name + ": \"" + entry.Value + "\" is no " + entry.Type);
  return value;
}

// Floats come back as the shortest decimal that names the same float: 0.1 rather than the
// float's exact 0.100000001490116...
double FloatValue(float value) {
  const std::string text = ShortestText(value);
  double number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

py::object TypedValue(const OptionListing::Entry& entry) {
  const std::string& type = entry.Type;
  if (type == "Int") return py::int_(Converted<int>(entry));
  if (type == "Float") return py::float_(FloatValue(Converted<float>(entry)));
  if (type == "Double") return py::float_(Converted<double>(entry));
  if (type == "Bool") return py::bool_(Converted<bool>(entry));
  if (type == "IntArray") return py::cast(Converted<std::vector<int>>(entry));
  if (type == "BoolArray") return py::cast(Converted<std::vector<bool>>(entry));
  if (type == "StringArray") return py::cast(Converted<std::vector<std::string>>(entry));
  if (type == "FloatArray") {
    py::list values;
    for (float value : Converted<std::vector<float>>(entry)) values.append(FloatValue(value));
    return values;
  }
  return py::str(entry.Value);  // String, and options the info file does not describe
}

void Set(PyOptions& options, const std::string& key, const py::handle& value, const std::string& requestedType) {
  const OptionListing::Entry entry = Find(options, key);
  std::string type = requestedType;
  if (type.empty()) type = entry.Type != "Unknown" ? entry.Type : InferredType(key, value);
  if (!OptionValueCheck::IsTypeName(type))
    Fail(VEK_INVALID_PARAMETERS, "\"" + type + "\" is no option type (Int, Float, Double, Bool, String, "
                                               "IntArray, FloatArray, BoolArray, StringArray)");
  const std::string text = ValueText(key, value, type);
  Check(OptionValueCheck::Check(options.Get(), key, type, text));
  Check(options.Get().SetOptionAsString(key, type, text));
}

std::vector<std::string> Keys(const PyOptions& options) {
  std::vector<OptionListing::Entry> entries;
  Check(OptionListing::List(options.Get(), true, entries));
  std::vector<std::string> names;
  for (const auto& entry : entries) names.push_back(entry.Name);
  return names;
}

const char* SourceName(OptionListing::Source source) {
  switch (source) {
    case OptionListing::OptionsFile: return "options";
    case OptionListing::DefaultsFile: return "defaults";
    case OptionListing::InfoFile: return "info";
    case OptionListing::Nowhere: break;
  }
  return "";
}

}  // namespace

void AddOptionBindings(py::module_& m) {
  py::class_<PyOptions>(m, "Options", R"(The option store of the library's base folder, as a mapping from option names to typed values.

The store is three files in the base folder's Config/: KOROptions.txt (values set),
KOROptionDefaults.txt (factory values) and KOROptionInfo.txt (type, visibility, default). Every
access reads the files again and every change rewrites them, so other programs' changes are seen.

    opts = vek.Options()
    opts["Gain"]            # the value set, else the factory default; KeyError when no file names it
    opts["Gain"] = 0.75     # checked against the option's type first; vek.Error when it does not fit
    "Gain" in opts, opts.keys(), opts.items(), opts.type("Gain"), opts.source("Gain")

Types map to Python as Int -> int, Float and Double -> float, Bool -> bool, String -> str and
the ...Array types -> lists of those. A new option takes its type from the value (int -> Int,
float -> Double, bool -> Bool, str -> String, lists -> IntArray, FloatArray, BoolArray,
StringArray), or from set(key, value, type). The store keeps six significant digits of a float.)")
      .def(py::init([] {
             HeldObject::CheckRunning();
             return std::make_unique<PyOptions>();
           }),
           "Opens the store (creating an empty options file when there is none).")
      .def(
          "__getitem__", [](const PyOptions& options, const std::string& key) {
            return TypedValue(FindExisting(options, key));
          },
          py::arg("key"))
      .def(
          "__setitem__",
          [](PyOptions& options, const std::string& key, const py::object& value) { Set(options, key, value, ""); },
          py::arg("key"), py::arg("value"))
      .def(
          "__delitem__",
          [](PyOptions& options, const std::string& key) {
            FindExisting(options, key);
            Check(options.Get().DeleteOption(key));
          },
          py::arg("key"))
      .def(
          "__contains__",
          [](const PyOptions& options, const py::object& key) {
            return py::isinstance<py::str>(key) && Find(options, key.cast<std::string>()).From != OptionListing::Nowhere;
          },
          py::arg("key"))
      .def("__iter__", [](const PyOptions& options) { return py::iter(py::cast(Keys(options))); })
      .def("__len__", [](const PyOptions& options) { return Keys(options).size(); })
      .def("keys", &Keys,
           "Every option a file names: those set (in the options file's order), then those only described or "
           "given a factory default.")
      .def(
          "values",
          [](const PyOptions& options) {
            py::list values;
            for (const std::string& key : Keys(options)) values.append(TypedValue(FindExisting(options, key)));
            return values;
          },
          "The typed values, in the order of keys().")
      .def(
          "items",
          [](const PyOptions& options) {
            py::list items;
            for (const std::string& key : Keys(options))
              items.append(py::make_tuple(key, TypedValue(FindExisting(options, key))));
            return items;
          },
          "(name, typed value) pairs, in the order of keys().")
      .def(
          "get",
          [](const PyOptions& options, const std::string& key, const py::object& fallback) {
            const OptionListing::Entry entry = Find(options, key);
            return entry.From == OptionListing::Nowhere ? fallback : TypedValue(entry);
          },
          py::arg("key"), py::arg("default") = py::none(), "The typed value, or `default` when no file names the option.")
      .def(
          "set",
          [](PyOptions& options, const std::string& key, const py::object& value, const std::optional<std::string>& type) {
            Set(options, key, value, type.value_or(""));
          },
          py::arg("key"), py::arg("value"), py::arg("type") = py::none(),
          R"(Sets an option. Without `type` as options[key] = value does; with it ("Int", "Float", "Double",
"Bool", "String" or their "...Array"), the value is checked against that type, which must be
the option's described one when it has one.)")
      .def(
          "type", [](const PyOptions& options, const std::string& key) { return FindExisting(options, key).Type; },
          py::arg("key"), "The option's type name from the info file (\"Unknown\" when it describes none).")
      .def(
          "source",
          [](const PyOptions& options, const std::string& key) {
            return SourceName(FindExisting(options, key).From);
          },
          py::arg("key"),
          "Where the value comes from: \"options\" (set), \"defaults\" (the factory value) or \"info\" (the info "
          "file's default).")
      .def_property_readonly_static(
          "directory", [](const py::object&) { return ConfigurationDatabase::GetConfigurationDirectory(); },
          "The folder of the option files.")
      .def("__repr__", [](const PyOptions& options) {
        return "<vek.Options " + std::to_string(Keys(options).size()) + " options in " +
               ConfigurationDatabase::GetConfigurationDirectory() + ">";
      });
}

}  // namespace vek::python
