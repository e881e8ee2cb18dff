#pragma once

#include <sys/types.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace marzipel {

using namespace std::chrono_literals;

/// Polls `condition` until it holds or `timeout` has passed; true when it held.
bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout = 10s);

/// A program started by the test: ended (SIGTERM, then SIGKILL) when this goes away, and by the
/// kernel when the test process dies first.
class Child {
public:
    Child() = default;
    /// Runs `argv` with the test's environment plus `environment` ("NAME=value"); its standard
    /// output goes to `outputFd` when given, else to /dev/null.
    Child(const std::vector<std::string>& argv, const std::vector<std::string>& environment = {},
          int outputFd = -1);
    ~Child() { stop(); }
    Child(Child&& other) noexcept : pid_(other.pid_) { other.pid_ = -1; }
    Child& operator=(Child&& other) noexcept {
        stop();
        std::swap(pid_, other.pid_);
        return *this;
    }

    pid_t pid() const { return pid_; }
    /// False once the program has ended by itself.
    bool running() const;
    void stop();

private:
    pid_t pid_ = -1;
};

/// A program that writes one line when it is ready: started and read with a deadline.
/// Throws when no line comes.
std::string startAndReadLine(Child& child, const std::vector<std::string>& argv,
                             const std::vector<std::string>& environment = {},
                             std::chrono::milliseconds timeout = 10s);

}  // namespace marzipel
