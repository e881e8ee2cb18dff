#pragma once

#include <string>

#include "platform/common/in_memory_preferences.h"
#include "platform/system_log.h"

namespace marzipel {

/// The preferences domain kept in one XML property-list file whose top level is a dictionary.
/// The file is read once at construction and rewritten atomically after every change; registered
/// defaults stay in memory. Trouble with the file never reaches the caller: it is reported on
/// `log` and the values live on in memory.
class PlistFilePreferencesStore final : public InMemoryPreferences {
public:
    /// Loads `path`. A missing file is an empty domain. A file that is not a property-list
    /// dictionary is kept for inspection as `path`.corrupt-<UTC time> and the domain starts
    /// empty; should that move fail, the file is left alone and changes are never saved.
    /// `log` must outlive the store.
    PlistFilePreferencesStore(std::string path, SystemLog& log);

    /// The file this store reads and writes.
    const std::string& path() const { return path_; }

protected:
    /// Writes `values` over the file atomically; a failure is logged and the values stay in memory.
    void persist(const PlistDictionary& values) override;

private:
    /// The values read at start and whether the file may be written.
    struct Loaded;
    PlistFilePreferencesStore(std::string path, SystemLog& log, Loaded loaded);
    /// Reads the file, moving it aside when it cannot be used.
    static Loaded load(const std::string& path, SystemLog& log);

    std::string path_;
    SystemLog& log_;
    bool mayWrite_;
};

/// $XDG_CONFIG_HOME/marzipel/com.orsavelt.Marzipel.plist, with ~/.config when XDG_CONFIG_HOME is
/// unset, empty or relative.
std::string defaultPreferencesPath();

/// The preferences file of a user whose home folder is `home`.
std::string preferencesPathForHome(const std::string& home);

}  // namespace marzipel
