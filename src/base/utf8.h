#pragma once

#include <string_view>

namespace marzipel {

/// Whether `text` is well-formed UTF-8 (no overlong forms, surrogates or values past U+10FFFF).
bool isValidUtf8(std::string_view text);

}  // namespace marzipel
