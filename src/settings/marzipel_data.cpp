#include "settings/marzipel_data.h"

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>

#include "base/float_text.h"

namespace marzipel {

void to_json(nlohmann::json& json, const MarzipelData& data) {
    nlohmann::json result{{"nightShiftEnabled", data.nightShiftEnabled}};
    if (data.keyboardBacklightValue) {
        float value = *data.keyboardBacklightValue;
        if (!std::isfinite(value)) {
            throw std::invalid_argument("Unable to encode Float.nan or infinity directly in JSON.");
        }
        // Going through the float's own shortest text keeps 0.7 from being written as
        // 0.699999988079071.
        result["keyboardBacklightValue"] = std::stod(floatText(value));
    }
    json = std::move(result);
}

void from_json(const nlohmann::json& json, MarzipelData& data) {
    data.nightShiftEnabled = json.at("nightShiftEnabled").get<bool>();
    data.keyboardBacklightValue.reset();
    if (auto it = json.find("keyboardBacklightValue"); it != json.end() && !it->is_null()) {
        if (!it->is_number()) throw std::invalid_argument("keyboardBacklightValue is not a number");
        double value = it->get<double>();
        if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max()) {
            throw std::invalid_argument("keyboardBacklightValue does not fit in a Float");
        }
        data.keyboardBacklightValue = static_cast<float>(value);
    }
}

}  // namespace marzipel
