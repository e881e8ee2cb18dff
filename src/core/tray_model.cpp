#include "core/tray_model.h"

#include "core/app_delegate.h"

namespace marzipel {

TrayModel::TrayModel(MarzipelState& state, const Workspace& workspace, Application& application)
    : state_(state), workspace_(workspace), application_(application) {
    recompute();
    // Any assignment, triggerValue's refresh toggle included, makes the tray look again.
    stateChanged_ = state_.onDidChange([this](MarzipelState::Field, bool) {
        recompute();
        statusChanged_.emit(statusText_);
    });
}

void TrayModel::recompute() {
    if (!state_.isActive()) {
        statusText_ = "Waiting for triggers...";
        return;
    }
    const auto frontmost = workspace_.frontmostApplication();
    if (frontmost && frontmost->localizedName) {
        statusText_ = "Active for " + *frontmost->localizedName;
    } else {
        statusText_ = "Active on this screen";
    }
}

void TrayModel::about() {
    application_.activate();
    application_.showAboutPanel();
}

void TrayModel::quit() {
    if (AppDelegate* delegate = AppDelegate::shared()) delegate->userWantsToQuit = true;
    application_.terminate();
}

}  // namespace marzipel
