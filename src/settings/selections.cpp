#include "settings/selections.h"

#include <algorithm>

#include "settings/settings_manager.h"

namespace marzipel {

bool SelectedApps::isSelected(const AppItem& item) const {
    return std::ranges::find(value(), item) != value().end();
}

void SelectedApps::setSelected(const AppItem& item, bool on) {
    auto items = value();
    if (on) {
        items.push_back(item);
    } else {
        std::erase(items, item);
    }
    setValue(std::move(items));
}

SelectedFeatures::SelectedFeatures()
    : Published({Feature::keyboardBacklight, Feature::nightShift}) {}

bool SelectedFeatures::isSelected(Feature feature) const { return value().contains(feature); }

void SelectedFeatures::setSelected(Feature feature, bool on) {
    auto features = value();
    if (on) {
        features.insert(feature);
    } else {
        features.erase(feature);
    }
    setValue(std::move(features));
}

void commitWelcomeSelections(const SettingsManager& settings, const SelectedApps& apps,
                             const SelectedFeatures& features) {
    settings.enabledApps().set(std::set<AppItem>(apps.value().begin(), apps.value().end()));
    settings.enabledFeatures().set(features.value());
    settings.welcomeScreenShown().set(true);
}

}  // namespace marzipel
