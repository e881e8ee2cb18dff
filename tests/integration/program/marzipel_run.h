#pragma once

#include <memory>
#include <string>
#include <vector>

#include "integration/dbus/mock_service.h"
#include "support/child_process.h"
#include "support/temp_folder.h"

namespace marzipel::dbustest {

/// The test player's app id; the settings of a run name it as the one trigger app.
inline constexpr char kPlayer[] = "marzipel-test-player";

/// The marzipel program as a user runs it, on this test program's buses and scratch folder:
/// welcome done, the test player its trigger app, both actions on and the debug log on, a
/// keyboard backlight behind a stand-in UPower (levels 0 to 3, now 2).
class MarzipelRun {
public:
    /// Starts the program with `environment` added to the test's ("NAME=value"); returns once it
    /// has finished launching, else fails the test.
    explicit MarzipelRun(const std::vector<std::string>& environment);
    ~MarzipelRun() { program_.stop(); }

    Child& program() { return program_; }
    /// The levels the program set on the keyboard, oldest first.
    std::vector<int> keyboardLevelsSet() const;
    bool logHas(const std::string& line) const;

private:
    std::unique_ptr<MockService> keyboard_;
    TempFolder home_;
    std::string debugLog_;
    Child program_;
};

/// The user's GSettings keyfile, to see that a run leaves it as it was.
std::string gsettingsKeyfile();

}  // namespace marzipel::dbustest
