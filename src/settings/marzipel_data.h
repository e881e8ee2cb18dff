#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>

#include "settings/defaults_bridge.h"

namespace marzipel {

/// What to put back when the system stops being active: whether Night Shift was on and the
/// keyboard brightness, both as they were at activation.
struct MarzipelData {
    bool nightShiftEnabled = false;
    /// Always present when this program writes the record; may be missing in a stored one.
    std::optional<float> keyboardBacklightValue;

    friend bool operator==(const MarzipelData&, const MarzipelData&) = default;
};

/// Stored form: {"keyboardBacklightValue": number (only when present), "nightShiftEnabled": bool}.
/// Throws for a brightness that is not a finite number.
void to_json(nlohmann::json& json, const MarzipelData& data);
void from_json(const nlohmann::json& json, MarzipelData& data);

template <>
inline constexpr bool isDefaultsCodable<MarzipelData> = true;

}  // namespace marzipel
