#include "integration/program/marzipel_run.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace marzipel::dbustest {
namespace {

const QString kKeyboard = QStringLiteral("/org/freedesktop/UPower/KbdBacklight");

std::string scratch(const std::string& relative) { return (scratchFolder() / relative).string(); }

}  // namespace

MarzipelRun::MarzipelRun(const std::vector<std::string>& environment) {
    keyboard_ = std::make_unique<MockService>("upower_kbd_backlight", "org.freedesktop.UPower",
                                              true, R"({"max": 3, "level": 2})");
    const auto documents = home_.path() / "Documents";
    std::filesystem::create_directories(documents);
    writeFile(scratch("config/marzipel/com.orsavelt.Marzipel.plist"),
              R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>
<key>welcomeScreenShown</key><true/>
<key>debugLoggingEnabled</key><true/>
<key>enabledApps</key><array><string>{"id":"marzipel-test-player","name":"Test Player"}</string></array>
<key>enabledFeatures</key><array><string>{"keyboardBacklight":{}}</string><string>{"nightShift":{}}</string></array>
</dict></plist>
)");
    debugLog_ = (documents / "Marzipel_debug.log").string();
    std::vector<std::string> variables{"HOME=" + home_.path().string(),
                                       "XDG_DATA_DIRS=/usr/local/share:/usr/share",
                                       "XDG_RUNTIME_DIR=" + scratch("home/runtime")};
    variables.insert(variables.end(), environment.begin(), environment.end());
    program_ = Child({MARZIPEL_PROGRAM}, variables);
    // The debug log is opened once the event loop runs, when the window source is in place.
    EXPECT_TRUE(waitUntil([&] { return std::filesystem::exists(debugLog_); }, 15s))
        << "marzipel did not finish launching";
}

std::vector<int> MarzipelRun::keyboardLevelsSet() const {
    std::vector<int> levels;
    for (const auto& arguments : keyboard_->calls(kKeyboard, "SetBrightness"))
        levels.push_back(arguments.value(0).toInt());
    return levels;
}

bool MarzipelRun::logHas(const std::string& line) const {
    return readFile(debugLog_).find(line + "\n") != std::string::npos;
}

std::string gsettingsKeyfile() { return readFile(scratch("config/glib-2.0/settings/keyfile")); }

}  // namespace marzipel::dbustest
