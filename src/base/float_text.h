#pragma once

#include <string>

namespace marzipel {

/// The shortest decimal text that reads back as the same 32-bit float, always with a fractional
/// part: 0 is "0.0", one half "0.5", 1e-05 is "1.0e-05". Not a number is "nan", infinities
/// "inf" and "-inf".
std::string floatText(float value);

}  // namespace marzipel
