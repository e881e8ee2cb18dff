#include "core/float_text.h"

#include <array>
#include <charconv>

namespace marzipel {

std::string floatText(float value) {
    std::array<char, 64> buffer{};
    auto [end, error] = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    std::string text(buffer.data(), end);
    if (text.find_first_of(".eina") == std::string::npos) text += ".0";
    return text;
}

}  // namespace marzipel
