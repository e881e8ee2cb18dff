#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "support/child_process.h"

namespace marzipel {

/// Makes `path` a runtime folder (XDG_RUNTIME_DIR) only `owner` (by default we) may enter.
void makeRuntimeFolder(const std::filesystem::path& path, std::optional<uid_t> owner = {});

/// Starts `server` and waits, handling Qt events, until `ready`; throws when it ends first or
/// `timeout` passes.
void startServer(Child& server, const std::vector<std::string>& argv,
                 const std::vector<std::string>& environment, const std::function<bool()>& ready,
                 std::chrono::milliseconds timeout = 10s);

/// A Wayland client's runtime folder, compositor `display` (a name in it or a path) and Qt
/// `platform`, as "NAME=value".
std::vector<std::string> waylandClientEnvironment(const std::filesystem::path& runtime,
                                                  const std::string& display,
                                                  const std::string& platform = "wayland");

/// Our test window (test_window_program.cpp) naming its application `appId`; returns once it
/// is painted, which may be before the compositor shows it, and throws when it is not.
Child startTestWindow(const std::string& appId, const std::vector<std::string>& environment,
                      std::chrono::milliseconds timeout = 10s);

/// Sends `signal` to `process` until `condition` holds, handling Qt events; false when it never
/// does. A Qt window asked back from full screen before the compositor's answer to going full
/// screen has reached it forgets to ask.
bool signalUntil(pid_t process, int signal, const std::function<bool()>& condition);

}  // namespace marzipel
