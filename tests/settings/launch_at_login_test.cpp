#include "settings/launch_at_login.h"

#include <gtest/gtest.h>

#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_login_item_service.h"

namespace marzipel {
namespace {

class LaunchAtLoginTest : public ::testing::Test {
protected:
    SimLoginItemService service;
    SimSystemLog log;
    LaunchAtLogin launchAtLogin{service, log};
};

TEST_F(LaunchAtLoginTest, TurningOnWhileOnRegistersAfreshAfterAnnouncing) {
    service.currentStatus = LoginItemStatus::enabled;
    std::vector<std::size_t> serviceCallsWhenAnnounced;
    auto announced = launchAtLogin.onWillChange(
        [&] { serviceCallsWhenAnnounced.push_back(service.calls.size()); });

    launchAtLogin.setEnabled(true);
    EXPECT_EQ(serviceCallsWhenAnnounced, (std::vector<std::size_t>{0}));
    EXPECT_EQ(service.calls, (std::vector<std::string>{"status", "unregister", "register"}));
    EXPECT_TRUE(log.entries.empty());

    // A failing preparatory unregister is neither reported nor a reason not to register.
    service.calls.clear();
    service.unregisterError = "Operation not permitted";
    launchAtLogin.setEnabled(true);
    EXPECT_EQ(service.calls, (std::vector<std::string>{"status", "unregister", "register"}));
    EXPECT_TRUE(log.entries.empty());
}

TEST_F(LaunchAtLoginTest, FailuresAreLoggedAndTheServiceStaysTheTruth) {
    for (LoginItemStatus status : {LoginItemStatus::requiresApproval, LoginItemStatus::notFound}) {
        service.currentStatus = status;
        EXPECT_FALSE(launchAtLogin.isEnabled());
    }
    service.currentStatus = LoginItemStatus::notRegistered;
    service.calls.clear();
    service.registerError = "The operation couldn't be completed.";
    launchAtLogin.setEnabled(true);
    EXPECT_EQ(service.calls, (std::vector<std::string>{"status", "register"}));
    EXPECT_FALSE(launchAtLogin.isEnabled());

    service.currentStatus = LoginItemStatus::enabled;
    service.unregisterError = "Operation not permitted";
    launchAtLogin.setEnabled(false);
    EXPECT_TRUE(launchAtLogin.isEnabled());

    EXPECT_EQ(log.entries,
              (std::vector<std::string>{
                  "com.quintavellor.LaunchAtLogin/main: Failed to enable launch at login: The "
                  "operation couldn't be completed.",
                  "com.quintavellor.LaunchAtLogin/main: Failed to disable launch at login: "
                  "Operation not permitted"}));
}

}  // namespace
}  // namespace marzipel
