#include "core/marzipel_system_client.h"

#include <gtest/gtest.h>

#include "platform/sim/sim_basics.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

// Its calls, and their debug log lines only while debug logging is on, are run end to end by
// the acceptance scenarios.
TEST(MarzipelSystemClientDeathTest, MissingKeyboardClientStopsTheProcess) {
    SimConsole console;
    SettingsManager settings(std::make_shared<SimPreferencesStore>(), console);
    EXPECT_DEATH(MarzipelSystemClient(nullptr, settings), "");
}

}  // namespace
}  // namespace marzipel
