#pragma once

#include <functional>
#include <string>

#include "base/signal.h"
#include "base/subscription.h"
#include "core/marzipel_state.h"
#include "platform/application.h"
#include "platform/workspace.h"

namespace marzipel {

/// What the menu-bar tray shows and does, without the widgets: the status line, following the
/// state, and the About and Quit commands. Main thread only.
class TrayModel {
public:
    TrayModel(MarzipelState& state, const Workspace& workspace, Application& application);
    TrayModel(const TrayModel&) = delete;
    TrayModel& operator=(const TrayModel&) = delete;

    /// "Waiting for triggers..." while inactive; while active, "Active for " and the name of
    /// the app that was frontmost when the state last changed, else "Active on this screen".
    const std::string& statusText() const { return statusText_; }

    /// Calls `listener` with the status line after every recompute, i.e. after every
    /// assignment to the state, also when the text stays the same.
    [[nodiscard]] Subscription onStatusChanged(std::function<void(const std::string&)> listener) {
        return statusChanged_.connect(std::move(listener));
    }

    /// Brings the program to the front, then shows the About panel.
    void about();
    /// Tells the shared delegate, if there is one, that the user wants to quit, then asks the
    /// application to terminate.
    void quit();

private:
    void recompute();

    MarzipelState& state_;
    const Workspace& workspace_;
    Application& application_;
    std::string statusText_;
    Signal<const std::string&> statusChanged_;
    Subscription stateChanged_;
};

}  // namespace marzipel
