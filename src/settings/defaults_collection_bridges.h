#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "settings/defaults_bridge.h"

namespace marzipel {

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
