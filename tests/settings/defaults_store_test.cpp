#include <gtest/gtest.h>

#include "platform/sim/sim_basics.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

TEST(DefaultsStoreTest, FreshStoreReadsDefaults) {
    auto store = std::make_shared<SimPreferencesStore>();
    SimConsole console;
    SettingsManager settings(store, console);
    EXPECT_EQ(settings.enabledFeatures().get(),
              (std::set<Feature>{Feature::keyboardBacklight, Feature::nightShift}));
}

}  // namespace
}  // namespace marzipel
