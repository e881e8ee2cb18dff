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

/// The elements of a stored array, each read through its bridge, when every element has the
/// element type's stored kind; nothing otherwise. Elements of the right kind that still cannot be
/// read (say, broken JSON text) are dropped, so one bad element never costs the rest.
template <typename Element>
std::optional<std::vector<Element>> deserializeElements(const PlistValue& object) {
    const PlistArray* array = object.as<PlistArray>();
    if (!array) return std::nullopt;
    std::vector<Element> result;
    for (const PlistValue& item : *array) {
        if (!DefaultsBridge<Element>::isStoredForm(item)) return std::nullopt;
        if (auto element = DefaultsBridge<Element>::deserialize(item)) {
            result.push_back(std::move(*element));
        }
    }
    return result;
}

/// Sets as arrays of their elements' stored forms.
template <typename Element>
struct DefaultsBridge<std::set<Element>> {
    static bool isStoredForm(const PlistValue& object) { return object.is<PlistArray>(); }
    static std::optional<PlistValue> serialize(const std::set<Element>& value, Console& console) {
        auto array = serializeElements<Element>(value, console);
        if (!array) return std::nullopt;
        return PlistValue(std::move(*array));
    }
    static std::optional<std::set<Element>> deserialize(const PlistValue& object) {
        auto elements = deserializeElements<Element>(object);
        if (!elements) return std::nullopt;
        return std::set<Element>(std::make_move_iterator(elements->begin()),
                                 std::make_move_iterator(elements->end()));
    }
};

/// Arrays of their elements' stored forms.
template <typename Element>
struct DefaultsBridge<std::vector<Element>> {
    static bool isStoredForm(const PlistValue& object) { return object.is<PlistArray>(); }
    static std::optional<PlistValue> serialize(const std::vector<Element>& value,
                                               Console& console) {
        auto array = serializeElements<Element>(value, console);
        if (!array) return std::nullopt;
        return PlistValue(std::move(*array));
    }
    static std::optional<std::vector<Element>> deserialize(const PlistValue& object) {
        return deserializeElements<Element>(object);
    }
};

/// String-keyed dictionaries, each value through its own bridge. A value of the wrong kind makes
/// the whole dictionary unreadable, as it would be for an array.
template <typename Value>
struct DefaultsBridge<std::map<std::string, Value>> {
    static bool isStoredForm(const PlistValue& object) { return object.is<PlistDictionary>(); }
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
            auto value = DefaultsBridge<Value>::deserialize(item);
            if (!value) return std::nullopt;
            result.emplace(name, std::move(*value));
        }
        return result;
    }
};

/// Optionals as the wrapped value's form; an absent value has no stored object.
template <typename Wrapped>
struct DefaultsBridge<std::optional<Wrapped>> {
    static bool isStoredForm(const PlistValue& object) {
        return DefaultsBridge<Wrapped>::isStoredForm(object);
    }
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
