#include "support/child_process.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <stdexcept>
#include <thread>

extern char** environ;

namespace marzipel {
namespace {

std::vector<char*> pointers(std::vector<std::string>& strings) {
    std::vector<char*> result;
    for (auto& s : strings) result.push_back(s.data());
    result.push_back(nullptr);
    return result;
}

}  // namespace

bool waitUntil(const std::function<bool()>& condition, std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        if (condition()) return true;
        if (std::chrono::steady_clock::now() >= deadline) return false;
        std::this_thread::sleep_for(10ms);
    }
}

Child::Child(const std::vector<std::string>& argv, const std::vector<std::string>& environment,
             int outputFd) {
    std::vector<std::string> arguments = argv;
    std::vector<std::string> variables;
    for (char** entry = environ; *entry; ++entry) {
        const std::string_view text(*entry);
        const std::string_view name = text.substr(0, text.find('=') + 1);
        const bool replaced =
            std::any_of(environment.begin(), environment.end(),
                        [&](const std::string& e) { return e.starts_with(name); });
        if (!replaced) variables.emplace_back(text);
    }
    variables.insert(variables.end(), environment.begin(), environment.end());
    const auto argp = pointers(arguments);
    const auto envp = pointers(variables);
    const int devNull = open("/dev/null", O_RDWR | O_CLOEXEC);
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ < 0) throw std::runtime_error("fork failed");
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() != parent) _exit(127);
        setpgid(0, 0);
        dup2(devNull, STDIN_FILENO);
        dup2(outputFd >= 0 ? outputFd : devNull, STDOUT_FILENO);
        if (!std::getenv("MARZIPEL_TEST_CHILD_STDERR")) dup2(devNull, STDERR_FILENO);
        execvpe(argp[0], argp.data(), envp.data());
        _exit(127);
    }
    close(devNull);
}

bool Child::running() const {
    siginfo_t info{};
    return pid_ > 0 && waitid(P_PID, pid_, &info, WEXITED | WNOHANG | WNOWAIT) == 0 &&
           info.si_pid == 0;
}

void Child::stop() {
    if (pid_ <= 0) return;
    kill(-pid_, SIGTERM);
    kill(pid_, SIGTERM);
    if (!waitUntil([this] { return waitpid(pid_, nullptr, WNOHANG) == pid_; }, 5s)) {
        kill(-pid_, SIGKILL);
        kill(pid_, SIGKILL);
        waitpid(pid_, nullptr, 0);
    }
    pid_ = -1;
}

std::string startAndReadLine(Child& child, const std::vector<std::string>& argv,
                             const std::vector<std::string>& environment,
                             std::chrono::milliseconds timeout) {
    int fds[2];
    if (pipe2(fds, O_CLOEXEC) != 0 || fcntl(fds[0], F_SETFL, O_NONBLOCK) != 0)
        throw std::runtime_error("pipe2 failed");
    child = Child(argv, environment, fds[1]);
    close(fds[1]);
    std::string line;
    char c = 0;
    // Ends at the line, at the end of the output (the program ended) or at the deadline.
    waitUntil(
        [&] {
            ssize_t got = 0;
            while (c != '\n' && (got = read(fds[0], &c, 1)) == 1)
                if (c != '\n') line.push_back(c);
            return c == '\n' || got == 0;
        },
        timeout);
    close(fds[0]);
    if (c != '\n' || line.empty()) throw std::runtime_error("no ready line from " + argv[0]);
    return line;
}

}  // namespace marzipel
