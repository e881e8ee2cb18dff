#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "base/plist_value.h"

namespace marzipel {

/// Property-list files larger than this are not read.
inline constexpr std::size_t kMaxPropertyListBytes = std::size_t{8} << 20;

/// Parses property-list bytes, XML or binary. Nothing when they are not a property list.
std::optional<PlistValue> parsePropertyList(std::span<const std::uint8_t> bytes);

/// The XML property-list text of `value`.
std::string toXmlPropertyList(const PlistValue& value);

/// Reads a property-list file. Nothing when the file is missing, unreadable, larger than
/// `maxBytes`, or not a property list.
std::optional<PlistValue> readPropertyListFile(const std::string& path,
                                               std::size_t maxBytes = kMaxPropertyListBytes);

}  // namespace marzipel
