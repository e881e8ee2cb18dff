#pragma once

#include <functional>
#include <optional>
#include <string>

namespace marzipel {

/// The window system's spaces, seen through one invisible window of the program's own that
/// joins every space but cannot follow onto a full-screen application's space. The window is
/// created with the monitor and lives as long as it does. Main thread only.
class SpaceMonitor {
public:
    virtual ~SpaceMonitor() = default;

    /// True while the monitor's window is on the space being shown, i.e. that space is not a
    /// full-screen application's. A platform without spaces answers for the active window.
    virtual bool isOnActiveSpace() const = 0;

    /// Calls `handler` on the main thread after every change of the active space, also one
    /// that lands on the same kind of space; an empty handler stops the calls. Replaces any
    /// earlier handler.
    virtual void setActiveSpaceChangedHandler(std::function<void()> handler) = 0;

    /// The main bundle's Info "LSUIElement" read as a boolean; false when the key is missing
    /// or the program has no bundle.
    virtual bool mainBundleIsAgent() const = 0;
    /// The main bundle's Info "CFBundleName", if it has one.
    virtual std::optional<std::string> mainBundleName() const = 0;
};

}  // namespace marzipel
