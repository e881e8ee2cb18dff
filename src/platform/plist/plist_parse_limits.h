#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace marzipel {

/// The deepest nesting of arrays and dictionaries a parsed property list may have.
inline constexpr std::size_t maxPropertyListDepth = 256;
/// The most values a parsed property list may hold, counting every use of a shared object.
inline constexpr std::size_t maxPropertyListValues = std::size_t{1} << 18;

/// Whether `bytes` start like a binary property list.
bool isBinaryPropertyList(std::span<const std::uint8_t> bytes);

/// Whether libplist can be handed `bytes` without exhausting the stack or memory and without
/// misreading them: its binary reader recurses per level and copies each use of a shared object,
/// freeing a tree recurses too, it aborts on a NUL in a dictionary key, and it wraps integers
/// outside the 64-bit signed range. So nesting, expansion, keys and integers are checked here
/// first. Input that cannot be measured (a malformed binary object table) is refused; malformed
/// XML is left for libplist to refuse.
bool isWithinParseLimits(std::span<const std::uint8_t> bytes);

}  // namespace marzipel
