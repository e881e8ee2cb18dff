#pragma once

#include <cstddef>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>

#include "settings/defaults_bridge.h"

namespace marzipel {

/// One application: its bundle identifier (also its identity), the name to show and the path of
/// its icon file. Equality compares all three fields.
struct AppItem {
    std::string id;
    std::string name;
    std::optional<std::string> iconPath;

    friend bool operator==(const AppItem&, const AppItem&) = default;
    /// By `id`, then `name`, then `iconPath` (absent first), so that a set keeps records that
    /// differ in any field.
    friend bool operator<(const AppItem& a, const AppItem& b) {
        if (a.id != b.id) return a.id < b.id;
        if (a.name != b.name) return a.name < b.name;
        return a.iconPath < b.iconPath;
    }
};

/// Stored form: {"iconPath", "id", "name"}, "iconPath" left out when absent.
void to_json(nlohmann::json& json, const AppItem& item);
/// Requires "id" and "name" as strings; "iconPath" may be missing.
void from_json(const nlohmann::json& json, AppItem& item);

template <>
inline constexpr bool isDefaultsCodable<AppItem> = true;

}  // namespace marzipel

template <>
struct std::hash<marzipel::AppItem> {
    std::size_t operator()(const marzipel::AppItem& item) const noexcept;
};
