// Feeds arbitrary bytes to the preferences store as the file it finds at start: the parser, the
// move-aside of a file it cannot read, and the save after the first change. What was loaded must
// come back from the saved file, apart from what XML cannot hold.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz_work_folder.h"
#include "platform/linux/plist_file_preferences_store.h"

namespace {

using marzipel::PlistValue;

class DiscardingLog final : public marzipel::SystemLog {
public:
    void error(std::string_view, std::string_view, std::string_view) override {}
};

bool holdsNul(const PlistValue& value) {
    if (auto* text = value.as<std::string>()) return text->find('\0') != std::string::npos;
    if (auto* array = value.as<marzipel::PlistArray>()) {
        for (const auto& item : *array) {
            if (holdsNul(item)) return true;
        }
    }
    if (auto* dictionary = value.as<marzipel::PlistDictionary>()) {
        for (const auto& [key, item] : *dictionary) {
            if (key.find('\0') != std::string::npos || holdsNul(item)) return true;
        }
    }
    return false;
}

/// Equal as far as an XML property list can say: whole seconds of dates, NaN equal to NaN.
bool sameAfterXml(const PlistValue& loaded, const PlistValue& saved) {
    if (auto* date = loaded.as<marzipel::PlistDate>()) {
        auto* other = saved.as<marzipel::PlistDate>();
        return other &&
               std::trunc(date->secondsSinceReferenceDate) == other->secondsSinceReferenceDate;
    }
    if (auto* real = loaded.as<double>()) {
        auto* other = saved.as<double>();
        return other && (*real == *other || (std::isnan(*real) && std::isnan(*other)));
    }
    if (auto* array = loaded.as<marzipel::PlistArray>()) {
        auto* other = saved.as<marzipel::PlistArray>();
        if (!other || other->size() != array->size()) return false;
        for (std::size_t i = 0; i < array->size(); ++i) {
            if (!sameAfterXml((*array)[i], (*other)[i])) return false;
        }
        return true;
    }
    if (auto* dictionary = loaded.as<marzipel::PlistDictionary>()) {
        auto* other = saved.as<marzipel::PlistDictionary>();
        if (!other || other->size() != dictionary->size()) return false;
        for (const auto& [key, item] : *dictionary) {
            auto found = other->find(key);
            if (found == other->end() || !sameAfterXml(item, found->second)) return false;
        }
        return true;
    }
    return loaded == saved;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::filesystem::path& folder = fuzzWorkFolder();
    const std::string path = (folder / "com.orsavelt.Marzipel.plist").string();
    std::ofstream(path, std::ios::binary | std::ios::trunc)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));

    DiscardingLog log;
    {
        marzipel::PlistFilePreferencesStore store(path, log);
        store.registerDefaults({{"welcomeScreenShown", false}});
        const marzipel::PlistDictionary loaded = store.storedValues();
        store.setObject("fuzz", true);
        marzipel::PlistDictionary expected = loaded;
        expected.insert_or_assign("fuzz", true);

        marzipel::PlistFilePreferencesStore reloaded(path, log);
        if (!holdsNul(PlistValue(expected)) &&
            !sameAfterXml(PlistValue(expected), PlistValue(reloaded.storedValues()))) {
            std::abort();
        }
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::filesystem::remove_all(entry.path());
    }
    return 0;
}
