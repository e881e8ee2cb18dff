#pragma once

#include <string>

namespace marzipel {

/// The shortest decimal text that reads back as the same 32-bit float, always with a fractional
/// part or an exponent: 0 is "0.0", one half "0.5".
std::string floatText(float value);

}  // namespace marzipel
