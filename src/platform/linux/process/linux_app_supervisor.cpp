#include "platform/linux/process/linux_app_supervisor.h"

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <string>

#include "platform/linux/process/restart_policy.h"

namespace marzipel {

namespace {

constexpr int kForwardedSignals[] = {SIGTERM, SIGINT, SIGHUP, SIGQUIT};

std::atomic<pid_t> runningChild{0};
std::atomic<int> quitSignal{0};

void forwardQuit(int signalNumber) {
    quitSignal = signalNumber;
    const pid_t child = runningChild;
    if (child > 0) ::kill(child, signalNumber);
}

void setQuitHandlers(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigemptyset(&action.sa_mask);
    for (const int signalNumber : kForwardedSignals) sigaction(signalNumber, &action, nullptr);
}

int waitFor(pid_t child) {
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    return status;
}

bool exitedWith(int status, int code) { return WIFEXITED(status) && WEXITSTATUS(status) == code; }

int exitStatus(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::string howItEnded(int status) {
    return WIFEXITED(status) ? "exited with status " + std::to_string(WEXITSTATUS(status))
                             : "was killed by signal " + std::to_string(WTERMSIG(status));
}

}  // namespace

void SupervisedRun::reportRunning() {
    if (runningPipe_ < 0) return;
    const char running = 1;
    [[maybe_unused]] const ssize_t written = ::write(runningPipe_, &running, 1);
    ::close(runningPipe_);
    runningPipe_ = -1;
}

std::variant<SupervisedRun, int> superviseRuns(SystemLog& systemLog) {
    const pid_t supervisor = ::getpid();
    RestartPolicy policy;
    setQuitHandlers(forwardQuit);
    while (quitSignal == 0) {
        int pipe[2] = {-1, -1};
        const pid_t child = ::pipe2(pipe, O_CLOEXEC) == 0 ? ::fork() : -1;
        if (child == 0) {
            setQuitHandlers(SIG_DFL);
            ::close(pipe[0]);
            // Ends with the supervisor, putting everything back as Quit does.
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (::getppid() != supervisor) std::raise(SIGTERM);
            return SupervisedRun(policy.restarted(), pipe[1]);
        }
        if (child < 0) {
            for (const int end : pipe)
                if (end >= 0) ::close(end);
            setQuitHandlers(SIG_DFL);
            systemLog.error(kAppLogSubsystem, kAppLogCategory,
                            "Could not start a supervised run; running without restarts");
            return SupervisedRun(policy.restarted(), -1);
        }
        ::close(pipe[1]);
        runningChild = child;
        // A request to quit that came while there was no child to pass it to.
        if (quitSignal != 0) ::kill(child, quitSignal);
        const int status = waitFor(child);
        runningChild = 0;
        char running = 0;
        const bool reportedRunning = ::read(pipe[0], &running, 1) == 1;
        ::close(pipe[0]);

        if (quitSignal != 0) return exitStatus(status);
        const RunEnd end{.exitedCleanly = exitedWith(status, 0),
                         .displayIsBack = exitedWith(status, kDisplayIsBackStatus),
                         .reportedRunning = reportedRunning};
        switch (policy.afterRun(end, std::chrono::steady_clock::now())) {
            case AfterRun::end:
                return exitStatus(status);
            case AfterRun::giveUp:
                systemLog.error(kAppLogSubsystem, kAppLogCategory,
                                "Marzipel " + howItEnded(status) +
                                    ", the fourth time within a minute; not starting it again");
                return exitStatus(status);
            case AfterRun::startAgainAfterFailure:
                systemLog.error(kAppLogSubsystem, kAppLogCategory,
                                "Marzipel " + howItEnded(status) + "; starting it again");
                break;
            case AfterRun::startAgain:
                break;
        }
    }
    return 128 + quitSignal;
}

}  // namespace marzipel
