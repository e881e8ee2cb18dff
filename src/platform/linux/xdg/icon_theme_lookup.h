#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace marzipel {

/// Finds the image file for the "Icon" value of a desktop entry through the "hicolor" icon theme
/// and the "pixmaps" folders of the XDG data folders. Remembers which size folders each theme
/// folder has for its own lifetime, so one lookup should serve one batch of entries. Main thread.
class IconThemeLookup {
public:
    /// `dataFolders` in lookup order, the user's own first.
    explicit IconThemeLookup(std::vector<std::string> dataFolders);

    /// An absolute `icon` is kept when it names an existing file. A name is looked up as a
    /// scalable ".svg" in any data folder first, then as the ".png" of the largest size, then in
    /// "pixmaps"; a ".png", ".svg" or ".xpm" ending of the name is ignored in the theme. Nothing
    /// when no file is found or the value is neither a path nor a plain name.
    std::optional<std::string> find(std::string_view icon) const;

private:
    struct SizeFolder {
        int pixels;
        std::string path;
    };

    /// The theme's fixed-size folders in `dataFolders_[index]`, largest first.
    const std::vector<SizeFolder>& sizeFolders(std::size_t index) const;
    std::optional<std::string> findScalable(const std::string& name) const;
    std::optional<std::string> findLargestPng(const std::string& name) const;
    std::optional<std::string> findPixmap(std::string_view icon, const std::string& name) const;

    std::vector<std::string> dataFolders_;
    mutable std::vector<std::optional<std::vector<SizeFolder>>> sizeFolders_;
};

}  // namespace marzipel
