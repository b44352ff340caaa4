#pragma once
#include <sstream>
#include <string>
#include <vector>

#include "vekLanguageTables.h"
#include "vekObject.h"
#include "vekOptionFile.h"
#include "vekSmartPointer.h"

namespace vek {

class AlphaTweakingData;
class MeshTweakingData;
class RestorePointInfo;
class UniformAngleRemappingData;

/// How prominently an option is shown; compared with the option "AdvancedOptionsVisibilityThreshold".
enum OptionVisibility : int { OptionVisibilityHidden = 0, OptionVisibilityNewOption = 2 };

/// The option store of the calibration suite, and the public face of the language tables and of
/// the directory service. Each client makes its own instance; instances share only the files,
/// the configuration lock and the language tables.
///
/// The files are the store: every read scans the file again and every write rewrites it (see
/// OptionFile for the line rules, the crash-safe rewrite and the lock against other processes),
/// so an edit by hand or by another program is seen at the next call, and the last line for a
/// key wins. Options live in the configuration directory: KOROptions.txt (current values),
/// KOROptionDefaults.txt (factory values) and KOROptionInfo.txt (type, visibility, default,
/// range). Call LoadOptionsDatabase (or ImportDefaultOptions) first; before that every member
/// that needs a file answers VEK_FILE_NOT_FOUND. All members run under the configuration lock.
/// Files are written with the platform's line end (CR LF on Windows, LF elsewhere) and read with
/// either.
///
/// A missing info file (KOROptionInfo.txt) is no description at all. The lookups that only
/// describe answer VEK_FILE_NOT_FOUND then: GetOptionType, GetOptionVisibility, GetOptionRange,
/// GetOptionDefaultAsString, SetOptionVisibility, GetOptionList and GetOptionListWithValue. Reading
/// a value does not depend on a description: GetOptionDefault gives the fallback (0, false, "")
/// with VEK_SUCCESS, as for a key without an info line, so GetOption of a key in no file does too,
/// and GetOption takes the type of a value as "Unknown" (any type accepted). The item-list members
/// build on GetOption and SetOption, which registers the option in a new info file.
///
/// Keys are single words that do not start with "#"; a key or value that would change the
/// file's line structure (a line break, or a line longer than the 510 characters that fit the
/// read buffer with their line end) is refused with VEK_INVALID_PARAMETERS and nothing is written.
/// The typed members exist for int, float, double, bool and std::string (lists: int, float, bool,
/// std::string).
class VEK_EXPORT ConfigurationDatabase : public Object {
 public:
  static constexpr int kNoCalibrationGroup = -1;
  static constexpr int kDefaultVisibilityThreshold = 2;

