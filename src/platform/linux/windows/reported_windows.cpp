#include "platform/linux/windows/reported_windows.h"

#include <QDesktopServices>
#include <QString>
#include <QUrl>

#include <algorithm>

namespace marzipel {
namespace {

std::optional<WindowIdentity> fullScreenWindow(const std::optional<ReportedWindow>& window) {
    if (!window || !window->fullScreen) return std::nullopt;
    return window->identity;
}

}  // namespace

ReportedWindows::ReportedWindows(const DesktopEntries& entries, std::string procRoot)
    : identifier_(entries, std::move(procRoot)) {}

void ReportedWindows::reportActive(std::optional<ReportedWindow> window) {
    // Sources repeat themselves: GNOME Shell, for one, signals one change for the window and
    // again for its display. Each decision must be made once, for a change that matters.
    const bool changed = fullScreenWindow(window) != fullScreenWindow(active_);
    active_ = std::move(window);
    if (!changed) return;
    if (active_ && active_->fullScreen && fullScreenLikely_) fullScreenLikely_();
    if (handler_) handler_();
}

void ReportedWindows::reportWindows(std::vector<WindowIdentity> windows) {
    windows_ = std::move(windows);
}

std::optional<RunningApplication> ReportedWindows::frontmostApplication() const {
    if (!active_ || active_->identity.processId <= 0) return std::nullopt;
    return identifier_.describe(active_->identity, true);
}

std::vector<RunningApplication> ReportedWindows::runningApplications() const {
    std::vector<RunningApplication> result;
    for (const WindowIdentity& window : windows_) {
        if (window.processId <= 0 ||
            std::ranges::count(result, window.processId, &RunningApplication::processId))
            continue;
        result.push_back(identifier_.describe(window, true));
    }
    return result;
}

std::optional<RunningApplication> ReportedWindows::runningApplication(
    std::int32_t processId) const {
    const WindowIdentity* window = windowOf(processId);
    if (!window) return std::nullopt;
    return identifier_.describe(*window, true);
}

const WindowIdentity* ReportedWindows::windowOf(std::int32_t processId) const {
    if (processId <= 0) return nullptr;
    const auto found = std::ranges::find(windows_, processId, &WindowIdentity::processId);
    if (found != windows_.end()) return &*found;
    if (active_ && active_->identity.processId == processId) return &active_->identity;
    return nullptr;
}

bool ReportedWindows::openFolder(const std::string& folder) {
    return QDesktopServices::openUrl(QUrl::fromLocalFile(QString::fromStdString(folder)));
}

}  // namespace marzipel
