#include "platform/macos/mac_space_monitor.h"

#import <AppKit/AppKit.h>

#include "platform/macos/foundation_bridge_objc.h"

/// Each fixed property is answered by its getter, so that setting it from outside changes
/// nothing.
@interface MarzipelFullScreenDetectorWindow : NSWindow
@property(nonatomic, copy) void (^activeSpaceChanged)(void);
- (instancetype)init NS_DESIGNATED_INITIALIZER;
- (instancetype)initWithContentRect:(NSRect)contentRect
                          styleMask:(NSWindowStyleMask)style
                            backing:(NSBackingStoreType)backingStoreType
                              defer:(BOOL)flag NS_UNAVAILABLE;
- (instancetype)initWithCoder:(NSCoder*)coder NS_UNAVAILABLE;
@end

@implementation MarzipelFullScreenDetectorWindow

- (instancetype)init {
    self = [super initWithContentRect:NSZeroRect
                            styleMask:NSWindowStyleMaskTitled | NSWindowStyleMaskClosable |
                                      NSWindowStyleMaskMiniaturizable | NSWindowStyleMaskResizable
                              backing:NSBackingStoreBuffered
                                defer:NO];
    if (!self) return nil;
    // ARC owns the window; a close must not release it a second time.
    self.releasedWhenClosed = NO;
    [NSWorkspace.sharedWorkspace.notificationCenter
        addObserver:self
           selector:@selector(activeSpaceDidChange:)
               name:NSWorkspaceActiveSpaceDidChangeNotification
             object:nil];
    return self;
}

- (void)dealloc {
    [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:self];
}

- (void)activeSpaceDidChange:(NSNotification*)notification {
    (void)notification;
    if (self.activeSpaceChanged) self.activeSpaceChanged();
}

- (CGFloat)alphaValue {
    return 0.5;
}

- (BOOL)canBecomeKeyWindow {
    return NO;
}

- (NSWindowCollectionBehavior)collectionBehavior {
    return NSWindowCollectionBehaviorCanJoinAllSpaces |
           NSWindowCollectionBehaviorFullScreenAuxiliary;
}

- (BOOL)ignoresMouseEvents {
    return YES;
}

- (NSWindowLevel)level {
    return 1000;
}

@end

namespace marzipel {

struct MacSpaceMonitor::Impl {
    MarzipelFullScreenDetectorWindow* window = nil;
};

MacSpaceMonitor::MacSpaceMonitor() : impl_(std::make_unique<Impl>()) {
    [NSApplication sharedApplication];
    impl_->window = [[MarzipelFullScreenDetectorWindow alloc] init];
}

MacSpaceMonitor::~MacSpaceMonitor() { impl_->window.activeSpaceChanged = nil; }

bool MacSpaceMonitor::isOnActiveSpace() const {
    return impl_->window ? impl_->window.onActiveSpace : true;
}

void MacSpaceMonitor::setActiveSpaceChangedHandler(std::function<void()> handler) {
    if (!handler) {
        impl_->window.activeSpaceChanged = nil;
        return;
    }
    impl_->window.activeSpaceChanged = ^{
      handler();
    };
}

bool MacSpaceMonitor::mainBundleIsAgent() const {
    id agent = NSBundle.mainBundle.infoDictionary[@"LSUIElement"];
    return [agent respondsToSelector:@selector(boolValue)] && [agent boolValue];
}

std::optional<std::string> MacSpaceMonitor::mainBundleName() const {
    id name = NSBundle.mainBundle.infoDictionary[@"CFBundleName"];
    if (![name isKindOfClass:NSString.class]) return std::nullopt;
    return utf8String(name);
}

}  // namespace marzipel
