#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "base/plist_value.h"
#include "platform/console.h"

namespace marzipel {

/// Records and enumerations opt in to being stored as sorted-key JSON text by specialising this.
/// Such a type needs nlohmann `to_json` / `from_json`; `from_json` throws on bad input.
template <typename T>
inline constexpr bool isDefaultsCodable = false;

/// Maps a value type to its stored property-list form and back. `isStoredForm` tells whether a
/// stored object has the kind this type is stored as. `serialize` yields nothing when
/// the value cannot be encoded (after telling `console` why); `deserialize` yields nothing for a
/// stored object of the wrong shape.
template <typename T>
struct DefaultsBridge;

/// Kinds the store holds as they are.
template <typename T>
struct NativeBridge {
    static bool isStoredForm(const PlistValue& object) { return object.is<T>(); }
    static std::optional<PlistValue> serialize(const T& value, Console&) {
        return PlistValue(value);
    }
    static std::optional<T> deserialize(const PlistValue& object) {
        if (const T* value = object.as<T>()) return *value;
        return std::nullopt;
    }
};

template <>
struct DefaultsBridge<bool> : NativeBridge<bool> {};
template <>
struct DefaultsBridge<std::int64_t> : NativeBridge<std::int64_t> {};
template <>
struct DefaultsBridge<double> : NativeBridge<double> {};
template <>
struct DefaultsBridge<std::string> : NativeBridge<std::string> {};

/// Records as one string holding their JSON with sorted keys.
template <typename T>
requires isDefaultsCodable<T>
struct DefaultsBridge<T> {
    static bool isStoredForm(const PlistValue& object) { return object.is<std::string>(); }
    static std::optional<PlistValue> serialize(const T& value, Console& console) {
        try {
            // nlohmann objects are ordered maps, so keys come out sorted.
            return PlistValue(nlohmann::json(value).dump());
        } catch (const std::exception& error) {
            console.printLine(error.what());
            return std::nullopt;
        }
    }
    static std::optional<T> deserialize(const PlistValue& object) {
        const std::string* text = object.as<std::string>();
        if (!text) return std::nullopt;
        try {
            return nlohmann::json::parse(*text).template get<T>();
        } catch (const std::exception&) {
            return std::nullopt;
        }
    }
};

}  // namespace marzipel
