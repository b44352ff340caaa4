#pragma once
#include <cstddef>
#include <string>

#include "vekCommonExport.h"
#include "vekRegistryRoot.h"

// The one place that knows which operating system runs the library. Everything else calls these
// plain functions; each has a Windows body and a POSIX body.
namespace vek::platform {

/// The native path separator ('\\' on Windows, '/' elsewhere).
VEK_EXPORT char PathSeparator();

/// The folder of the loaded library module itself, ending in a separator.
VEK_EXPORT std::string ModuleDirectory();

/// The base folder used when no base directory is given and VEK_BASE_DIR is not set, ending in a
/// separator. Windows: "C:\VeltraDisplay\". POSIX: $XDG_DATA_HOME/VeltraDisplay/, else
/// $HOME/.local/share/VeltraDisplay/, else /tmp/VeltraDisplay/.
VEK_EXPORT std::string DefaultBaseDirectory();

/// The value of an environment variable, or "" when it is not set.
VEK_EXPORT std::string EnvironmentVariable(const char* name);

/// The Windows primary language identifier of the user's language (9 English, 7 German, 12 French,
/// 17 Japanese, ...). Windows: the thread locale masked with 0x3FF. POSIX: the first of LC_ALL,
/// LC_MESSAGES and LANG that is set and not empty, read by its two-letter code; 9 when none is set,
/// for "C" and "POSIX", and for languages without a Windows identifier in the table.
VEK_EXPORT int PrimaryLanguageId();

/// Copies the bytes of resource (type, id) of the loaded module `moduleName` into `bytes`.
/// Returns false when the module is not loaded or has no such resource. On Windows these are real
/// module resources; elsewhere they are what the module registered with RegisterModuleResource.
VEK_EXPORT bool ModuleResource(const std::string& moduleName, const std::string& type, int id, std::string& bytes);

/// Records a resource of a module in the process-wide resource table (POSIX). The bytes are not
/// copied: they must live as long as the module (static data of the module). A no-op on Windows,
/// where the loader owns the resources.
VEK_EXPORT void RegisterModuleResource(const std::string& moduleName, const std::string& type, int id,
                                       const unsigned char* data, std::size_t size);

/// The ending of a loadable module's file name: ".dll" on Windows, ".so" elsewhere.
VEK_EXPORT const char* ModuleFileSuffix();

/// Loads the module file at `path` and keeps it loaded for the rest of the process: what it
/// registered (POSIX: its resources, registered by its static initialisers) must stay valid, and
/// ModuleResource finds it by its file name (Windows). True when it is loaded, now or before.
VEK_EXPORT bool LoadModule(const std::string& path);

/// Asks the system to back a large, not yet touched block with large memory pages where it can,
/// which spares random look-ups most address-translation misses. Only a hint: no-op where the
/// system offers nothing of the kind.
VEK_EXPORT void AdviseLargePages(const void* data, std::size_t bytes);

/// Writes `bytes` to `path` (created or truncated) and forces them to the disk before returning,
/// so that a crash afterwards cannot leave the file short. Returns false on any failure.
VEK_EXPORT bool WriteFileDurably(const std::string& path, const std::string& bytes);

/// Replaces `target` by `source` in one step (POSIX rename; Windows MoveFileEx with replace and
/// write-through): other readers see the old file or the new one, never a missing or partial one.
VEK_EXPORT bool ReplaceFileAtomically(const std::string& source, const std::string& target);

/// True when `path` names something that exists but does not open for writing: a directory, a
/// read-only file, a file another process keeps from writers. A missing file gives false. Nothing
/// is created, truncated or changed.
VEK_EXPORT bool FileRefusesWriting(const std::string& path);

/// How ReplaceFileContents ended.
enum class FileReplacement { Done, NotWritten, NotReplaced };

/// Puts `bytes` in place of `path` so that the file is never seen short or missing: writes them
/// to `<path>.tmp` with WriteFileDurably, then ReplaceFileAtomically. NotWritten when `path`
/// refuses writing (FileRefusesWriting: a rename would otherwise replace a read-only file on
/// POSIX, or fail late over a directory) or the temporary cannot be written, say in a folder that
/// does not exist; NotReplaced when the rename fails. On failure the temporary is removed and
/// `path` is as it was. Writers of one file must not overlap, since they share the temporary; the
/// option and record files take a FileLock for that. Not OS-specific: built on the calls above.
VEK_EXPORT FileReplacement ReplaceFileContents(const std::string& path, const std::string& bytes);

/// The line end of text files on this system: "\r\n" on Windows, "\n" elsewhere.
VEK_EXPORT const char* LineEnd();

/// `text` with every line end, "\n" or "\r\n", made LineEnd(), so that text built with "\n"
/// gets the bytes a text file has on this system. A lone "\r" stays; a second pass changes nothing.
VEK_EXPORT std::string WithPlatformLineEnds(const std::string& text);

/// An exclusive lock on a lock file, honoured by every process that takes the same lock (POSIX
/// flock, Windows LockFileEx). The constructor waits until the lock is granted; the destructor
/// releases it. IsLocked() is false when the lock file could not be opened.
class VEK_EXPORT FileLock {
 public:
  explicit FileLock(const std::string& lockFile);
  ~FileLock();
  bool IsLocked() const { return Locked; }

