// Saves the preferences file at the path it is given through the real store, over and over,
// until it is killed: each save holds one value "N:" padded to a fixed length, N one more than
// the value found at start. Says "ready" once it has read the file.
#include <cstdio>
#include <string>

#include "platform/linux/files/plist_file_preferences_store.h"
#include "platform/sim/sim_basics.h"

int main(int argc, char* argv[]) {
    using namespace marzipel;
    if (argc != 2) return 2;
    SimSystemLog log;
    log.onEntry = [](const std::string& entry) { std::fprintf(stderr, "%s\n", entry.c_str()); };
    PlistFilePreferencesStore store(argv[1], log);
    const auto found = store.object("saved");
    const std::string* text = found ? found->as<std::string>() : nullptr;
    long count = text ? std::stol(*text) : 0;
    std::printf("ready\n");
    std::fflush(stdout);
    for (;;) {
        std::string value = std::to_string(++count) + ":";
        value.resize(16 * 1024, 'x');
        store.setObject("saved", value);
    }
}