  static ConfigurationDatabase* New();
  const char* GetClassName() const override { return "ConfigurationDatabase"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  virtual const int& GetCalibrationGroupId() const { return CalibrationGroupId; }
  void SetCalibrationGroupId(const int& id) { CalibrationGroupId = id; }

  /// The configuration directory of the directory service, ending in a separator.
  static std::string GetConfigurationDirectory();

  /// Sets the file paths and refills the initialisation settings: Initialization, then the
  /// defaults file, then the options file (current values win), then ServiceAdvancedOptions.
  /// Creates an empty options file when there is none.
  int LoadOptionsDatabase();
  /// Loads, adds to the defaults file every described default it lacks, and gives the
  /// installation a random "NetworkGroupId" when it is -1.
  int ImportDefaultOptions();
  const std::string& GetOptionsFileName() const { return OptionsFile; }
  const std::string& GetDefaultsFileName() const { return DefaultsFile; }
  const std::string& GetOptionInfoFileName() const { return InfoFile; }

  /// The value of the last line for `key`; the described default when there is none. Without an
  /// info file the value is read as of type "Unknown", and a key with no line gets the fallback.
  template <class T>
  int GetOption(const std::string& key, T& value);
  /// An option with no line reads as an empty list.
  template <class T>
  int GetOption(const std::string& key, std::vector<T>& values);
  /// Writes the options file, registers a new option in the info file, and reloads.
  template <class T>
  int SetOption(const std::string& key, const T& value) {
    return SetOption(key, value, OptionsFile);
  }
  /// The info line's default; the fallback (0, 0.0, false, "") with VEK_SUCCESS when the key has
  /// no line or no default, and also when there is no info file: an option nobody described reads
  /// as zero without error.
  template <class T>
  int GetOptionDefault(const std::string& key, T& value);
  /// The described range, or the whole range of the type when the key's line has none or there is
  /// no line. VEK_FILE_NOT_FOUND when there is no info file.
  template <class T>
  int GetOptionRange(const std::string& key, T& minimum, T& maximum);
  /// Appends `item` to the list (a missing or unreadable list counts as empty) and writes it back;
  /// the write's result. Without an info file the write creates it.
  template <class T>
  int AddItemToOption(const std::string& key, const T& item);
  /// Removes the last element equal to `item` and writes the list back, as AddItemToOption.
  template <class T>
  int RemoveItemFromOption(const std::string& key, const T& item);
  /// The index of the first element equal to `item`, or -1 (an index, not a status code: a list
  /// that cannot be read also gives -1). Without an info file the list still reads.
  template <class T>
  int GetOptionItemIndex(const std::string& key, const T& item);

  virtual int SetOptionAsString(const std::string& key, const std::string& type, const std::string& valueText) {
    return SetOptionAsString(key, type, valueText, OptionsFile);
  }
  virtual int GetOptionAsString(const std::string& key, std::string& valueText);
  /// The info line's default column as written; Bool and BoolArray defaults as "1"/"0" tokens.
  /// "" when the key has no line. VEK_FILE_NOT_FOUND when there is no info file.
  virtual int GetOptionDefaultAsString(const std::string& key, std::string& valueText);
  /// "Unknown" when the info file has no line for the key. VEK_FILE_NOT_FOUND, with "Unknown", when
  /// there is no info file.
  virtual int GetOptionType(const std::string& key, std::string& type);
  /// The info line's visibility; `visibility` untouched when the key has no line.
  /// VEK_FILE_NOT_FOUND when there is no info file.
  int GetOptionVisibility(const std::string& key, OptionVisibility& visibility);
  virtual int SetOptionVisibility(const std::string& key, const OptionVisibility& visibility) {
    return SetOptionVisibility(InfoFile, key, visibility);
  }
  static int SetOptionVisibility(const std::string& infoFile, const std::string& key,
                                 const OptionVisibility& visibility);
  int GetOptionList(std::vector<std::string>& names, bool visibleOnly);
  /// Names as GetOptionList gives them, each with its value text ("" when it has no line).
  int GetOptionListWithValue(std::vector<std::string>& names, std::vector<std::string>& values, bool visibleOnly);
  int DeleteOption(const std::string& key);

  // The file primitives (see OptionFile).
  static int GetFileLines(const std::string& file, std::vector<std::string>& lines) {
    return OptionFile::GetFileLines(file, lines);
  }
  static void Tokenize(const std::string& text, std::vector<std::string>& tokens,
                       const std::string& delimiters = OptionFile::kDelimiters) {
    OptionFile::Tokenize(text, tokens, delimiters);
  }
  static int GetLastMatchingLine(const std::string& file, const std::string& key, std::string& line) {
    return OptionFile::GetLastMatchingLine(file, key, line);
  }
  static int AddOrModifyOneLine(const std::string& file, const std::string& key, const std::string& newLine) {
    return OptionFile::AddOrModifyOneLine(file, key, newLine);
  }
  static int MergeOptionInfoFiles(const std::string& first, const std::string& second, const std::string& result) {
    return OptionFile::MergeOptionInfoFiles(first, second, result);
  }

  // Language tables (see LanguageTables for the rules).
  static void SetLanguage(const std::string& code) { LanguageTables::SetLanguage(code); }
  static std::string GetTwoLetterLanguageCode() { return LanguageTables::GetTwoLetterLanguageCode(); }
  static int GetPrimaryLanguageID() { return LanguageTables::GetPrimaryLanguageID(); }
  static int GetText(const std::string& key, std::wstring& text) { return LanguageTables::GetText(key, text); }
  static std::wstring GetText(const std::string& key) { return LanguageTables::GetText(key); }
  static int GetDefaultText(const std::string& key, std::wstring& text) {
    return LanguageTables::GetDefaultText(key, text);
  }
  static int LoadLanguagePack(LanguageTables::Table& table, const std::string& moduleName) {
    return LanguageTables::LoadLanguagePack(table, moduleName);
  }
  static int LoadDefaultLanguagePack(LanguageTables::Table& table) {
    return LanguageTables::LoadDefaultLanguagePack(table);
  }
  static int LoadLanguagePackFromFile(const std::string& path, LanguageTables::Table& table) {
    return LanguageTables::LoadLanguagePackFromFile(path, table);
  }
  static int OpenLanguagePackFromResource(int languageId, std::stringstream& stream, const std::string& moduleName) {
    return LanguageTables::OpenLanguagePackFromResource(languageId, stream, moduleName);
  }
  static int LoadLanguagePackFromStream(std::istream& stream, LanguageTables::Table& table,
                                        const std::wstring& suffix) {
    return LanguageTables::LoadLanguagePackFromStream(stream, table, suffix);
  }
  static void HandleMultilineDescription(std::wstring& text) { LanguageTables::HandleMultilineDescription(text); }
  template <class T>
  static std::wstring FormatLanguageString(std::wstring& text, int index, const wchar_t* format, const T& value) {
    return LanguageTables::FormatLanguageString(text, index, format, value);
  }
  /// Frees the process-wide language tables (at shutdown).
  static void CleanUp() { LanguageTables::CleanUp(); }

  // ---- Calibration records -------------------------------------------------------------------
  // Files of the configuration directory that later calibration steps and the playback side read
  // back. Each member holds the configuration lock throughout, and every write replaces its file
  // in one step (see RecordFile), so a record is never seen half written. Records are text with
  // the platform's line end. A record file that cannot be written (a directory in its place, a
  // folder that does not exist) gives VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING with the custom message
  // naming the file, except the boundary curves (below), and leaves the old file as it was.

  /// The three boundary curves of an extruded curved screen, each as an x list and a y list, in
  /// the file "ExtrudedCurveScreenBoundary": per curve the count (the x list's length) and then
  /// one "x y" line per point, floats with 6 significant digits. VEK_INVALID_PARAMETERS, and
  /// nothing written, when a y list is shorter than its x list; VEK_UNABLE_TO_OPEN_FILE_FOR_WRITING,
  /// plain, when the file cannot be written.
  int SaveExtrudedCurveScreenBoundaryData(const std::vector<float>& x1, const std::vector<float>& y1,
                                          const std::vector<float>& x2, const std::vector<float>& y2,
                                          const std::vector<float>& x3, const std::vector<float>& y3);
  /// No file is a screen without a saved boundary: VEK_SUCCESS, lists untouched. A damaged file
  /// gives VEK_UNABLE_TO_READ_NUM_FROM_FILE ("Negative numbers unexpected" for a negative count)
  /// and leaves the lists untouched; they are replaced only when all three curves were read.
  int LoadExtrudedCurveScreenBoundaryData(std::vector<float>& x1, std::vector<float>& y1, std::vector<float>& x2,
                                          std::vector<float>& y2, std::vector<float>& x3, std::vector<float>& y3);

  /// The control-point grid of the input space (file "ControlPointLocations"): w x h points, point
  /// k = (xs[k], ys[k]) in row-major order. VEK_INVALID_PARAMETERS, and nothing written, unless
  /// both lists hold exactly w * h values.
  int SaveInputSpaceBoundaryPoints(const std::vector<float>& xs, const std::vector<float>& ys, const int& w,
                                   const int& h);
  /// The lists are always emptied first. No file: VEK_SUCCESS with empty lists and w = h = 0 (no
  /// grid saved yet). A damaged file: the reader's error, with the same empty result.
  int LoadInputSpaceBoundaryPoints(std::vector<float>& xs, std::vector<float>& ys, int& w, int& h);
  /// As the input-space grid, for one camera (file "CameraSpaceControlPoints" + camera in decimal).
  /// A negative camera is VEK_INVALID_PARAMETERS.
  int SaveCameraSpaceBoundaryPoints(int camera, const std::vector<float>& xs, const std::vector<float>& ys,
                                    const int& w, const int& h);
  int LoadCameraSpaceBoundaryPoints(int camera, std::vector<float>& xs, std::vector<float>& ys, int& w, int& h);

  /// The tweaking records hand their file ("PerspectiveMeshTweakingData.txt",
  /// "OrthographicMeshTweakingData.txt", "AlphaTweakingData.txt") to the object's own writer or
  /// reader and return its result. A null object is VEK_INVALID_PARAMETERS; the smart-pointer
  /// loaders make a new object when they are handed none.
  int SavePerspectiveMeshTweakingData(const UniformAngleRemappingData* data);
  int LoadPerspectiveMeshTweakingData(UniformAngleRemappingData* data);
  int SaveOrthographicMeshTweakingData(const SmartPointer<MeshTweakingData>& data);
  int LoadOrthographicMeshTweakingData(SmartPointer<MeshTweakingData>& data);
  int SaveAlphaTweakingData(const SmartPointer<AlphaTweakingData>& data);
  int LoadAlphaTweakingData(SmartPointer<AlphaTweakingData>& data);

  /// The description of a restore point as XML, at a path the caller chooses (see RestorePointInfo).
  static int SaveRestorePointInfoFile(const std::string& path, const RestorePointInfo& info);
  static int LoadRestorePointInfoFile(const std::string& path, RestorePointInfo& info);

 protected:
  ConfigurationDatabase() = default;
  ~ConfigurationDatabase() override = default;

  template <class T>
  int SetOption(const std::string& key, const T& value, const std::string& file);
  virtual int SetOptionAsString(const std::string& key, const std::string& type, const std::string& valueText,
                                const std::string& file);
  /// The key's info line split into columns; "" columns when the key has no line.
  int GetOptionInfo(const std::string& key, std::string& type, std::string& defaultText, std::string& minimum,
                    std::string& maximum, int* visibility = nullptr);
  int WalkOptionList(std::vector<std::string>& names, std::vector<std::string>* values, bool visibleOnly);

 private:
  int CalibrationGroupId = kNoCalibrationGroup;
  std::string OptionsFile;
  std::string DefaultsFile;
  std::string InfoFile;
};

#define VEK_CONFIGURATION_SCALAR(T)                                                                \
  extern template VEK_EXPORT int ConfigurationDatabase::GetOption<T>(const std::string&, T&);      \
  extern template VEK_EXPORT int ConfigurationDatabase::SetOption<T>(const std::string&, const T&, \
                                                                     const std::string&);          \
  extern template VEK_EXPORT int ConfigurationDatabase::GetOptionDefault<T>(const std::string&, T&);
VEK_CONFIGURATION_SCALAR(int)
VEK_CONFIGURATION_SCALAR(float)
VEK_CONFIGURATION_SCALAR(double)
VEK_CONFIGURATION_SCALAR(bool)
VEK_CONFIGURATION_SCALAR(std::string)
#undef VEK_CONFIGURATION_SCALAR
#define VEK_CONFIGURATION_LIST(T)                                                                          \
  extern template VEK_EXPORT int ConfigurationDatabase::GetOption<T>(const std::string&, std::vector<T>&); \
  extern template VEK_EXPORT int ConfigurationDatabase::SetOption<std::vector<T>>(                         \
      const std::string&, const std::vector<T>&, const std::string&);
VEK_CONFIGURATION_LIST(int)
VEK_CONFIGURATION_LIST(float)
VEK_CONFIGURATION_LIST(bool)
VEK_CONFIGURATION_LIST(std::string)
#undef VEK_CONFIGURATION_LIST
#define VEK_CONFIGURATION_ITEMS(T)                                                                             \
  extern template VEK_EXPORT int ConfigurationDatabase::AddItemToOption<T>(const std::string&, const T&);      \
  extern template VEK_EXPORT int ConfigurationDatabase::RemoveItemFromOption<T>(const std::string&, const T&); \
  extern template VEK_EXPORT int ConfigurationDatabase::GetOptionItemIndex<T>(const std::string&, const T&);
VEK_CONFIGURATION_ITEMS(int)
VEK_CONFIGURATION_ITEMS(float)
VEK_CONFIGURATION_ITEMS(std::string)
#undef VEK_CONFIGURATION_ITEMS
extern template VEK_EXPORT int ConfigurationDatabase::GetOptionRange<int>(const std::string&, int&, int&);
extern template VEK_EXPORT int ConfigurationDatabase::GetOptionRange<float>(const std::string&, float&, float&);
extern template VEK_EXPORT int ConfigurationDatabase::GetOptionRange<double>(const std::string&, double&, double&);

}  // namespace vek
