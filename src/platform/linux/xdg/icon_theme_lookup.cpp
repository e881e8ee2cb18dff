#include "platform/linux/xdg/icon_theme_lookup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <filesystem>
#include <system_error>

namespace marzipel {
namespace {

namespace fs = std::filesystem;

constexpr std::array<std::string_view, 4> kImageEndings{".png", ".svg", ".svgz", ".xpm"};

bool isFile(const std::string& path) {
    std::error_code error;
    return fs::is_regular_file(path, error);
}

std::string_view withoutImageEnding(std::string_view name) {
    for (std::string_view ending : kImageEndings) {
        if (name.size() > ending.size() && name.ends_with(ending)) {
            name.remove_suffix(ending.size());
            break;
        }
    }
    return name;
}

/// The pixel size of a theme folder named like "48x48" or "24x24@2"; nothing for other names.
std::optional<int> pixelsOf(std::string_view folder) {
    int width = 0;
    int height = 0;
    int scale = 1;
    const char* end = folder.data() + folder.size();
    auto [afterWidth, widthError] = std::from_chars(folder.data(), end, width);
    if (widthError != std::errc() || afterWidth == end || *afterWidth != 'x') return std::nullopt;
    auto [afterHeight, heightError] = std::from_chars(afterWidth + 1, end, height);
    if (heightError != std::errc() || width <= 0 || height <= 0) return std::nullopt;
    if (afterHeight != end) {
        if (*afterHeight != '@') return std::nullopt;
        auto [afterScale, scaleError] = std::from_chars(afterHeight + 1, end, scale);
        if (scaleError != std::errc() || afterScale != end || scale <= 0) return std::nullopt;
    }
    if (width > (1 << 20) / scale) return std::nullopt;
    return width * scale;
}

}  // namespace

IconThemeLookup::IconThemeLookup(std::vector<std::string> dataFolders)
    : dataFolders_(std::move(dataFolders)), sizeFolders_(dataFolders_.size()) {}

std::optional<std::string> IconThemeLookup::find(std::string_view icon) const {
    if (icon.empty() || icon.find('\0') != std::string_view::npos) return std::nullopt;
    if (icon.front() == '/') {
        std::string path(icon);
        if (isFile(path)) return path;
        return std::nullopt;
    }
    if (icon.find('/') != std::string_view::npos || icon == "." || icon == "..") {
        return std::nullopt;
    }
    const std::string name(withoutImageEnding(icon));
    if (auto found = findScalable(name)) return found;
    if (auto found = findLargestPng(name)) return found;
    return findPixmap(icon, name);
}

const std::vector<IconThemeLookup::SizeFolder>& IconThemeLookup::sizeFolders(
    std::size_t index) const {
    std::optional<std::vector<SizeFolder>>& cached = sizeFolders_[index];
    if (cached) return *cached;
    cached.emplace();
    std::error_code error;
    fs::directory_iterator it(dataFolders_[index] + "/icons/hicolor", error);
    for (; !error && it != fs::directory_iterator(); it.increment(error)) {
        const std::string folder = it->path().filename().string();
        if (std::optional<int> pixels = pixelsOf(folder)) {
            cached->push_back({*pixels, it->path().string()});
        }
    }
    std::ranges::stable_sort(*cached, std::ranges::greater(), &SizeFolder::pixels);
    return *cached;
}

std::optional<std::string> IconThemeLookup::findScalable(const std::string& name) const {
    for (const std::string& folder : dataFolders_) {
        std::string path = folder + "/icons/hicolor/scalable/apps/" + name + ".svg";
        if (isFile(path)) return path;
    }
    return std::nullopt;
}

std::optional<std::string> IconThemeLookup::findLargestPng(const std::string& name) const {
    std::optional<SizeFolder> best;
    for (std::size_t index = 0; index < dataFolders_.size(); ++index) {
        for (const SizeFolder& size : sizeFolders(index)) {
            if (best && size.pixels <= best->pixels) break;
            std::string path = size.path + "/apps/" + name + ".png";
            if (isFile(path)) {
                best = SizeFolder{size.pixels, std::move(path)};
                break;
            }
        }
    }
    if (!best) return std::nullopt;
    return best->path;
}

std::optional<std::string> IconThemeLookup::findPixmap(std::string_view icon,
                                                       const std::string& name) const {
    for (const std::string& folder : dataFolders_) {
        const std::string base = folder + "/pixmaps/";
        if (icon.size() != name.size()) {
            if (std::string path = base + std::string(icon); isFile(path)) return path;
            continue;
        }
        for (std::string_view ending : {".svg", ".png", ".xpm"}) {
            if (std::string path = base + name + std::string(ending); isFile(path)) return path;
        }
    }
    return std::nullopt;
}

}  // namespace marzipel
