// Feeds arbitrary bytes to the preferences store as the file it finds at start: the parser, the
// move-aside of a file it cannot read, and the save after the first change. What was loaded must
// come back from the saved file as far as XML can hold it: both write the same XML.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/linux/plist_file_preferences_store.h"
#include "platform/plist/plist_codec.h"
#include "platform/sim/sim_basics.h"
#include "support/temp_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const marzipel::TempFolder folder;
    const std::string path = folder.file("com.orsavelt.Marzipel.plist");
    marzipel::writeFile(path, {reinterpret_cast<const char*>(data), size});

    marzipel::SimSystemLog log;
    {
        marzipel::PlistFilePreferencesStore store(path, log);
        store.registerDefaults({{"welcomeScreenShown", false}});
        marzipel::PlistDictionary expected = store.storedValues();
        store.setObject("fuzz", true);
        expected.insert_or_assign("fuzz", true);

        marzipel::PlistFilePreferencesStore reloaded(path, log);
        using marzipel::PlistValue;
        if (marzipel::toXmlPropertyList(PlistValue(expected)) !=
            marzipel::toXmlPropertyList(PlistValue(reloaded.storedValues()))) {
            std::abort();
        }
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
        std::filesystem::remove_all(entry.path());
    }
    return 0;
}
