#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "vekCommonExport.h"
#include "vekObject.h"

namespace vek {

// Texts outside the class: static data of an exported class would have to be imported from the
// library.
inline constexpr char kSystemsFileName[] = "systems.xml";
inline constexpr char kSystemsRootElement[] = "EnterpriseSystemConfiguration";
inline constexpr char kSystemElement[] = "System";
inline constexpr char kDefaultScreenType[] = "Flat";

/// The list of display systems installed on this machine, kept in "systems.xml" in the
/// configuration directory. Each system is a wall or dome with its own base folder (its Config/,
/// calibration data and warps); one of them is the active system, the one the suite works on.
///
/// The file is the store: every call reads it again, and every change reads, changes and
/// replaces it under the lock on "systems.xml.lock" (platform::FileLock), so that changes made at
/// the same time by other processes, or by other threads with managers of their own, are never
/// lost. The new file replaces the old one in one step: readers see the old list or the new one.
/// Text files get the platform's line end.
///
///     <?xml version="1.0" encoding="UTF-8"?>
///     <EnterpriseSystemConfiguration>
///         <System Id="lobby" Name="Lobby &amp; bar" BaseDirectory="D:\Walls\Lobby\" ScreenType="Flat"
///                 NumProjectors="4" NumCameras="1" LastCalibration="2024-05-01T10:20:30Z" Active="true"/>
///     </EnterpriseSystemConfiguration>
///
/// (one line per System element, attributes in this order; an empty list is the one element
/// <EnterpriseSystemConfiguration/>). Values are UTF-8 with the XML escapes of &, <, >, " and '.
/// LastCalibration is UTC with whole seconds, "" when the system was never calibrated; Active is
/// "true" or "false". Reading ignores elements and attributes it does not know (they are not
/// kept when the file is written again); a missing attribute reads as its default.
///
/// Rules: ids are unique (compared exactly) and not empty; no value holds a control character or
/// malformed UTF-8 (VEK_INVALID_PARAMETERS otherwise). When the list is not empty exactly one
/// system is active: the first one added is, removing the active one makes the first remaining
/// one active, and a file that marks none (or several) reads with its first (first marked) system
/// active.
///
/// A missing file is an empty list. A damaged file (XML that does not parse, another root
/// element, a System without an Id or with a repeated Id, a count, time or Active that does not
/// read) is VEK_FILE_NOT_FORMATTED_PROPERLY with a custom message naming the file, the line and
/// the fault. The file is then left as it is, and no change is written over it until the caller
/// has decided what to do with it: Clear starts a new list in its place.
class VEK_EXPORT KOREnterpriseSystemManager : public Object {
 public:
  /// The time of a system never calibrated.
  static constexpr std::int64_t kNeverCalibrated = -1;
  /// 9999-12-31T23:59:59Z, the last time the file's form can hold.
  static constexpr std::int64_t kLatestTime = 253402300799;

  /// One installed display system.
  struct System {
    std::string Id;
    std::string Name;
    std::string BaseDirectory;
    std::string ScreenType = kDefaultScreenType;
    int NumProjectors = 0;
    int NumCameras = 0;
    /// Seconds since 1970-01-01 00:00:00 UTC, or kNeverCalibrated.
    std::int64_t LastCalibration = kNeverCalibrated;
    bool Active = false;
  };

  static KOREnterpriseSystemManager* New();
  const char* GetClassName() const override { return "KOREnterpriseSystemManager"; }
  void PrintSelf(std::ostream& os, Indent indent) const override;

  /// The file; until set, "systems.xml" in the configuration directory at the time of each call.
  void SetFileName(const std::string& name) { FileName = name; }
  std::string GetFileName() const;

  /// Every system, in the file's order.
  int List(std::vector<System>& systems) const;
  /// The system with this id. VEK_INVALID_PARAMETERS (custom message) when there is none.
  int FindById(const std::string& id, System& system) const;
  /// The first system with exactly this name. VEK_INVALID_PARAMETERS when there is none.
  int FindByName(const std::string& name, System& system) const;

  /// Appends a system. It becomes the active one when it is the first or `system.Active` is set.
  /// A repeated id is VEK_INVALID_PARAMETERS and nothing is written.
  int Add(const System& system);
  /// Replaces every field of the system with the same id except Active (see SetActive).
  int Update(const System& system);
  /// Removes the system; VEK_INVALID_PARAMETERS when there is none with that id.
  int Remove(const std::string& id);
  /// Makes the system the only active one.
  int SetActive(const std::string& id);
  /// Writes an empty list, whatever the file held: the way on from a damaged file.
  int Clear();

  /// "2024-05-01T10:20:30Z" for a time in seconds since 1970 (0 to kLatestTime); "" for
  /// kNeverCalibrated and any other time outside that range.
  static std::string TimeText(std::int64_t seconds);
  /// The reverse of TimeText, which takes exactly that form; "" reads as kNeverCalibrated.
  /// False, with `seconds` untouched, for any other text or a date that does not exist.
  static bool ParseTime(const std::string& text, std::int64_t& seconds);

 protected:
  KOREnterpriseSystemManager() = default;
  ~KOREnterpriseSystemManager() override = default;

 private:
  KOREnterpriseSystemManager(const KOREnterpriseSystemManager&) = delete;
  KOREnterpriseSystemManager& operator=(const KOREnterpriseSystemManager&) = delete;

  int Read(const std::string& file, std::vector<System>& systems) const;
  /// Reads, lets `change` edit the list (it returns a status; non-zero writes nothing), writes,
  /// all under the file's lock.
  template <class Change>
  int Modify(Change change);

  std::string FileName;
};

}  // namespace vek
