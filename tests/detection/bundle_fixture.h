#pragma once

#include <plist/plist.h>

#include <atomic>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <variant>

#include "base/plist_value.h"
#include "support/temp_folder.h"

namespace marzipel::testing {

enum class PlistFormat { xml, binary };

inline plist_t toLibplist(const PlistValue& value) {
    return std::visit(
        [](const auto& v) -> plist_t {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, std::int64_t>) {
                return plist_new_uint(static_cast<std::uint64_t>(v));
            } else if constexpr (std::is_same_v<T, std::string>) {
                return plist_new_string(v.c_str());
            } else if constexpr (std::is_same_v<T, PlistArray>) {
                plist_t array = plist_new_array();
                for (const PlistValue& element : v)
                    plist_array_append_item(array, toLibplist(element));
                return array;
            } else if constexpr (std::is_same_v<T, PlistDictionary>) {
                plist_t dict = plist_new_dict();
                for (const auto& [key, element] : v) {
                    plist_dict_set_item(dict, key.c_str(), toLibplist(element));
                }
                return dict;
            } else {
                return plist_new_bool(false);  // other kinds are not needed here
            }
        },
        value.storage());
}

/// Writes `value` as a property-list file, encoded by libplist itself.
inline void writePlist(const std::string& path, const PlistValue& value, PlistFormat format) {
    plist_t root = toLibplist(value);
    char* bytes = nullptr;
    std::uint32_t length = 0;
    if (format == PlistFormat::xml) {
        plist_to_xml(root, &bytes, &length);
        writeFile(path, std::string(bytes, length));
        plist_to_xml_free(bytes);
    } else {
        plist_to_bin(root, &bytes, &length);
        writeFile(path, std::string(bytes, length));
        plist_to_bin_free(bytes);
    }
    plist_free(root);
}

/// Makes `bundlePath` an application bundle whose Info.plist holds `info`.
inline void writeBundle(const std::string& bundlePath, const PlistDictionary& info,
                        PlistFormat format = PlistFormat::xml) {
    writePlist(bundlePath + "/Contents/Info.plist", PlistValue(info), format);
}

}  // namespace marzipel::testing