 private:
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;

  void* Handle = nullptr;  // the open lock file (a descriptor on POSIX, a HANDLE on Windows)
  bool Locked = false;
};

// The text window of the output channels. Windows: a top-level window holding a read-only,
// multi-line, scrolling edit control. POSIX: an in-memory buffer with the same text limit.
inline constexpr std::size_t kTextWindowLimit = 5242880;
VEK_EXPORT bool TextWindowExists();
/// Creates the window if it does not exist; always returns true, as the channel never fails.
VEK_EXPORT bool TextWindowCreate();
/// Appends text at the end (as far as the text limit allows).
VEK_EXPORT void TextWindowAppend(const std::string& text);
/// The window's current text ("" when there is no window).
VEK_EXPORT std::string TextWindowText();
VEK_EXPORT void TextWindowDestroy();

/// Sets (or, with an empty value, removes) an environment variable of this process so that
/// EnvironmentVariable and the C runtime's getenv see it.
VEK_EXPORT void SetEnvironmentValue(const char* name, const std::string& value);

// The registry: the roots and where the store lives on POSIX are described in vekRegistryRoot.h.
VEK_EXPORT bool RegistryKeyExists(RegistryRoot root, const std::string& subkey);
/// Creates the key and any missing parent (an existing key is success).
VEK_EXPORT bool RegistryCreateKey(RegistryRoot root, const std::string& subkey);
/// Deletes the key with its subkeys and values; a missing key is success.
VEK_EXPORT bool RegistryDeleteKey(RegistryRoot root, const std::string& subkey);
/// Reads a string value. False, with `text` untouched, when the key or value is missing or the
/// value is not a string.
VEK_EXPORT bool RegistryReadString(RegistryRoot root, const std::string& subkey, const std::string& name,
                                   std::string& text);
/// Reads a DWORD value. False, with `value` untouched, when it is missing or not a 4-byte DWORD.
VEK_EXPORT bool RegistryReadDword(RegistryRoot root, const std::string& subkey, const std::string& name,
                                  unsigned long& value);
/// Writes a value into an existing key (never creates the key). False on any failure.
VEK_EXPORT bool RegistryWriteString(RegistryRoot root, const std::string& subkey, const std::string& name,
                                    const std::string& text);
VEK_EXPORT bool RegistryWriteDword(RegistryRoot root, const std::string& subkey, const std::string& name,
                                   unsigned long value);

/// The command line that runs the program at `path` through the command interpreter of
/// std::system, quoted so that blanks and interpreter metacharacters in the path stay part of the
/// name. Windows: call "path". POSIX: the path in single quotes for /bin/sh.
VEK_EXPORT std::string ShellCommandForProgram(const std::string& path);

/// Whether standard error goes to a terminal (a console on Windows), where a person watches
/// progress; false for a file or a pipe.
VEK_EXPORT bool IsStandardErrorTerminal();

}  // namespace vek::platform
