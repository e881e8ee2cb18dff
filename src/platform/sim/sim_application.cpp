#include "platform/sim/sim_application.h"

namespace marzipel {

namespace {

const char* policyName(ActivationPolicy policy) {
    switch (policy) {
        case ActivationPolicy::regular:
            return "regular";
        case ActivationPolicy::accessory:
            return "accessory";
        case ActivationPolicy::prohibited:
            return "prohibited";
    }
    return "unknown";
}

}  // namespace

void SimApplication::setActivationPolicy(ActivationPolicy newPolicy) {
    policy = newPolicy;
    record(std::string("policy ") + policyName(newPolicy));
}

void SimApplication::terminate() {
    record("terminate");
    if (onTerminate) onTerminate();
}

void SimApplication::installDelegateAction(std::string action, std::function<void()> handler) {
    delegateActions[std::move(action)] = std::move(handler);
}

bool SimApplication::delegateRespondsTo(std::string_view action) const {
    return hasDelegate && delegateActions.contains(action);
}

void SimApplication::sendActionToDelegate(std::string_view action) {
    record("delegate " + std::string(action));
    runDelegateAction(action);
}

bool SimApplication::sendAction(std::string_view action) {
    record("send " + std::string(action));
    return runDelegateAction(action);
}

bool SimApplication::runDelegateAction(std::string_view action) {
    if (!delegateRespondsTo(action)) return false;
    // A copy: the handler may replace itself.
    auto handler = delegateActions.find(action)->second;
    if (handler) handler();
    return true;
}

void SimApplication::finishLaunching() {
    center_.post(kApplicationDidFinishLaunchingNotification, this);
}

void SimApplication::record(std::string call) {
    calls.push_back(std::move(call));
    if (onCall) onCall(calls.back());
}

}  // namespace marzipel
