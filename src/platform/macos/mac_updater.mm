#include "platform/macos/mac_updater.h"

#import <Sparkle/Sparkle.h>

/// Sparkle's two delegates in one: how scheduled updates are announced, and the relaunch.
@interface MarzipelUpdaterDelegate : NSObject <SPUUpdaterDelegate, SPUStandardUserDriverDelegate>
- (instancetype)initWithGentleReminders:(BOOL)gentleReminders
                           willRelaunch:(std::function<void()>)willRelaunch
    NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_UNAVAILABLE;
@end

@implementation MarzipelUpdaterDelegate {
    BOOL _gentleReminders;
    std::function<void()> _willRelaunch;
}

- (instancetype)initWithGentleReminders:(BOOL)gentleReminders
                           willRelaunch:(std::function<void()>)willRelaunch {
    self = [super init];
    if (!self) return nil;
    _gentleReminders = gentleReminders;
    _willRelaunch = std::move(willRelaunch);
    return self;
}

- (BOOL)supportsGentleScheduledUpdateReminders {
    return _gentleReminders;
}

- (void)updaterWillRelaunchApplication:(SPUUpdater*)updater {
    (void)updater;
    if (_willRelaunch) _willRelaunch();
}

@end

namespace marzipel {
namespace {

bool hasText(id value) { return [value isKindOfClass:NSString.class] && [value length] > 0; }

}  // namespace

struct MacUpdater::Impl {
    std::function<void()> willRelaunch;
    /// Held here because Sparkle holds its delegates weakly.
    MarzipelUpdaterDelegate* delegate = nil;
    SPUStandardUpdaterController* controller = nil;
};

MacUpdater::MacUpdater(std::function<void()> willRelaunch) : impl_(std::make_unique<Impl>()) {
    impl_->willRelaunch = std::move(willRelaunch);
}

MacUpdater::~MacUpdater() = default;

bool MacUpdater::isAvailable() const {
    NSDictionary* info = NSBundle.mainBundle.infoDictionary;
    return hasText(info[@"SUFeedURL"]) && hasText(info[@"SUPublicEDKey"]);
}

void MacUpdater::start(bool supportsGentleScheduledUpdateReminders) {
    if (impl_->controller || !isAvailable()) return;
    impl_->delegate = [[MarzipelUpdaterDelegate alloc]
        initWithGentleReminders:supportsGentleScheduledUpdateReminders
                   willRelaunch:impl_->willRelaunch];
    impl_->controller =
        [[SPUStandardUpdaterController alloc] initWithStartingUpdater:YES
                                                      updaterDelegate:impl_->delegate
                                                   userDriverDelegate:impl_->delegate];
}

bool MacUpdater::automaticallyChecksForUpdates() const {
    return impl_->controller.updater.automaticallyChecksForUpdates;
}

void MacUpdater::setAutomaticallyChecksForUpdates(bool value) {
    impl_->controller.updater.automaticallyChecksForUpdates = value;
}

void MacUpdater::checkForUpdates() { [impl_->controller.updater checkForUpdates]; }

}  // namespace marzipel
