#include "settings/feature.h"

#include <array>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace marzipel {

namespace {
constexpr std::array<std::pair<Feature, std::string_view>, 3> kNames{{
    {Feature::keyboardBacklight, "keyboardBacklight"},
    {Feature::nightShift, "nightShift"},
    {Feature::onlyWhenPlayingVideo, "onlyWhenPlayingVideo"},
}};
}

std::string_view featureName(Feature feature) {
    for (const auto& [candidate, name] : kNames) {
        if (candidate == feature) return name;
    }
    return {};
}

std::optional<Feature> featureNamed(std::string_view name) {
    for (const auto& [feature, candidate] : kNames) {
        if (candidate == name) return feature;
    }
    return std::nullopt;
}

void to_json(nlohmann::json& json, Feature feature) {
    json = nlohmann::json::object();
    json[std::string(featureName(feature))] = nlohmann::json::object();
}

void from_json(const nlohmann::json& json, Feature& feature) {
    if (!json.is_object()) {
        throw std::invalid_argument("Expected to decode Feature but found no keyed container.");
    }
    std::optional<Feature> found;
    int count = 0;
    for (const auto& [name, value] : json.items()) {
        if (auto candidate = featureNamed(name)) {
            found = candidate;
            ++count;
        }
    }
    if (count != 1) throw std::invalid_argument("Invalid number of keys found, expected one.");
    if (!json.at(std::string(featureName(*found))).is_object()) {
        throw std::invalid_argument("Expected a keyed container for the Feature case.");
    }
    feature = *found;
}

}  // namespace marzipel
