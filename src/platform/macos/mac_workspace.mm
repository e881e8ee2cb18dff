#include "platform/macos/mac_workspace.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_bridge_objc.h"

namespace marzipel {
namespace {

std::optional<std::string> optionalText(NSString* text) {
    if (!text) return std::nullopt;
    return utf8String(text);
}

ActivationPolicy activationPolicy(NSApplicationActivationPolicy policy) {
    switch (policy) {
        case NSApplicationActivationPolicyRegular:
            return ActivationPolicy::regular;
        case NSApplicationActivationPolicyAccessory:
            return ActivationPolicy::accessory;
        case NSApplicationActivationPolicyProhibited:
            return ActivationPolicy::prohibited;
    }
    return ActivationPolicy::prohibited;
}

std::optional<RunningApplication> describe(NSRunningApplication* application) {
    if (!application) return std::nullopt;
    RunningApplication result;
    result.processId = application.processIdentifier;
    result.bundleIdentifier = optionalText(application.bundleIdentifier);
    result.localizedName = optionalText(application.localizedName);
    result.bundlePath = optionalText(application.bundleURL.path);
    result.activationPolicy = activationPolicy(application.activationPolicy);
    return result;
}

}  // namespace

std::optional<RunningApplication> MacWorkspace::frontmostApplication() const {
    return describe(NSWorkspace.sharedWorkspace.frontmostApplication);
}

std::vector<RunningApplication> MacWorkspace::runningApplications() const {
    std::vector<RunningApplication> applications;
    for (NSRunningApplication* application in NSWorkspace.sharedWorkspace.runningApplications) {
        if (auto running = describe(application)) {
            applications.push_back(std::move(*running));
        }
    }
    return applications;
}

std::optional<RunningApplication> MacWorkspace::runningApplication(std::int32_t processId) const {
    return describe([NSRunningApplication runningApplicationWithProcessIdentifier:processId]);
}

bool MacWorkspace::openFolder(const std::string& folder) {
    NSString* path = foundationString(folder);
    if (!path) return false;
    return [NSWorkspace.sharedWorkspace openURL:[NSURL fileURLWithPath:path isDirectory:YES]];
}

}  // namespace marzipel
