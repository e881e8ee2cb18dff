#include "platform/plist/plist_codec.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <limits>

#include "base/utf8.h"
#include "platform/plist/plist_node.h"
#include "platform/plist/plist_parse_limits.h"

namespace marzipel {
namespace {

#if MARZIPEL_LIBPLIST_VERSION >= 207
/// Seconds from the Unix epoch to the property lists' reference date, 1 January 2001.
constexpr std::int64_t referenceDateFromEpoch = 978307200;
#else
constexpr double microsecondsPerSecond = 1e6;
#endif

std::optional<PlistValue> fromNode(plist_t node, std::size_t depth);

std::optional<PlistValue> fromArray(plist_t node, std::size_t depth) {
    PlistArray array;
    const std::uint32_t size = plist_array_get_size(node);
    array.reserve(size);
    for (std::uint32_t i = 0; i < size; ++i) {
        auto item = fromNode(plist_array_get_item(node, i), depth + 1);
        if (!item) return std::nullopt;
        array.push_back(std::move(*item));
    }
    return PlistValue(std::move(array));
}

std::optional<PlistValue> fromDictionary(plist_t node, std::size_t depth) {
    PlistDictionary dictionary;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    if (!iterator) return std::nullopt;
    std::unique_ptr<void, decltype(&std::free)> iteratorOwner(iterator, &std::free);
    for (;;) {
        char* rawKey = nullptr;
        plist_t item = nullptr;
        plist_dict_next_item(node, iterator, &rawKey, &item);
        PlistBuffer key(rawKey);
        if (!item) return PlistValue(std::move(dictionary));
        if (!key || !isValidUtf8(key.get())) return std::nullopt;
        auto value = fromNode(item, depth + 1);
        if (!value) return std::nullopt;
        dictionary.insert_or_assign(std::string(key.get()), std::move(*value));
    }
}

PlistDate dateOf(plist_t node) {
#if MARZIPEL_LIBPLIST_VERSION >= 207
    // Whole seconds only, as the XML form has them.
    std::int64_t sinceEpoch = 0;
    plist_get_unix_date_val(node, &sinceEpoch);
    return PlistDate{static_cast<double>(sinceEpoch - referenceDateFromEpoch)};
#else
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    // The binary reader hands back whole seconds truncated toward zero and the fraction's size,
    // so before the reference date the fraction points further into the past.
    // As a double: a broken date can come back with INT32_MIN microseconds.
    const double fraction = std::abs(static_cast<double>(microseconds)) / microsecondsPerSecond;
    return PlistDate{seconds < 0 ? seconds - fraction : seconds + fraction};
#endif
}

std::int64_t integerOf(plist_t node) {
#if MARZIPEL_LIBPLIST_VERSION >= 203
    if (plist_int_val_is_negative(node)) {
        std::int64_t value = 0;
        plist_get_int_val(node, &value);
        return value;
    }
#endif
    // Before 2.3 libplist kept every integer in 64 unsigned bits and could not say whether the
    // number was negative or above INT64_MAX; negative numbers are the ones that occur in
    // practice, and the parse limits refuse the others.
    std::uint64_t value = 0;
    plist_get_uint_val(node, &value);
    return static_cast<std::int64_t>(value);
}

plist_t integerNode(std::int64_t value) {
#if MARZIPEL_LIBPLIST_VERSION >= 203
    // From 2.3 on, a negative number given as unsigned is written as a number above INT64_MAX.
    return plist_new_int(value);
#else
    return plist_new_uint(static_cast<std::uint64_t>(value));
#endif
}

std::optional<PlistValue> fromNode(plist_t node, std::size_t depth) {
    if (!node || depth > maxPropertyListDepth) return std::nullopt;
    switch (plist_get_node_type(node)) {
        case PLIST_BOOLEAN: {
            std::uint8_t value = 0;
            plist_get_bool_val(node, &value);
            return PlistValue(value != 0);
        }
        case PLIST_UINT:
            return PlistValue(integerOf(node));
        case PLIST_REAL: {
            double value = 0;
            plist_get_real_val(node, &value);
            return PlistValue(value);
        }
        case PLIST_STRING: {
            std::uint64_t length = 0;
            const char* text = plist_get_string_ptr(node, &length);
            if (!text) return std::nullopt;
            std::string string(text, length);
            // Text that is not UTF-8 could never be written out again as a setting or a log line.
            if (!isValidUtf8(string)) return std::nullopt;
            return PlistValue(std::move(string));
        }
        case PLIST_DATA: {
            std::uint64_t length = 0;
            const char* bytes = plist_get_data_ptr(node, &length);
            const auto* begin = reinterpret_cast<const std::uint8_t*>(bytes);
            return PlistValue(bytes ? PlistData(begin, begin + length) : PlistData{});
        }
        case PLIST_DATE:
            return PlistValue(dateOf(node));
        case PLIST_ARRAY:
            return fromArray(node, depth);
        case PLIST_DICT:
            return fromDictionary(node, depth);
        default:
            // UIDs belong to keyed archives, which no reader here understands.
            return std::nullopt;
    }
}

plist_t dateNode(const PlistDate& date) {
    double seconds = date.secondsSinceReferenceDate;
    if (std::isnan(seconds)) seconds = 0;
    constexpr double lowest = std::numeric_limits<std::int32_t>::min();
    constexpr double highest = std::numeric_limits<std::int32_t>::max();
    if (seconds < lowest) seconds = lowest;
    if (seconds > highest) seconds = highest;
#if MARZIPEL_LIBPLIST_VERSION >= 207
    return plist_new_unix_date(static_cast<std::int64_t>(std::floor(seconds)) +
                               referenceDateFromEpoch);
#else
    const double whole = std::trunc(seconds);
    return plist_new_date(static_cast<std::int32_t>(whole),
                          static_cast<std::int32_t>((seconds - whole) * microsecondsPerSecond));
#endif
}

plist_t toNode(const PlistValue& value) {
    struct Build {
        plist_t operator()(bool v) const { return plist_new_bool(v ? 1 : 0); }
        plist_t operator()(std::int64_t v) const { return integerNode(v); }
        plist_t operator()(double v) const { return plist_new_real(v); }
        plist_t operator()(const std::string& v) const { return plist_new_string(v.c_str()); }
        plist_t operator()(const PlistData& v) const {
            return plist_new_data(reinterpret_cast<const char*>(v.data()), v.size());
        }
        plist_t operator()(const PlistDate& v) const { return dateNode(v); }
        plist_t operator()(const PlistArray& v) const {
            plist_t array = plist_new_array();
            for (const PlistValue& item : v) plist_array_append_item(array, toNode(item));
            return array;
        }
        plist_t operator()(const PlistDictionary& v) const {
            plist_t dictionary = plist_new_dict();
            for (const auto& [key, item] : v) {
                plist_dict_set_item(dictionary, key.c_str(), toNode(item));
            }
            return dictionary;
        }
    };
    return std::visit(Build{}, value.storage());
}

}  // namespace

std::optional<PlistValue> parsePropertyList(std::span<const std::uint8_t> bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        return std::nullopt;
    }
    if (!isWithinParseLimits(bytes)) return std::nullopt;
    // A terminated copy: the XML reader must never run past the end of the caller's bytes.
    const std::string text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const auto length = static_cast<std::uint32_t>(text.size());
    plist_t raw = nullptr;
    if (isBinaryPropertyList(bytes)) {
        plist_from_bin(text.data(), length, &raw);
    } else {
        plist_from_xml(text.data(), length, &raw);
    }
    PlistNode root(raw);
    if (!root) return std::nullopt;
    return fromNode(root.get(), 1);
}

std::string toXmlPropertyList(const PlistValue& value) {
    PlistNode root(toNode(value));
    char* raw = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root.get(), &raw, &length);
    PlistBuffer xml(raw);
    if (!xml) return {};
    return std::string(xml.get(), length);
}

std::optional<PlistValue> readPropertyListFile(const std::string& path, std::size_t maxBytes) {
    // Only regular files: a FIFO or device would block or never end.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return std::nullopt;
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::vector<std::uint8_t> bytes;
    constexpr std::size_t chunk = 64 * 1024;
    while (file && bytes.size() <= maxBytes) {
        const std::size_t start = bytes.size();
        bytes.resize(start + chunk);
        file.read(reinterpret_cast<char*>(bytes.data() + start), chunk);
        bytes.resize(start + static_cast<std::size_t>(file.gcount()));
    }
    if (bytes.size() > maxBytes || file.bad()) return std::nullopt;
    return parsePropertyList(bytes);
}

}  // namespace marzipel
