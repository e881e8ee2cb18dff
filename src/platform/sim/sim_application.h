#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "base/notification_center.h"
#include "platform/application.h"

namespace marzipel {

/// The program's application as a test runs it: records the calls made to it ("policy
/// accessory", "activate", "about", "terminate") and leaves terminating to `onTerminate`.
class SimApplication final : public Application {
public:
    explicit SimApplication(NotificationCenter& center) : center_(center) {}

    void setActivationPolicy(ActivationPolicy policy) override;
    void activate() override { record("activate"); }
    void showAboutPanel() override { record("about"); }
    OperatingSystemVersion operatingSystemVersion() const override { return version; }
    /// Records the request, then hands it to `onTerminate` (typically the application object's
    /// termination decision); without one, nothing more happens.
    void terminate() override;
    void installDelegateAction(std::string action, std::function<void()> handler) override;
    bool delegateRespondsTo(std::string_view action) const override;
    /// Records "delegate ACTION", then runs the installed handler.
    void sendActionToDelegate(std::string_view action) override;
    /// Records "send ACTION"; the responder chain is the delegate alone.
    bool sendAction(std::string_view action) override;

    /// Reports that launching has finished, as the platform does once.
    void finishLaunching();

    /// The last policy set; none until the program sets one.
    std::optional<ActivationPolicy> policy;
    OperatingSystemVersion version{14, 0, 0};
    /// Every call in order; `onCall` sees each as it comes.
    std::vector<std::string> calls;
    std::function<void(const std::string&)> onCall;
    /// What a termination request does beyond being recorded.
    std::function<void()> onTerminate;
    /// Whether the application has a delegate at all.
    bool hasDelegate = true;
    /// The delegate's actions by name.
    std::map<std::string, std::function<void()>, std::less<>> delegateActions;

private:
    void record(std::string call);
    /// Runs the delegate's handler for `action`; false when the delegate does not answer it.
    bool runDelegateAction(std::string_view action);

    NotificationCenter& center_;
};

}  // namespace marzipel
