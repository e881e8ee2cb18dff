#include "detection/bundle_reader.h"

#include <algorithm>

namespace marzipel {
namespace {

const std::string* stringField(const PlistDictionary& info, std::string_view key) {
    auto it = info.find(key);
    return it == info.end() ? nullptr : it->second.as<std::string>();
}

/// The icon file named by the bundle, if any: the first of a non-empty list of strings under
/// "CFBundleIconFiles", else "CFBundleIconFile".
const std::string* iconFileName(const PlistDictionary& info) {
    if (auto it = info.find("CFBundleIconFiles"); it != info.end()) {
        const PlistArray* files = it->second.as<PlistArray>();
        bool allStrings = files && std::ranges::all_of(*files, [](const PlistValue& file) {
                              return file.is<std::string>();
                          });
        if (allStrings && !files->empty()) return files->front().as<std::string>();
    }
    return stringField(info, "CFBundleIconFile");
}

/// The bundle's own path, as the platform reports it for a bundle opened with a trailing slash.
std::string bundlePathOf(const std::string& path) {
    std::string result = path;
    while (result.size() > 1 && result.back() == '/') result.pop_back();
    return result;
}

}  // namespace

std::optional<AppItem> appItemFromInfoPlist(const std::string& bundlePath, const PlistValue& info) {
    const PlistDictionary* fields = info.as<PlistDictionary>();
    if (!fields) return std::nullopt;
    const std::string* identifier = stringField(*fields, "CFBundleIdentifier");
    if (!identifier) return std::nullopt;

    AppItem item{*identifier, std::string(kUnknownAppName), std::nullopt};
    if (const std::string* name = stringField(*fields, "CFBundleName")) {
        item.name = *name;
    } else if (const std::string* executable = stringField(*fields, "CFBundleExecutable")) {
        item.name = *executable;
    }
    if (const std::string* icon = iconFileName(*fields)) {
        std::string iconPath = bundlePath + "/Contents/Resources/" + *icon;
        // Case-sensitive on purpose: "Icon.ICNS" becomes "Icon.ICNS.icns".
        if (!iconPath.ends_with(".icns")) iconPath += ".icns";
        item.iconPath = std::move(iconPath);
    }
    return item;
}

std::optional<AppItem> appItemFromBundle(const std::string& path, const BundleFiles& files) {
    if (!files.isDirectory(path)) return std::nullopt;
    std::string bundlePath = bundlePathOf(path);
    std::optional<PlistValue> info = files.readPropertyList(bundlePath + "/Contents/Info.plist");
    if (!info) return std::nullopt;
    return appItemFromInfoPlist(bundlePath, *info);
}

}  // namespace marzipel
