#include "platform/linux/xdg/app_identifier.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <sstream>

namespace marzipel {

namespace {

constexpr std::size_t kMaxProcFileBytes = 64 * 1024;

std::optional<std::string> readSmallFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return std::nullopt;
    std::string text(kMaxProcFileBytes, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

std::string_view trimmed(std::string_view text) {
    const auto space = [](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; };
    while (!text.empty() && space(text.front())) text.remove_prefix(1);
    while (!text.empty() && space(text.back())) text.remove_suffix(1);
    return text;
}

/// "name" in the [Application] group of a sandbox's .flatpak-info.
std::optional<std::string> flatpakInfoName(const std::string& text) {
    std::istringstream lines(text);
    std::string line;
    bool inApplication = false;
    while (std::getline(lines, line)) {
        const auto content = trimmed(line);
        if (content.starts_with('[')) {
            inApplication = content == "[Application]";
        } else if (inApplication && content.starts_with("name=")) {
            const auto name = trimmed(content.substr(5));
            if (!name.empty()) return std::string(name);
        }
    }
    return std::nullopt;
}

bool isUuid(std::string_view text) {
    if (text.size() != 36) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool dash = i == 8 || i == 13 || i == 18 || i == 23;
        if (dash ? text[i] != '-' : !std::isxdigit(static_cast<unsigned char>(text[i])))
            return false;
    }
    return true;
}

/// The flatpak id, or the snap's name and app, in a systemd unit name such as
/// "app-flatpak-org.videolan.VLC-1234.scope" or "snap.vlc.vlc-<uuid>.scope".
struct SandboxUnit {
    std::optional<std::string> flatpakId;
    std::optional<std::pair<std::string, std::string>> snapApp;
};

SandboxUnit parseUnit(std::string_view unit) {
    if (unit.ends_with(".scope"))
        unit.remove_suffix(6);
    else if (unit.ends_with(".service"))
        unit.remove_suffix(8);
    else
        return {};
    if (unit.starts_with("app-flatpak-")) {
        unit.remove_prefix(12);
        const auto dash = unit.rfind('-');
        if (dash != std::string_view::npos && dash + 1 < unit.size() &&
            std::ranges::all_of(unit.substr(dash + 1),
                                [](char c) { return std::isdigit(static_cast<unsigned char>(c)); }))
            unit = unit.substr(0, dash);
        if (unit.empty()) return {};
        return {std::string(unit), std::nullopt};
    }
    if (unit.starts_with("snap.")) {
        unit.remove_prefix(5);
        const auto dot = unit.find('.');
        if (dot == std::string_view::npos || dot == 0) return {};
        const auto snap = unit.substr(0, dot);
        auto app = unit.substr(dot + 1);
        app = app.substr(0, app.find('.'));
        if (app.size() > 37 && app[app.size() - 37] == '-' && isUuid(app.substr(app.size() - 36)))
            app.remove_suffix(37);
        if (app.empty()) return {};
        return {std::nullopt, std::pair{std::string(snap), std::string(app)}};
    }
    return {};
}

}  // namespace

RunningApplication AppIdentifier::describe(const WindowIdentity& window, bool regular) const {
    RunningApplication app;
    app.processId = window.processId;
    app.activationPolicy = regular ? ActivationPolicy::regular : ActivationPolicy::accessory;
    std::optional<std::string> id = window.applicationId;
    if (!id) id = sandboxId(window.processId);
    std::optional<DesktopEntry> entry;
    if (id) {
        entry = application(*id);
    } else {
        entry = byStartupWmClass(window);
        if (!entry) entry = application(window.instance);
        if (!entry) entry = application(window.className);
        if (entry) id = entry->id;
    }
    app.bundleIdentifier = std::move(id);
    if (entry) app.bundlePath = entry->path;
    if (entry && !entry->name.empty())
        app.localizedName = entry->name;
    else if (!window.className.empty())
        app.localizedName = window.className;
    return app;
}

std::optional<DesktopEntry> AppIdentifier::application(std::string_view id) const {
    if (id.empty()) return std::nullopt;
    auto entry = entries_.findById(id);
    if (!entry || !entry->isApplication || entry->hidden) return std::nullopt;
    return entry;
}

std::optional<DesktopEntry> AppIdentifier::byStartupWmClass(const WindowIdentity& window) const {
    for (const std::string* name : {&window.className, &window.instance}) {
        if (name->empty()) continue;
        if (auto entry = entries_.findByStartupWmClass(*name)) return entry;
    }
    return std::nullopt;
}

std::optional<std::string> AppIdentifier::sandboxId(std::int32_t processId) const {
    const std::string folder = procRoot_ + "/" + std::to_string(processId);
    if (const auto info = readSmallFile(folder + "/root/.flatpak-info"))
        if (auto name = flatpakInfoName(*info)) return name;
    const auto cgroup = readSmallFile(folder + "/cgroup");
    if (!cgroup) return std::nullopt;
    std::istringstream lines(*cgroup);
    std::string line;
    while (std::getline(lines, line)) {
        const auto unit = parseUnit(std::string_view(line).substr(line.rfind('/') + 1));
        if (unit.flatpakId) return unit.flatpakId;
        if (!unit.snapApp) continue;
        const auto& [snap, app] = *unit.snapApp;
        for (const auto& candidate : {snap + "_" + app, snap + "_" + snap})
            if (application(candidate)) return candidate;
    }
    return std::nullopt;
}

}  // namespace marzipel
