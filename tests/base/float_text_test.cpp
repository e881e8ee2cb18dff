#include "base/float_text.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace marzipel {
namespace {

/// Finite floats of every magnitude: a sweep over the bit patterns, and each power of two with
/// its neighbours, where the interval that reads back is lopsided.
std::vector<float> sampleFloats() {
    std::vector<float> samples;
    for (std::uint32_t bits = 1; bits < 0x7f800000u; bits += 200003)
        samples.push_back(std::bit_cast<float>(bits));
    for (int exponent = -149; exponent <= 127; ++exponent) {
        const float power = std::ldexp(1.0f, exponent);
        samples.insert(samples.end(),
                       {power, std::nextafter(power, 0.0f), std::nextafter(power, INFINITY)});
    }
    return samples;
}

#if defined(__cpp_lib_to_chars)
/// The same rule written with the standard library's shortest conversion, where it has one.
std::string referenceText(float value) {
    const float magnitude = std::fabs(value);
    const bool plain = magnitude == 0 || (magnitude >= 1e-4f && magnitude < 16777216.0f);
    char buffer[64];
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value,
                                plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text(buffer, result.ptr);
    if (text.find('.') == std::string::npos) {
        const auto exponent = text.find('e');
        text.insert(exponent == std::string::npos ? text.size() : exponent, ".0");
    }
    return text;
}
#endif

TEST(FloatTextTest, ShortestTextThatReadsBackAndNamesForTheNonFinite) {
    for (const float magnitude : sampleFloats()) {
        for (const float value : {magnitude, -magnitude}) {
            const std::string text = floatText(value);
            ASSERT_EQ(std::strtof(text.c_str(), nullptr), value) << text;
            ASSERT_NE(text.find('.'), std::string::npos) << text;
#if defined(__cpp_lib_to_chars)
            ASSERT_EQ(text, referenceText(value));
#endif
        }
    }
    EXPECT_EQ(floatText(-0.0f), "-0.0");
    EXPECT_EQ(floatText(3.4028235e38f), "3.4028235e+38");
    EXPECT_EQ(floatText(INFINITY), "inf");
    EXPECT_EQ(floatText(-INFINITY), "-inf");
    EXPECT_EQ(floatText(NAN), "nan");
}

}  // namespace
}  // namespace marzipel
