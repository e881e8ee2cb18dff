#pragma once

// For the Objective-C++ files of this folder only.

#import <Foundation/Foundation.h>

#include <optional>
#include <string>
#include <string_view>

#include "base/plist_value.h"

namespace marzipel {

/// The UTF-8 bytes of `text`; empty for nil.
std::string utf8String(NSString* text);
/// `text` as a Foundation string; nil when it is not UTF-8.
NSString* foundationString(std::string_view text);

/// `value` as a property-list object of Foundation. Strings that are not UTF-8 cannot be
/// represented: such a value is nil, and inside an array or dictionary such an element or entry
/// is left out.
id foundationObject(const PlistValue& value);
/// `object` as a property-list value; nothing for nil, NSNull and objects of other kinds. Inside
/// an array or dictionary such elements, and entries whose keys are not strings, are left out.
std::optional<PlistValue> plistValue(id object);

}  // namespace marzipel
