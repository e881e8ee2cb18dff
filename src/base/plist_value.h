#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <variant>
#include <vector>

namespace marzipel {

/// Bytes of a property-list data value.
using PlistData = std::vector<std::uint8_t>;

/// A property-list date: seconds since 2001-01-01 00:00:00 UTC.
struct PlistDate {
    double secondsSinceReferenceDate = 0;
    friend bool operator==(const PlistDate&, const PlistDate&) = default;
};

class PlistValue;
using PlistArray = std::vector<PlistValue>;
using PlistDictionary = std::map<std::string, PlistValue, std::less<>>;

/// One property-list value: the kinds a preferences store or an Info.plist can hold.
class PlistValue {
public:
    using Storage = std::variant<bool, std::int64_t, double, std::string, PlistData, PlistDate,
                                 PlistArray, PlistDictionary>;

    PlistValue() : storage_(false) {}
    PlistValue(bool value) : storage_(value) {}
    PlistValue(int value) : storage_(std::int64_t{value}) {}
    PlistValue(std::int64_t value) : storage_(value) {}
    PlistValue(double value) : storage_(value) {}
    PlistValue(const char* value) : storage_(std::string(value)) {}
    PlistValue(std::string value) : storage_(std::move(value)) {}
    PlistValue(PlistData value) : storage_(std::move(value)) {}
    PlistValue(PlistDate value) : storage_(value) {}
    PlistValue(PlistArray value) : storage_(std::move(value)) {}
    PlistValue(PlistDictionary value) : storage_(std::move(value)) {}

    template <typename T>
    bool is() const {
        return std::holds_alternative<T>(storage_);
    }
    /// The value as T, or null when it holds another kind.
    template <typename T>
    const T* as() const {
        return std::get_if<T>(&storage_);
    }
    const Storage& storage() const { return storage_; }

    friend bool operator==(const PlistValue&, const PlistValue&) = default;

private:
    Storage storage_;
};

}  // namespace marzipel
