#pragma once

#include <string>

#include "base/plist_value.h"

namespace marzipel {

/// A property-list value from JSON text: objects, arrays, strings, booleans, integers and reals.
/// Throws ScriptError for anything else (null, malformed text).
PlistValue plistFromJson(const std::string& text);

/// Compact JSON with sorted keys; reals as the shortest text of their 32-bit float, data as a
/// base64 string and dates as ISO 8601 UTC strings.
std::string plistToJson(const PlistValue& value);

}  // namespace marzipel
