#pragma once

namespace vek::platform {

/// The registry. Windows: the real registry (wide functions; names and texts here are UTF-8).
/// POSIX: a store on disk with the same rules. Each root is a folder: $VEK_REGISTRY_DIR/LocalMachine
/// and $VEK_REGISTRY_DIR/CurrentUser when that variable is set, otherwise
/// /var/lib/VeltraDisplay/Registry (system-wide, so writing it takes the rights that HKLM takes) and
/// $VEK_BASE_DIR/Registry/CurrentUser when that is set, else $XDG_CONFIG_HOME/VeltraDisplay/Registry
/// (else $HOME/.config/..., else /tmp/VeltraDisplay/Registry).
/// A key "A\B" is the folder A/B; a value is the file <name>.value holding "REG_SZ\n" + text or
/// "REG_DWORD\n" + decimal. Key and value names are compared without regard to ASCII case, as
/// Windows does, so they are stored lower-cased and percent-encoded. A value file is written to a
/// temporary file, forced to disk and renamed over the old one under the key's lock file, so a
/// crash leaves the old value or the new one.
enum class RegistryRoot { LocalMachine, CurrentUser };

}  // namespace vek::platform
