#include "platform/linux/x11_workspace.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>

#include <algorithm>
#include <cctype>
#include <fstream>
#include <limits>
#include <sstream>

#include "platform/linux/x11_connection.h"

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

struct ClassHint {
    std::string instance;
    std::string className;
};

std::optional<ClassHint> classHint(const X11Connection& x, xcb_window_t window) {
    const auto text = x.bytes(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING);
    if (!text) return std::nullopt;
    const std::string_view all(*text);
    const auto end = all.find('\0');
    ClassHint hint{std::string(all.substr(0, end)), {}};
    if (end != std::string_view::npos) {
        const auto rest = all.substr(end + 1);
        hint.className = std::string(rest.substr(0, rest.find('\0')));
    }
    return hint;
}

std::optional<std::int32_t> processIdOf(const X11Connection& x, xcb_window_t window) {
    const auto pid = x.items(window, x.ewmh()._NET_WM_PID, XCB_ATOM_CARDINAL);
    if (pid.empty() || pid.front() == 0 ||
        pid.front() > std::uint32_t{std::numeric_limits<std::int32_t>::max()})
        return std::nullopt;
    return static_cast<std::int32_t>(pid.front());
}

bool isTaskbarWindow(const X11Connection& x, xcb_window_t window) {
    const auto& atoms = x.ewmh();
    const auto types = x.items(window, atoms._NET_WM_WINDOW_TYPE, XCB_ATOM_ATOM);
    const bool normal =
        types.empty() || std::ranges::count(types, atoms._NET_WM_WINDOW_TYPE_NORMAL);
    return normal && !x.hasState(window, atoms._NET_WM_STATE_SKIP_TASKBAR);
}

/// A process with windows in the client list: the window that names it and its policy.
struct Owner {
    std::int32_t processId = 0;
    xcb_window_t window = XCB_WINDOW_NONE;
    bool regular = false;
};

std::vector<Owner> owners(const X11Connection& x) {
    std::vector<Owner> result;
    for (const xcb_window_t window :
         x.items(x.root(), x.ewmh()._NET_CLIENT_LIST, XCB_ATOM_WINDOW)) {
        const auto pid = processIdOf(x, window);
        if (!pid) continue;
        auto owner = std::ranges::find(result, *pid, &Owner::processId);
        if (owner == result.end()) owner = result.insert(result.end(), Owner{*pid, window, false});
        if (!owner->regular && isTaskbarWindow(x, window)) *owner = Owner{*pid, window, true};
    }
    return result;
}

/// Finds applications' desktop entries; reads the whole list at most once.
class Identifier {
public:
    Identifier(const X11Connection& x, const DesktopEntries& entries, const std::string& procRoot)
        : x_(x), entries_(entries), procRoot_(procRoot) {}

    RunningApplication describe(const Owner& owner, xcb_window_t window) {
        RunningApplication app;
        app.processId = owner.processId;
        app.activationPolicy =
            owner.regular ? ActivationPolicy::regular : ActivationPolicy::accessory;
        const auto hint = classHint(x_, window);
        std::optional<std::string> id;
        if (auto gtk = x_.bytes(window, x_.gtkApplicationIdAtom(), x_.ewmh().UTF8_STRING);
            gtk && !gtk->empty())
            id = std::move(gtk);
        else
            id = sandboxId(owner.processId);
        std::optional<DesktopEntry> entry;
        if (id) {
            entry = application(*id);
        } else if (hint) {
            entry = byStartupWmClass(*hint);
            if (!entry) entry = application(hint->instance);
            if (!entry) entry = application(hint->className);
            if (entry) id = entry->id;
        }
        app.bundleIdentifier = std::move(id);
        if (entry) app.bundlePath = entry->path;
        if (entry && !entry->name.empty())
            app.localizedName = entry->name;
        else if (hint && !hint->className.empty())
            app.localizedName = hint->className;
        return app;
    }

private:
    std::optional<DesktopEntry> application(std::string_view id) const {
        if (id.empty()) return std::nullopt;
        auto entry = entries_.findById(id);
        if (!entry || !entry->isApplication || entry->hidden) return std::nullopt;
        return entry;
    }

    std::optional<DesktopEntry> byStartupWmClass(const ClassHint& hint) {
        if (!all_) all_ = entries_.allEntries();
        for (const std::string* name : {&hint.className, &hint.instance}) {
            if (name->empty()) continue;
            for (const auto& entry : *all_)
                if (entry.isApplication && !entry.hidden && entry.startupWmClass == *name)
                    return entry;
        }
        return std::nullopt;
    }

    std::optional<std::string> sandboxId(std::int32_t processId) const {
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

    const X11Connection& x_;
    const DesktopEntries& entries_;
    const std::string& procRoot_;
    std::optional<std::vector<DesktopEntry>> all_;
};

}  // namespace

X11Workspace::X11Workspace(const DesktopEntries& entries, std::string display, std::string procRoot)
    : entries_(entries), display_(std::move(display)), procRoot_(std::move(procRoot)) {}

X11Workspace::~X11Workspace() = default;

const X11Connection* X11Workspace::connection() const {
    if (!connection_ || !connection_->isOpen())
        connection_ = std::make_unique<X11Connection>(display_);
    if (!connection_->isOpen()) return nullptr;
    connection_->dropQueuedEvents();
    return connection_.get();
}

std::optional<RunningApplication> X11Workspace::frontmostApplication() const {
    const auto* x = connection();
    if (!x) return std::nullopt;
    const xcb_window_t active = x->activeWindow();
    if (active == XCB_WINDOW_NONE) return std::nullopt;
    const auto pid = processIdOf(*x, active);
    if (!pid) return std::nullopt;
    const auto all = owners(*x);
    const auto owner = std::ranges::find(all, *pid, &Owner::processId);
    const Owner found =
        owner != all.end() ? *owner : Owner{*pid, active, isTaskbarWindow(*x, active)};
    return Identifier(*x, entries_, procRoot_).describe(found, active);
}

std::vector<RunningApplication> X11Workspace::runningApplications() const {
    const auto* x = connection();
    if (!x) return {};
    Identifier identifier(*x, entries_, procRoot_);
    std::vector<RunningApplication> result;
    for (const auto& owner : owners(*x)) result.push_back(identifier.describe(owner, owner.window));
    return result;
}

std::optional<RunningApplication> X11Workspace::runningApplication(std::int32_t processId) const {
    const auto* x = connection();
    if (!x) return std::nullopt;
    const auto all = owners(*x);
    const auto owner = std::ranges::find(all, processId, &Owner::processId);
    if (owner == all.end()) return std::nullopt;
    return Identifier(*x, entries_, procRoot_).describe(*owner, owner->window);
}

bool X11Workspace::openFolder(const std::string& folder) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(folder)));
}

}  // namespace marzipel
