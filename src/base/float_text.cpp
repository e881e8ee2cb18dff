#include "base/float_text.h"

#include <cfloat>
#include <cmath>
#include <cstdint>
#include <locale>
#include <sstream>

namespace marzipel {
namespace {

/// `digits` x 10^`exponent`.
struct Decimal {
    std::uint64_t digits = 0;
    int exponent = 0;
};

// Streams imbued with the classic locale, because the process's C locale may be the user's
// (GUI toolkits set it), where the decimal point can be a comma.
Decimal nearestDecimal(float magnitude, int significantDigits) {
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out.precision(significantDigits - 1);
    out << std::scientific << magnitude;
    const std::string text = out.str();
    const std::size_t e = text.find('e');
    Decimal result;
    for (std::size_t i = 0; i < e; ++i) {
        if (text[i] != '.')
            result.digits = result.digits * 10 + static_cast<unsigned>(text[i] - '0');
    }
    std::istringstream exponent(text.substr(e + 1));
    exponent.imbue(std::locale::classic());
    exponent >> result.exponent;
    result.exponent -= significantDigits - 1;
    return result;
}

bool readsBackAs(const Decimal& decimal, float magnitude) {
    std::istringstream in(std::to_string(decimal.digits) + "e" + std::to_string(decimal.exponent));
    in.imbue(std::locale::classic());
    float value = 0;
    in >> value;
    // Some libraries flag a subnormal result as a range error; its value is still the nearest.
    if (in.fail() && !(value < FLT_MIN)) return false;
    return value == magnitude;
}

/// The fewest significant digits that read back as `magnitude` (finite, > 0); of those, the
/// nearest to it.
Decimal shortestDecimal(float magnitude) {
    for (int significantDigits = 1;; ++significantDigits) {
        const Decimal nearest = nearestDecimal(magnitude, significantDigits);
        if (significantDigits >= 9 || readsBackAs(nearest, magnitude)) return nearest;
        // Next to a power of two the interval that reads back is lopsided: the nearest
        // candidate can fall just outside while its neighbour on the other side is inside.
        for (const Decimal neighbour : {Decimal{nearest.digits + 1, nearest.exponent},
                                        Decimal{nearest.digits - 1, nearest.exponent}}) {
            if (neighbour.digits > 0 && readsBackAs(neighbour, magnitude)) return neighbour;
        }
    }
}

std::string fixedText(const std::string& digits, int exponent) {
    if (exponent >= 0) return digits + std::string(static_cast<std::size_t>(exponent), '0') + ".0";
    const int point = static_cast<int>(digits.size()) + exponent;
    if (point > 0) {
        return digits.substr(0, static_cast<std::size_t>(point)) + "." +
               digits.substr(static_cast<std::size_t>(point));
    }
    return "0." + std::string(static_cast<std::size_t>(-point), '0') + digits;
}

std::string scientificText(const std::string& digits, int exponent) {
    const int power = exponent + static_cast<int>(digits.size()) - 1;
    std::string text = digits.substr(0, 1) + "." + (digits.size() > 1 ? digits.substr(1) : "0");
    text += power < 0 ? "e-" : "e+";
    const std::string powerDigits = std::to_string(std::abs(power));
    if (powerDigits.size() < 2) text += '0';
    return text + powerDigits;
}

}  // namespace

std::string floatText(float value) {
    if (!std::isfinite(value)) return std::isnan(value) ? "nan" : (value < 0 ? "-inf" : "inf");
    const std::string sign = std::signbit(value) ? "-" : "";
    const float magnitude = std::fabs(value);
    if (magnitude == 0) return sign + "0.0";

    Decimal decimal = shortestDecimal(magnitude);
    while (decimal.digits % 10 == 0) {
        decimal.digits /= 10;
        ++decimal.exponent;
    }
    const std::string digits = std::to_string(decimal.digits);
    // Plain decimals where they read well, an exponent for the very small and very large.
    const bool plain = magnitude >= 1e-4f && magnitude < 16777216.0f;
    return sign +
           (plain ? fixedText(digits, decimal.exponent) : scientificText(digits, decimal.exponent));
}

}  // namespace marzipel
