// Arbitrary bytes as stored settings of every stored type: whatever is read must write back and
// read again as the same value.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <map>
#include <set>
#include <sstream>
#include <string>

#include "platform/sim/sim_basics.h"
#include "settings/app_item.h"
#include "settings/defaults_collection_bridges.h"
#include "settings/feature.h"
#include "settings/marzipel_data.h"

namespace {

using namespace marzipel;

template <typename T>
void readWriteRead(const PlistValue& stored) {
    std::optional<T> value = DefaultsBridge<T>::deserialize(stored);
    if (!value) return;
    SimConsole console;
    std::optional<PlistValue> written = DefaultsBridge<T>::serialize(*value, console);
    if (!written) std::abort();
    std::optional<T> again = DefaultsBridge<T>::deserialize(*written);
    if (!again || !(*again == *value)) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    const PlistValue whole(text);
    readWriteRead<Feature>(whole);
    readWriteRead<AppItem>(whole);
    readWriteRead<MarzipelData>(whole);

    // One stored string per line, as a set is stored.
    PlistArray lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.emplace_back(line);
    const PlistValue array(lines);
    readWriteRead<std::set<Feature>>(array);
    readWriteRead<std::set<AppItem>>(array);
    readWriteRead<std::map<std::string, std::set<Feature>>>(
        PlistValue(PlistDictionary{{"org.videolan.vlc", array}, {"io.mpv", whole}}));
    return 0;
}
