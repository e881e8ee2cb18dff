#include "platform/macos/mac_brightness_service.h"

#import "platform/macos/core_brightness_objc.h"

namespace marzipel {
namespace {

NSString* const kCoreBrightnessPath = @"/System/Library/PrivateFrameworks/CoreBrightness.framework";

/// The framework's class named `name`, loading the framework the first time; Nil when either is
/// missing.
Class coreBrightnessClass(NSString* name) {
    static const BOOL loaded = [[NSBundle bundleWithPath:kCoreBrightnessPath] load];
    return loaded ? NSClassFromString(name) : Nil;
}

}  // namespace

struct MacBrightnessService::Impl {
    CBBlueLightClient* blueLight = nil;
    KeyboardBrightnessClient* keyboard = nil;
};

std::unique_ptr<MacBrightnessService> MacBrightnessService::create() {
    auto impl = std::make_unique<Impl>();
    impl->blueLight = [[coreBrightnessClass(@"CBBlueLightClient") alloc] init];
    impl->keyboard = [[coreBrightnessClass(@"KeyboardBrightnessClient") alloc] init];
    if (!impl->keyboard) return nullptr;
    return std::unique_ptr<MacBrightnessService>(new MacBrightnessService(std::move(impl)));
}

MacBrightnessService::MacBrightnessService(std::unique_ptr<Impl> impl) : impl_(std::move(impl)) {}

MacBrightnessService::~MacBrightnessService() = default;

Result<float> MacBrightnessService::brightnessForKeyboard(int keyboardId) {
    // CoreBrightness answers with a number whatever happens.
    const float level =
        [impl_->keyboard brightnessForKeyboard:static_cast<unsigned long long>(keyboardId)];
    return level;
}

void MacBrightnessService::setBrightness(float value, int keyboardId) {
    [impl_->keyboard setBrightness:value forKeyboard:static_cast<unsigned long long>(keyboardId)];
}

bool MacBrightnessService::hasBlueLightClient() const { return impl_->blueLight != nil; }

BlueLightStatus MacBrightnessService::getBlueLightStatus() {
    // The record is private and may grow in a later system; the spare room keeps a larger
    // record's write inside our own memory.
    struct {
        CBBlueLightStatus status;
        unsigned char spare[64];
    } record{};
    [impl_->blueLight getBlueLightStatus:&record.status];
    const CBBlueLightSchedule& schedule = record.status.schedule;
    BlueLightStatus status;
    status.enabled = record.status.enabled;
    status.mode = static_cast<BlueLightMode>(record.status.mode);
    status.from = {schedule.fromTime.hour, schedule.fromTime.minute};
    status.to = {schedule.toTime.hour, schedule.toTime.minute};
    return status;
}

void MacBrightnessService::setEnabled(bool enabled) { [impl_->blueLight setEnabled:enabled]; }

void MacBrightnessService::setMode(BlueLightMode mode) {
    [impl_->blueLight setMode:static_cast<int>(mode)];
}

}  // namespace marzipel
