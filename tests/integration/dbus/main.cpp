#include <gtest/gtest.h>

#include <QCoreApplication>
#include <cstdlib>
#include <iostream>
#include <memory>

#include "private_bus.h"
#include "support/temp_folder.h"
#include "test_world.h"

namespace marzipel::dbustest {
namespace {
TempFolder* scratch = nullptr;
}

const std::filesystem::path& scratchFolder() { return scratch->path(); }

}  // namespace marzipel::dbustest

// Qt and GLib read the bus addresses and the settings backend once, at first use: everything is
// pointed at this program's own buses and folders before anything else runs.
int main(int argc, char** argv) {
    using namespace marzipel::dbustest;
    marzipel::TempFolder folder;
    scratch = &folder;
    std::unique_ptr<PrivateBus> systemBus, sessionBus;
    try {
        systemBus = std::make_unique<PrivateBus>(folder.path() / "system-bus", true);
        sessionBus = std::make_unique<PrivateBus>(folder.path() / "session-bus", false);
    } catch (const std::exception& error) {
        std::cerr << "cannot start the private buses: " << error.what() << '\n';
        return 1;
    }
    setenv("DBUS_SYSTEM_BUS_ADDRESS", systemBus->address().c_str(), 1);
    setenv("DBUS_SESSION_BUS_ADDRESS", sessionBus->address().c_str(), 1);
    setenv("XDG_CONFIG_HOME", (folder.path() / "config").c_str(), 1);
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
    unsetenv("DISPLAY");

    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
