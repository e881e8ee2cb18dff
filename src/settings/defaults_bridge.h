#pragma once

#include <cstdint>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "platform/console.h"
#include "settings/plist_value.h"

namespace marzipel {

/// Records and enumerations opt in to being stored as sorted-key JSON text by specialising this.
/// Such a type needs nlohmann `to_json` / `from_json`; `from_json` throws on bad input.
template <typename T>
inline constexpr bool isDefaultsCodable = false;

/// Maps a value type to its stored property-list form and back. `serialize` yields nothing when
/// the value cannot be encoded (after telling `console` why); `deserialize` yields nothing for a
/// stored object of the wrong shape.
template <typename T>
struct DefaultsBridge;

/// Kinds the store holds as they are.
template <typename T>
struct NativeBridge {
    static constexpr bool isNative = true;
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
    static constexpr bool isNative = false;
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

template <typename Element>
std::optional<PlistArray> serializeElements(const auto& elements, Console& console) {
    PlistArray array;
    for (const Element& element : elements) {
        auto object = DefaultsBridge<Element>::serialize(element, console);
        if (!object) return std::nullopt;
        array.push_back(std::move(*object));
    }
    return array;
}

/// Sets as arrays; an element that cannot be read is dropped and the rest kept.
template <typename Element>
struct DefaultsBridge<std::set<Element>> {
    static constexpr bool isNative = false;
    static std::optional<PlistValue> serialize(const std::set<Element>& value, Console& console) {
        auto array = serializeElements<Element>(value, console);
        if (!array) return std::nullopt;
        return PlistValue(std::move(*array));
    }
    static std::optional<std::set<Element>> deserialize(const PlistValue& object) {
        const PlistArray* array = object.as<PlistArray>();
        if (!array) return std::nullopt;
        std::set<Element> result;
        for (const PlistValue& item : *array) {
            if (DefaultsBridge<Element>::isNative && !DefaultsBridge<Element>::deserialize(item)) {
                return std::nullopt;  // an array of natives must hold that kind throughout
            }
            if (auto element = DefaultsBridge<Element>::deserialize(item)) {
                result.insert(std::move(*element));
            }
        }
        return result;
    }
};

/// Arrays element by element; elements that cannot be read are dropped.
template <typename Element>
struct DefaultsBridge<std::vector<Element>> {
    static constexpr bool isNative = false;
    static std::optional<PlistValue> serialize(const std::vector<Element>& value,
                                               Console& console) {
        auto array = serializeElements<Element>(value, console);
        if (!array) return std::nullopt;
        return PlistValue(std::move(*array));
    }
    static std::optional<std::vector<Element>> deserialize(const PlistValue& object) {
        const PlistArray* array = object.as<PlistArray>();
        if (!array) return std::nullopt;
        std::vector<Element> result;
        for (const PlistValue& item : *array) {
            if (auto element = DefaultsBridge<Element>::deserialize(item)) {
                result.push_back(std::move(*element));
            }
        }
        return result;
    }
};

/// String-keyed dictionaries, each value through its own bridge; an entry whose value cannot be
/// read is dropped so that the others survive.
template <typename Value>
struct DefaultsBridge<std::map<std::string, Value>> {
    static constexpr bool isNative = false;
    static std::optional<PlistValue> serialize(const std::map<std::string, Value>& value,
                                               Console& console) {
        PlistDictionary dictionary;
        for (const auto& [name, item] : value) {
            auto object = DefaultsBridge<Value>::serialize(item, console);
            if (!object) return std::nullopt;
            dictionary.emplace(name, std::move(*object));
        }
        return PlistValue(std::move(dictionary));
    }
    static std::optional<std::map<std::string, Value>> deserialize(const PlistValue& object) {
        const PlistDictionary* dictionary = object.as<PlistDictionary>();
        if (!dictionary) return std::nullopt;
        std::map<std::string, Value> result;
        for (const auto& [name, item] : *dictionary) {
            if (auto value = DefaultsBridge<Value>::deserialize(item)) {
                result.emplace(name, std::move(*value));
            }
        }
        return result;
    }
};

/// Optionals as the wrapped value's form; an absent value has no stored object.
template <typename Wrapped>
struct DefaultsBridge<std::optional<Wrapped>> {
    static constexpr bool isNative = false;
    static std::optional<PlistValue> serialize(const std::optional<Wrapped>& value,
                                               Console& console) {
        if (!value) return std::nullopt;
        return DefaultsBridge<Wrapped>::serialize(*value, console);
    }
    static std::optional<std::optional<Wrapped>> deserialize(const PlistValue& object) {
        auto value = DefaultsBridge<Wrapped>::deserialize(object);
        if (!value) return std::nullopt;
        return std::optional<Wrapped>(std::move(*value));
    }
};

}  // namespace marzipel
