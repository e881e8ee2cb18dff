#include "private_bus.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <cstdlib>
#include <fstream>

#include "support/temp_folder.h"

namespace marzipel::dbustest {
namespace {

TempFolder* scratchRoot = nullptr;

/// Starts a bus of its own (dbus-daemon) that lets anyone own and call anything, standing in
/// for the system bus or the session bus, and points this process at it.
void startBus(Child& daemon, bool system) {
    const std::filesystem::path folder =
        scratchRoot->path() / (system ? "system-bus" : "session-bus");
    std::filesystem::create_directories(folder);
    const std::filesystem::path config = folder / "bus.conf";
    std::ofstream(config) << "<busconfig>\n  <listen>unix:dir=" << folder.string() << R"(</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow user="*"/>
    <allow own="*"/>
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
  </policy>
</busconfig>
)";
    const std::string address = startAndReadLine(
        daemon,
        {"dbus-daemon", "--nofork", "--print-address=1", "--config-file=" + config.string()});
    setenv(system ? "DBUS_SYSTEM_BUS_ADDRESS" : "DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
}

}  // namespace

const std::filesystem::path& scratchFolder() { return scratchRoot->path(); }

}  // namespace marzipel::dbustest

// Qt and GLib read the bus addresses and the settings backend once, at first use: everything is
// pointed at this program's own buses and folders before anything else runs.
int main(int argc, char** argv) {
    using namespace marzipel;
    TempFolder folder;
    dbustest::scratchRoot = &folder;
    Child systemBus, sessionBus;
    dbustest::startBus(systemBus, true);
    dbustest::startBus(sessionBus, false);
    setenv("XDG_CONFIG_HOME", (folder.path() / "config").c_str(), 1);
    setenv("GSETTINGS_BACKEND", "keyfile", 1);
    unsetenv("DISPLAY");

    QCoreApplication application(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
