#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string_view>

#include "settings/defaults_bridge.h"

namespace marzipel {

/// What the user can switch on: the two actions taken while active, and the per-app condition
/// that video must be playing. The order is the declaration order of the cases.
enum class Feature { keyboardBacklight, nightShift, onlyWhenPlayingVideo };

std::string_view featureName(Feature feature);
std::optional<Feature> featureNamed(std::string_view name);

/// Stored form: an object with one member named after the case, holding an empty object,
/// e.g. {"nightShift":{}}.
void to_json(nlohmann::json& json, Feature feature);
/// Throws unless exactly one member names a case and its value is an object; members of that
/// object are ignored.
void from_json(const nlohmann::json& json, Feature& feature);

template <>
inline constexpr bool isDefaultsCodable<Feature> = true;

}  // namespace marzipel
