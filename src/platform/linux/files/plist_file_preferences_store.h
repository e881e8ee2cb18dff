#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/common/in_memory_preferences.h"
#include "platform/system_log.h"

namespace marzipel {

/// The preferences domain kept in one XML property-list file whose top level is a dictionary.
/// The file is read once at construction and rewritten atomically after changes; registered
/// defaults stay in memory. Trouble with the file never reaches the caller: it is reported on
/// `log` and the values live on in memory.
class PlistFilePreferencesStore final : public InMemoryPreferences {
public:
    /// Runs a task soon, on the thread that changes the preferences.
    using Scheduler = std::function<void(std::function<void()> task)>;

    /// Loads `path`. A missing file is an empty domain. A file that is not a property-list
    /// dictionary is kept for inspection as `path`.corrupt-<UTC time> and the domain starts
    /// empty; should that move fail, the file is left alone and changes are never saved.
    /// `log` must outlive the store.
    /// With a `scheduler`, a change is written by a scheduled task, once for a burst of changes,
    /// instead of within the change: a flushed write can take milliseconds that a full-screen
    /// switch should not wait for. Whatever is still unwritten is written on destruction.
    PlistFilePreferencesStore(std::string path, SystemLog& log, Scheduler scheduler = {});
    ~PlistFilePreferencesStore() override;

protected:
    /// Writes `values` over the file atomically; a failure is logged and the values stay in memory.
    void persist(const PlistDictionary& values) override;

private:
    /// The values read at start and whether the file may be written.
    struct Loaded;
    PlistFilePreferencesStore(std::string path, SystemLog& log, Scheduler scheduler, Loaded loaded);
    /// Reads the file, moving it aside when it cannot be used.
    static Loaded load(const std::string& path, SystemLog& log);

    /// Writes now when a change is waiting for its scheduled write.
    void flush();
    void write(const PlistDictionary& values);

    std::string path_;
    SystemLog& log_;
    Scheduler scheduler_;
    bool mayWrite_;
    bool writePending_ = false;
    /// Lets a scheduled write that runs after the store is gone do nothing.
    std::shared_ptr<PlistFilePreferencesStore*> self_ =
        std::make_shared<PlistFilePreferencesStore*>(this);
};

/// $XDG_CONFIG_HOME/marzipel/com.orsavelt.Marzipel.plist, with ~/.config when XDG_CONFIG_HOME is
/// unset, empty or relative.
std::string defaultPreferencesPath();

/// The preferences file of a user whose home folder is `home`.
std::string preferencesPathForHome(const std::string& home);

}  // namespace marzipel
