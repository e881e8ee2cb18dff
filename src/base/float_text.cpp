#include "base/float_text.h"

#include <array>
#include <charconv>
#include <cmath>

namespace marzipel {

std::string floatText(float value) {
    if (!std::isfinite(value)) return std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
    // Plain decimals where they read well, an exponent for the very small and very large.
    const float magnitude = std::fabs(value);
    const bool plain = magnitude == 0 || (magnitude >= 1e-4f && magnitude < 16777216.0f);
    std::array<char, 64> buffer{};
    auto [end, error] =
        std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                      plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text(buffer.data(), end);
    const auto exponent = text.find('e');
    if (text.find('.') == std::string::npos) {
        text.insert(exponent == std::string::npos ? text.size() : exponent, ".0");
    }
    return text;
}

}  // namespace marzipel
