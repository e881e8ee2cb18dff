#include "platform/linux/xdg/xdg_user_directories.h"

#include <algorithm>
#include <fstream>
#include <string_view>

#include "platform/linux/xdg/xdg_base_directories.h"

namespace marzipel {
namespace {

constexpr std::string_view documentsVariable = "XDG_DOCUMENTS_DIR";

/// The value of one `NAME="..."` line as xdg-user-dirs writes it: double quotes with backslash
/// escapes, a path that is absolute or starts with $HOME. Nothing for any other form.
std::optional<std::string> parseValue(std::string_view text, const std::string& home) {
    std::string value;
    if (!text.empty() && text.front() == '"') {
        bool closed = false;
        for (std::size_t i = 1; i < text.size(); ++i) {
            char c = text[i];
            if (c == '\\' && i + 1 < text.size()) {
                value += text[++i];
            } else if (c == '"') {
                closed = true;
                break;
            } else {
                value += c;
            }
        }
        if (!closed) return std::nullopt;
    } else {
        std::size_t end = text.find_first_of(" \t#");
        value = std::string(text.substr(0, end));
    }
    for (std::string_view prefix : {"${HOME}", "$HOME"}) {
        if (value.starts_with(prefix)) {
            std::string rest = value.substr(prefix.size());
            if (!rest.empty() && rest.front() != '/') return std::nullopt;
            while (rest.size() > 1 && rest.back() == '/') rest.pop_back();
            return rest == "/" || rest.empty() ? home : home + rest;
        }
    }
    if (value.empty() || value.front() != '/') return std::nullopt;
    return value;
}

}  // namespace

XdgUserDirectories::XdgUserDirectories()
    : home_(homeDirectory()), configHome_(configHomeDirectory(home_)) {}

XdgUserDirectories::XdgUserDirectories(std::string home)
    : home_(std::move(home)), configHome_(*home_ + "/.config") {}

std::optional<std::string> XdgUserDirectories::documentsDirectory() const {
    if (!home_) return std::nullopt;
    std::optional<std::string> documents;
    if (configHome_) {
        std::ifstream file(*configHome_ + "/user-dirs.dirs");
        std::string line;
        // Later lines win, as when the shell sources the file.
        while (std::getline(file, line)) {
            std::string_view text(line);
            text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
            if (!text.starts_with(documentsVariable)) continue;
            text.remove_prefix(documentsVariable.size());
            if (!text.starts_with('=')) continue;
            if (auto value = parseValue(text.substr(1), *home_)) documents = std::move(value);
        }
    }
    return documents ? *documents : *home_ + "/Documents";
}

}  // namespace marzipel
