#include "platform/plist/plist_codec.h"

namespace marzipel {

std::optional<PlistValue> parsePropertyList(std::span<const std::uint8_t>) { return std::nullopt; }

std::string toXmlPropertyList(const PlistValue&) { return {}; }

std::optional<PlistValue> readPropertyListFile(const std::string&, std::size_t) {
    return std::nullopt;
}

}  // namespace marzipel
