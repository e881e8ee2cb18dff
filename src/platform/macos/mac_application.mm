#include "platform/macos/mac_application.h"

#import <AppKit/AppKit.h>
#import <objc/runtime.h>

#include <map>
#include <string>
#include <utility>

#include "platform/macos/foundation_bridge_objc.h"

/// The delegate of a program whose toolkit installs none.
@interface MarzipelApplicationDelegate : NSObject <NSApplicationDelegate>
@end

@implementation MarzipelApplicationDelegate
@end

namespace marzipel {
namespace {

using DelegateActions = std::map<std::string, std::function<void()>, std::less<>>;

SEL selectorNamed(std::string_view action) {
    NSString* name = foundationString(action);
    return name ? NSSelectorFromString(name) : nullptr;
}

NSApplicationActivationPolicy nativePolicy(ActivationPolicy policy) {
    switch (policy) {
        case ActivationPolicy::regular:
            return NSApplicationActivationPolicyRegular;
        case ActivationPolicy::accessory:
            return NSApplicationActivationPolicyAccessory;
        case ActivationPolicy::prohibited:
            return NSApplicationActivationPolicyProhibited;
    }
    return NSApplicationActivationPolicyRegular;
}

}  // namespace

struct MacApplication::Impl {
    id finishedLaunchingObserver = nil;
    /// Held here because NSApp holds its delegate weakly.
    MarzipelApplicationDelegate* ownDelegate = nil;
    /// Shared with the methods added to the delegate's class, which outlive this object.
    std::shared_ptr<DelegateActions> actions = std::make_shared<DelegateActions>();
};

MacApplication::MacApplication(NotificationCenter& center) : impl_(std::make_unique<Impl>()) {
    NotificationCenter* bus = &center;
    const void* sender = this;
    impl_->finishedLaunchingObserver = [NSNotificationCenter.defaultCenter
        addObserverForName:NSApplicationDidFinishLaunchingNotification
                    object:nil
                     queue:nil
                usingBlock:^(NSNotification* notification) {
                  (void)notification;
                  bus->post(kApplicationDidFinishLaunchingNotification, sender);
                }];
}

MacApplication::~MacApplication() {
    [NSNotificationCenter.defaultCenter removeObserver:impl_->finishedLaunchingObserver];
}

void MacApplication::setActivationPolicy(ActivationPolicy policy) {
    [NSApplication.sharedApplication setActivationPolicy:nativePolicy(policy)];
}

void MacApplication::activate() { [NSApplication.sharedApplication activateIgnoringOtherApps:YES]; }

void MacApplication::showAboutPanel() {
    [NSApplication.sharedApplication orderFrontStandardAboutPanelWithOptions:@{}];
}

OperatingSystemVersion MacApplication::operatingSystemVersion() const {
    const NSOperatingSystemVersion version = NSProcessInfo.processInfo.operatingSystemVersion;
    return OperatingSystemVersion{static_cast<int>(version.majorVersion),
                                  static_cast<int>(version.minorVersion),
                                  static_cast<int>(version.patchVersion)};
}

void MacApplication::terminate() { [NSApplication.sharedApplication terminate:nil]; }

void MacApplication::installDelegateAction(std::string action, std::function<void()> handler) {
    const SEL selector = selectorNamed(action);
    if (!selector) return;
    NSApplication* application = NSApplication.sharedApplication;
    if (!application.delegate) {
        impl_->ownDelegate = [[MarzipelApplicationDelegate alloc] init];
        application.delegate = impl_->ownDelegate;
    }
    // The method looks its handler up by name, so a new handler for an action already
    // installed needs no new method; a replaced method's block would never be freed.
    if (!impl_->actions->insert_or_assign(action, std::move(handler)).second) return;

    std::weak_ptr<DelegateActions> actions = impl_->actions;
    IMP method = imp_implementationWithBlock(^(id receiver, id sender) {
      (void)receiver;
      (void)sender;
      auto table = actions.lock();
      if (!table) return;
      auto found = table->find(action);
      if (found == table->end() || !found->second) return;
      // A copy, so that the handler may replace itself while it runs.
      std::function<void()> run = found->second;
      run();
    });
    class_replaceMethod([application.delegate class], selector, method, "v@:@");
}

bool MacApplication::delegateRespondsTo(std::string_view action) const {
    const SEL selector = selectorNamed(action);
    id<NSApplicationDelegate> delegate = NSApplication.sharedApplication.delegate;
    return selector && delegate && [delegate respondsToSelector:selector];
}

void MacApplication::sendActionToDelegate(std::string_view action) {
    if (!delegateRespondsTo(action)) return;
    NSApplication* application = NSApplication.sharedApplication;
    [application sendAction:selectorNamed(action) to:application.delegate from:nil];
}

bool MacApplication::sendAction(std::string_view action) {
    const SEL selector = selectorNamed(action);
    return selector && [NSApplication.sharedApplication sendAction:selector to:nil from:nil];
}

}  // namespace marzipel
