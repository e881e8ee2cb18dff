#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "integration/dbus/mock_service.h"
#include "support/child_process.h"
#include "support/temp_folder.h"

namespace marzipel::programtest {

/// The trigger app of every run.
inline constexpr char kPlayer[] = "marzipel-test-player";

using dbustest::scratch;

/// Installs the desktop entry of `kPlayer`, "Test Player", in the scratch folder's data home.
void writePlayerEntry();

/// The marzipel program as a user runs it, on the test program's buses, with `kPlayer` as its
/// trigger app, both features on and the debug log on; ended when this goes away, and the test
/// fails then if a sanitizer build of any of its runs reported an error.
class MarzipelRun {
public:
    MarzipelRun() = default;
    ~MarzipelRun();
    MarzipelRun(const MarzipelRun&) = delete;
    MarzipelRun& operator=(const MarzipelRun&) = delete;

    /// Starts it with `environment` added and waits until it has launched; fails the test when
    /// it does not. A later start keeps the settings and what earlier runs saved, and begins a
    /// new debug log.
    void start(const std::vector<std::string>& environment);

    Child& process() { return process_; }
    /// The home folder of every run.
    const std::filesystem::path& home() const { return home_.path(); }
    /// The process that runs the program under the one started, which starts it again when it
    /// ends unexpectedly; waits for it; -1 when there is none.
    pid_t appPid() const;
    /// Whether the record of an activation and the marker of an active run are both saved: they
    /// are a moment after the switch, and an end before that finds the last ones.
    bool activeRunSaved() const;
    /// Whether the debug log has `line` as a whole line.
    bool logHas(const std::string& line) const;
    /// The debug log's messages, oldest first, without their times.
    std::vector<std::string> logLines() const;
    /// The environment of a run, with `environment` added.
    std::vector<std::string> environment(const std::vector<std::string>& environment) const;

private:
    TempFolder home_;
    std::string debugLog_;
    Child process_;
};

/// The user's GSettings keyfile, to see that a run leaves it as it was.
std::string gsettingsKeyfile();

}  // namespace marzipel::programtest
