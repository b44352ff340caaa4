#pragma once
#include <ostream>
#include <string>
#include <vector>

#include "vekDataFileEntry.h"
#include "vekIOBase.h"

namespace vek {

/// A list of named, typed variables kept as one text file, one variable per line:
///
///   #DataFile
///   <empty line>
///   FileVersion###1
///   DoubleArray###offsets###3@@@0.5@@@1@@@2.25###
///
/// Each entry line is type text, "###", name, "###", data, "###". Fields split at the first "###",
/// except that the data field also takes the leading '#'s of a longer run ("a####" is "a#"), so a
/// value may begin or end with '#'. A value holding "###" or a line end does not round-trip, nor
/// does a name ending in '#' or a string element holding "@@@" or beginning or ending with '@'.
/// Reading: the trailing "###" may be missing, and anything after the third field is ignored. Read
/// appends the file's entries to those held (PruneDuplicates removes repeated names); a line that fails is logged as
/// "Cannot parse: <line>" and ends the read with the entries before it kept. The end of the file ends the read, so an
/// unterminated last line is dropped. Derived data files restrict or extend their variables through the virtual hooks.
///
/// A version line whose number does not parse as a whole ("FileVersion###one") fails the read with
/// VEK_BAD_PARSE and "Cannot read file version from '<text>'": a file whose version is unknown is
/// not guessed at.
///
/// Write builds the whole text and puts it in place of the file in one step, with the platform's
/// line end (IOBase::ReplaceTextFile: CR LF on Windows, LF elsewhere); Read takes either.
/// An entry that cannot be written ("Unknown Data Type") therefore fails the write with the file
/// left as it was, rather than cut short at that entry. Only a write that reached the file clears
/// the edited flag.
class VEK_EXPORT DataFile : public IOBase {
 public:
  static DataFile* New();
  const char* GetClassName() const override { return "DataFile"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  virtual int Write();
  virtual int Read();
  /// 0 when entry may become the n-th variable (n = count appends); the base class allows all.
  virtual int WouldSettingNthVariableBeOK(const int& n, const DataFileEntry& entry);
  /// A new entry owned by the caller; derived classes hand out their own entry type.
  virtual DataFileEntry* CreateNewVariable() const;
  virtual int WriteDataFileEntry(std::ostream& os, const DataFileEntry& entry);
  virtual int ReadDataFileEntry(std::string& line, DataFileEntry& entry) const;
  virtual int CopyDataFileEntry(DataFileEntry& to, const DataFileEntry& from);
  /// Leaves one entry per name (exact, case-sensitive match, whatever the types): the last one
  /// when keepLast (a later line overrides an earlier one), else the first. Survivors keep their
  /// order. Returns the number of entries removed; removing any marks the file edited.
  virtual int PruneDuplicates(bool keepLast);

  int GetNumVariables() const { return static_cast<int>(Entries.size()); }
  /// Null for an index out of range.
  const DataFileEntry* GetNthVariable(const int& n) const;
  /// VEK_INDEX_OUT_OF_RANGE for an index out of range.
  int SetNthVariable(const int& n, const DataFileEntry& entry);
  int AddVariable(const DataFileEntry& entry);
  bool GetIsEdited() const { return Edited; }

  const std::string& GetFieldSeparator() const { return FieldSeparator; }
  const std::string& GetArraySeparator() const { return ArraySeparator; }
  float GetFileVersion() const { return FileVersion; }

 protected:
  DataFile();
  ~DataFile() override;

  /// Position of the first field separator in `text`, or text.size() when there is none.
  size_t FindEndofFirstToken(const std::string& text) const;
  /// Moves the first token of `remainder` into `token` and drops it and its separator from
  /// `remainder` (the whole remainder when it holds no separator). VEK_BAD_PARSE when empty.
  int GetNextTokenAndIncrement(std::string& remainder, std::string& token) const;
  void SetFieldSeparator(const std::string& separator) { FieldSeparator = separator; }
  void SetArraySeparator(const std::string& separator) { ArraySeparator = separator; }

 private:
  DataFile(const DataFile&) = delete;
  DataFile& operator=(const DataFile&) = delete;

  int ReadFileVersion(const std::string& line);
  void WriteFileVersion(std::ostream& os) const;
  void ClearEntries();

  std::vector<DataFileEntry*> Entries;  // owned
  std::string FieldSeparator = "###";
  std::string ArraySeparator = "@@@";
  std::string Header = "#DataFile\n";
  float FileVersion = 1.0f;
  bool Edited = false;
};

}  // namespace vek
