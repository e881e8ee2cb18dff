#pragma once

#include <functional>
#include <set>
#include <vector>

#include "base/signal.h"

#include "settings/app_item.h"
#include "settings/feature.h"

namespace marzipel {

class SettingsManager;

/// A value that tells its listeners before it changes.
template <typename T>
class Published {
public:
    explicit Published(T value = {}) : value_(std::move(value)) {}
    const T& value() const { return value_; }
    void setValue(T value) {
        willChange_.emit();
        value_ = std::move(value);
    }
    [[nodiscard]] Subscription onWillChange(std::function<void()> listener) {
        return willChange_.connect(std::move(listener));
    }

private:
    T value_;
    Signal<> willChange_;
};

/// The apps picked in the welcome window, in the order they were switched on.
class SelectedApps : public Published<std::vector<AppItem>> {
public:
    bool isSelected(const AppItem& item) const;
    /// On appends (even if already there); off removes every equal item.
    void setSelected(const AppItem& item, bool on);
};

/// The features picked in the welcome window; starts as the stored default.
class SelectedFeatures : public Published<std::set<Feature>> {
public:
    SelectedFeatures();
    bool isSelected(Feature feature) const;
    void setSelected(Feature feature, bool on);
};

/// Stores the welcome window's choices: the apps (equal ones collapse), the features, and that
/// the welcome has been shown.
void commitWelcomeSelections(const SettingsManager& settings, const SelectedApps& apps,
                             const SelectedFeatures& features);

}  // namespace marzipel
