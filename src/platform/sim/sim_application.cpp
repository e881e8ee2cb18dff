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

void SimApplication::finishLaunching() {
    center_.post(kApplicationDidFinishLaunchingNotification, this);
}

void SimApplication::record(std::string call) {
    calls.push_back(std::move(call));
    if (onCall) onCall(calls.back());
}

}  // namespace marzipel
