#include "platform/macos/foundation_bridge_objc.h"

#include <type_traits>

namespace marzipel {

std::string utf8String(NSString* text) {
    const char* bytes = text.UTF8String;
    return bytes ? std::string(bytes) : std::string();
}

NSString* foundationString(std::string_view text) {
    return [[NSString alloc] initWithBytes:text.data()
                                    length:text.size()
                                  encoding:NSUTF8StringEncoding];
}

id foundationObject(const PlistValue& value) {
    return std::visit(
        [](const auto& v) -> id {
            using T = std::decay_t<decltype(v)>;
            if constexpr (std::is_same_v<T, bool>) {
                return @(v);
            } else if constexpr (std::is_same_v<T, std::int64_t>) {
                return @(static_cast<long long>(v));
            } else if constexpr (std::is_same_v<T, double>) {
                return @(v);
            } else if constexpr (std::is_same_v<T, std::string>) {
                return foundationString(v);
            } else if constexpr (std::is_same_v<T, PlistData>) {
                return [NSData dataWithBytes:v.data() length:v.size()];
            } else if constexpr (std::is_same_v<T, PlistDate>) {
                return [NSDate dateWithTimeIntervalSinceReferenceDate:v.secondsSinceReferenceDate];
            } else if constexpr (std::is_same_v<T, PlistArray>) {
                NSMutableArray* array = [NSMutableArray arrayWithCapacity:v.size()];
                for (const PlistValue& element : v) {
                    if (id object = foundationObject(element)) [array addObject:object];
                }
                return array;
            } else {
                static_assert(std::is_same_v<T, PlistDictionary>);
                NSMutableDictionary* dictionary =
                    [NSMutableDictionary dictionaryWithCapacity:v.size()];
                for (const auto& [name, element] : v) {
                    NSString* key = foundationString(name);
                    id object = foundationObject(element);
                    if (key && object) dictionary[key] = object;
                }
                return dictionary;
            }
        },
        value.storage());
}

namespace {

PlistValue numberValue(NSNumber* number) {
    CFTypeRef reference = (__bridge CFTypeRef)number;
    if (CFGetTypeID(reference) == CFBooleanGetTypeID()) return PlistValue(number.boolValue);
    if (CFNumberIsFloatType((__bridge CFNumberRef)number)) return PlistValue(number.doubleValue);
    return PlistValue(static_cast<std::int64_t>(number.longLongValue));
}

}  // namespace

std::optional<PlistValue> plistValue(id object) {
    if ([object isKindOfClass:NSString.class]) return PlistValue(utf8String(object));
    if ([object isKindOfClass:NSNumber.class]) return numberValue(object);
    if ([object isKindOfClass:NSData.class]) {
        NSData* data = object;
        const auto* bytes = static_cast<const std::uint8_t*>(data.bytes);
        return PlistValue(PlistData(bytes, bytes + data.length));
    }
    if ([object isKindOfClass:NSDate.class]) {
        return PlistValue(PlistDate{[object timeIntervalSinceReferenceDate]});
    }
    if ([object isKindOfClass:NSArray.class]) {
        PlistArray array;
        for (id element in (NSArray*)object) {
            if (auto value = plistValue(element)) array.push_back(std::move(*value));
        }
        return PlistValue(std::move(array));
    }
    if ([object isKindOfClass:NSDictionary.class]) {
        PlistDictionary dictionary;
        NSDictionary* entries = object;
        for (id key in entries) {
            if (![key isKindOfClass:NSString.class]) continue;
            if (auto value = plistValue(entries[key])) {
                dictionary.insert_or_assign(utf8String(key), std::move(*value));
            }
        }
        return PlistValue(std::move(dictionary));
    }
    return std::nullopt;
}

}  // namespace marzipel
