#include "platform/macos/mac_preferences_store.h"

#include <atomic>
#include <map>
#include <mutex>
#include <utility>

#include "platform/macos/foundation_bridge_objc.h"

namespace {
// Tells our registrations apart from any other observer of the same defaults object.
char observationContext;
}  // namespace

/// Hands each key-value notification for one key to a store observer, until stopped.
@interface MarzipelPreferencesObserver : NSObject
- (instancetype)initWithKey:(std::string)key
                   observer:(marzipel::PreferencesStore::Observer)observer
    NS_DESIGNATED_INITIALIZER;
- (instancetype)init NS_UNAVAILABLE;
@property(nonatomic, readonly) NSString* keyPath;
/// Drops every notification from now on, also one that key-value observing is about to hand
/// over.
- (void)stop;
@end

@implementation MarzipelPreferencesObserver {
    std::string _key;
    marzipel::PreferencesStore::Observer _observer;
    std::atomic<bool> _stopped;
}

- (instancetype)initWithKey:(std::string)key
                   observer:(marzipel::PreferencesStore::Observer)observer {
    self = [super init];
    if (!self) return nil;
    _keyPath = marzipel::foundationString(key);
    _key = std::move(key);
    _observer = std::move(observer);
    _stopped = false;
    return self;
}

- (void)stop {
    _stopped = true;
}

- (void)observeValueForKeyPath:(NSString*)keyPath
                      ofObject:(id)object
                        change:(NSDictionary<NSKeyValueChangeKey, id>*)change
                       context:(void*)context {
    if (context != &observationContext) {
        [super observeValueForKeyPath:keyPath ofObject:object change:change context:context];
        return;
    }
    // The observer may remove itself, releasing this object, before it returns.
    __attribute__((objc_precise_lifetime)) MarzipelPreferencesObserver* keepAlive = self;
    if (keepAlive->_stopped) return;
    marzipel::PreferencesChange delivered;
    delivered.key = _key;
    delivered.isPrior = [change[NSKeyValueChangeNotificationIsPriorKey] boolValue];
    delivered.oldValue = marzipel::plistValue(change[NSKeyValueChangeOldKey]);
    if (!delivered.isPrior) {
        delivered.newValue = marzipel::plistValue(change[NSKeyValueChangeNewKey]);
    }
    _observer(delivered);
}

@end

namespace marzipel {

struct MacPreferencesStore::Impl {
    explicit Impl(NSUserDefaults* defaults) : defaults(defaults) {}

    NSUserDefaults* defaults;
    std::mutex mutex;
    std::map<ObserverId, MarzipelPreferencesObserver*> observers;
    ObserverId nextObserverId = 1;

    void detach(MarzipelPreferencesObserver* observer) {
        [observer stop];
        if (!observer.keyPath) return;
        [defaults removeObserver:observer forKeyPath:observer.keyPath context:&observationContext];
    }
};

MacPreferencesStore::MacPreferencesStore()
    : impl_(std::make_unique<Impl>(NSUserDefaults.standardUserDefaults)) {}

MacPreferencesStore::MacPreferencesStore(const std::string& suiteName)
    : impl_(std::make_unique<Impl>(
          [[NSUserDefaults alloc] initWithSuiteName:foundationString(suiteName)])) {}

MacPreferencesStore::~MacPreferencesStore() {
    std::map<ObserverId, MarzipelPreferencesObserver*> observers;
    {
        std::lock_guard lock(impl_->mutex);
        observers.swap(impl_->observers);
    }
    for (auto& [id, observer] : observers) impl_->detach(observer);
}

std::optional<PlistValue> MacPreferencesStore::object(std::string_view key) const {
    NSString* name = foundationString(key);
    if (!name) return std::nullopt;
    return plistValue([impl_->defaults objectForKey:name]);
}

void MacPreferencesStore::setObject(std::string_view key, PlistValue value) {
    NSString* name = foundationString(key);
    if (!name) return;
    [impl_->defaults setObject:foundationObject(value) forKey:name];
}

void MacPreferencesStore::removeObject(std::string_view key) {
    NSString* name = foundationString(key);
    if (!name) return;
    [impl_->defaults removeObjectForKey:name];
}

void MacPreferencesStore::registerDefaults(const PlistDictionary& defaults) {
    [impl_->defaults registerDefaults:foundationObject(PlistValue(defaults))];
}

PreferencesStore::ObserverId MacPreferencesStore::addObserver(std::string key, Observer observer) {
    MarzipelPreferencesObserver* registered =
        [[MarzipelPreferencesObserver alloc] initWithKey:std::move(key)
                                                observer:std::move(observer)];
    ObserverId id = 0;
    {
        std::lock_guard lock(impl_->mutex);
        id = impl_->nextObserverId++;
        impl_->observers.emplace(id, registered);
    }
    // A key that is not UTF-8 names nothing that could change.
    if (!registered.keyPath) return id;
    // Registered outside the lock: a notification may already arrive on another thread.
    [impl_->defaults addObserver:registered
                      forKeyPath:registered.keyPath
                         options:NSKeyValueObservingOptionNew | NSKeyValueObservingOptionOld |
                                 NSKeyValueObservingOptionPrior
                         context:&observationContext];
    return id;
}

void MacPreferencesStore::removeObserver(ObserverId id) {
    MarzipelPreferencesObserver* removed = nil;
    {
        std::lock_guard lock(impl_->mutex);
        auto it = impl_->observers.find(id);
        if (it == impl_->observers.end()) return;
        removed = it->second;
        impl_->observers.erase(it);
    }
    impl_->detach(removed);
}

}  // namespace marzipel
