#include "settings/app_item.h"

#include <nlohmann/json.hpp>

namespace marzipel {

void to_json(nlohmann::json& json, const AppItem& item) {
    json = nlohmann::json{{"id", item.id}, {"name", item.name}};
    if (item.iconPath) json["iconPath"] = *item.iconPath;
}

void from_json(const nlohmann::json& json, AppItem& item) {
    item.id = json.at("id").get<std::string>();
    item.name = json.at("name").get<std::string>();
    item.iconPath.reset();
    if (auto it = json.find("iconPath"); it != json.end() && !it->is_null()) {
        item.iconPath = it->get<std::string>();
    }
}

}  // namespace marzipel

std::size_t std::hash<marzipel::AppItem>::operator()(const marzipel::AppItem& item) const noexcept {
    std::hash<std::string> hashString;
    auto combine = [](std::size_t seed, std::size_t value) {
        return seed ^ (value + 0x9e3779b97f4a7c15ULL + (seed << 6) + (seed >> 2));
    };
    std::size_t seed = combine(hashString(item.id), hashString(item.name));
    seed = combine(seed, item.iconPath ? 1 : 0);
    if (item.iconPath) seed = combine(seed, hashString(*item.iconPath));
    return seed;
}
