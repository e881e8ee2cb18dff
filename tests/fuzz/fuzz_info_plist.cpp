// Arbitrary bytes as a bundle's Info.plist: parsed, then turned into an AppItem.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

#include "detection/bundle_reader.h"
#include "platform/plist/plist_codec.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::optional<marzipel::PlistValue> info = marzipel::parsePropertyList({data, size});
    if (!info) return 0;
    const std::string bundle = "/Applications/Fuzz.app";
    std::optional<marzipel::AppItem> item = marzipel::appItemFromInfoPlist(bundle, *info);
    if (item && item->iconPath) {
        const std::string& icon = *item->iconPath;
        if (!icon.starts_with(bundle + "/Contents/Resources/") || !icon.ends_with(".icns"))
            std::abort();
    }
    return 0;
}
