#include "platform/linux/files/plist_file_preferences_store.h"

#include <time.h>

#include <array>
#include <filesystem>
#include <span>

#include "platform/linux/files/atomic_file.h"
#include "platform/linux/xdg/xdg_base_directories.h"
#include "platform/plist/plist_codec.h"
#include "platform/plist/plist_parse_limits.h"

namespace marzipel {

struct PlistFilePreferencesStore::Loaded {
    PlistDictionary values;
    bool mayWrite = true;
};

namespace {

constexpr std::string_view preferencesFileName = "com.orsavelt.Marzipel.plist";

/// Now in UTC, e.g. 20261122T034500Z.
std::string utcStamp() {
    time_t seconds = time(nullptr);
    tm utc{};
    gmtime_r(&seconds, &utc);
    std::array<char, 32> text{};
    std::size_t length = strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &utc);
    return std::string(text.data(), length);
}

}  // namespace

PlistFilePreferencesStore::PlistFilePreferencesStore(std::string path, SystemLog& log,
                                                     Scheduler scheduler)
    : PlistFilePreferencesStore(path, log, std::move(scheduler), load(path, log)) {}

PlistFilePreferencesStore::~PlistFilePreferencesStore() { flush(); }

PlistFilePreferencesStore::Loaded PlistFilePreferencesStore::load(const std::string& path,
                                                                  SystemLog& log) {
    Loaded loaded;
    // What a run killed while saving left; the file itself holds the old or the new values.
    removeLeftoverTemporaries(path);
    std::error_code error;
    if (std::filesystem::status(path, error).type() == std::filesystem::file_type::not_found) {
        return loaded;
    }
    if (auto file = readPropertyListFile(path)) {
        if (auto* dictionary = file->as<PlistDictionary>()) {
            loaded.values = *dictionary;
            return loaded;
        }
    }
    // Saving over the file would destroy the evidence of what went wrong.
    const std::string destination = path + ".corrupt-" + utcStamp();
    const Result<std::string> aside = moveAsideWithoutReplacing(path, destination);
    if (aside.ok()) {
        log.error(kAppLogSubsystem, kAppLogCategory,
                  "Preferences file " + path + " is not a property-list dictionary; moved it to " +
                      aside.value() + " and started with empty preferences");
    } else {
        loaded.mayWrite = false;
        log.error(kAppLogSubsystem, kAppLogCategory,
                  "Preferences file " + path +
                      " is not a property-list dictionary and could not be moved to " +
                      destination + ": " + aside.status().message() +
                      "; started with empty preferences that will not be saved");
    }
    return loaded;
}

PlistFilePreferencesStore::PlistFilePreferencesStore(std::string path, SystemLog& log,
                                                     Scheduler scheduler, Loaded loaded)
    : InMemoryPreferences(std::move(loaded.values)),
      path_(std::move(path)),
      log_(log),
      scheduler_(std::move(scheduler)),
      mayWrite_(loaded.mayWrite) {}

void PlistFilePreferencesStore::persist(const PlistDictionary& values) {
    if (!mayWrite_) return;
    if (!scheduler_) {
        write(values);
        return;
    }
    if (writePending_) return;
    writePending_ = true;
    scheduler_([weakSelf = std::weak_ptr(self_)] {
        if (const auto self = weakSelf.lock()) (*self)->flush();
    });
}

void PlistFilePreferencesStore::flush() {
    if (!writePending_) return;
    writePending_ = false;
    write(storedValues());
}

void PlistFilePreferencesStore::write(const PlistDictionary& values) {
    const std::string xml = toXmlPropertyList(PlistValue(values));
    const std::span bytes(reinterpret_cast<const std::uint8_t*>(xml.data()), xml.size());
    if (xml.size() > kMaxPropertyListBytes || !isWithinParseLimits(bytes)) {
        // Saving it would make the next start set the whole file aside as unreadable.
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not save preferences to " + path_ +
                       ": they are too large or too deeply nested to be read back");
        return;
    }
    const Status saved = replaceFileAtomically(path_, xml);
    if (!saved.ok()) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not save preferences to " + path_ + ": " + saved.message());
    }
}

std::string defaultPreferencesPath() {
    const std::string configHome = configHomeDirectory(homeDirectory()).value_or(".config");
    return configHome + "/marzipel/" + std::string(preferencesFileName);
}

std::string preferencesPathForHome(const std::string& home) {
    return home + "/.config/marzipel/" + std::string(preferencesFileName);
}

}  // namespace marzipel
