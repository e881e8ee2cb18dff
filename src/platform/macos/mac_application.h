#pragma once

#include <memory>

#include "base/notification_center.h"
#include "platform/application.h"

namespace marzipel {

/// NSApp. The application object itself is made by the toolkit (Qt) or, in a program without
/// one, on first use; this adapter only talks to it. The termination decision is not made here:
/// terminate() hands the request to NSApp, whose toolkit asks the program. Main thread only.
class MacApplication final : public Application {
public:
    /// Posts kApplicationDidFinishLaunchingNotification on `center`, with this object as sender,
    /// when NSApp has finished launching; make it before the run loop starts. `center` must
    /// outlive it.
    explicit MacApplication(NotificationCenter& center);
    ~MacApplication() override;
    MacApplication(const MacApplication&) = delete;
    MacApplication& operator=(const MacApplication&) = delete;

    void setActivationPolicy(ActivationPolicy policy) override;
    void activate() override;
    /// With an empty options dictionary.
    void showAboutPanel() override;
    OperatingSystemVersion operatingSystemVersion() const override;
    void terminate() override;

    /// Adds the action as a method of the class of NSApp's delegate, which stays the toolkit's
    /// own; only when NSApp has no delegate does it get a small one of ours.
    void installDelegateAction(std::string action, std::function<void()> handler) override;
    bool delegateRespondsTo(std::string_view action) const override;
    void sendActionToDelegate(std::string_view action) override;
    bool sendAction(std::string_view action) override;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

}  // namespace marzipel
