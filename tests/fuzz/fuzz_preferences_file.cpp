// Arbitrary bytes as the preferences file found at start: what was loaded and then changed must
// come back from the saved file as far as XML can hold it.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/linux/files/plist_file_preferences_store.h"
#include "platform/plist/plist_codec.h"
#include "platform/sim/sim_basics.h"
#include "support/temp_folder.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace marzipel;
    static const TempFolder folder;
    const std::string path = folder.file("com.orsavelt.Marzipel.plist");
    writeFile(path, {reinterpret_cast<const char*>(data), size});

    SimSystemLog log;
    {
        PlistFilePreferencesStore store(path, log);
        store.registerDefaults({{"welcomeScreenShown", false}});
        PlistDictionary expected = store.storedValues();
        store.setObject("fuzz", true);
        expected.insert_or_assign("fuzz", true);
        const PlistFilePreferencesStore reloaded(path, log);
        if (toXmlPropertyList(PlistValue(expected)) !=
            toXmlPropertyList(PlistValue(reloaded.storedValues())))
            std::abort();
    }
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
        std::filesystem::remove_all(entry.path());
    return 0;
}
