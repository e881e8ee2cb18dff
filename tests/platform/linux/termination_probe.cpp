// A small program on LinuxApplication for the termination tests: prints "ready" once the event
// loop runs, "log: MESSAGE" for each system-log entry, "will-terminate" for each will-terminate
// notification and "ended" when the run is over. Its termination decision always refuses, so
// that only the signals can end it.

#include <QApplication>
#include <cstdio>
#include <string>

#include "base/notification_center.h"
#include "platform/linux/linux_application.h"

namespace {

void say(const std::string& line) {
    std::printf("%s\n", line.c_str());
    std::fflush(stdout);
}

class PrintingSystemLog final : public marzipel::SystemLog {
public:
    void error(std::string_view, std::string_view, std::string_view message) override {
        say("log: " + std::string(message));
    }
};

}  // namespace

int main(int argc, char* argv[]) {
    using namespace marzipel;
    QApplication qtApplication(argc, argv);
    NotificationCenter center;
    PrintingSystemLog systemLog;
    LinuxApplication application(center, systemLog, [] { return false; });
    const Subscription launched =
        center.subscribe(kApplicationDidFinishLaunchingNotification, nullptr,
                         [](const Notification&) { say("ready"); });
    const Subscription quitting =
        center.subscribe(kApplicationWillTerminateNotification, nullptr,
                         [](const Notification&) { say("will-terminate"); });
    const int status = QApplication::exec();
    say("ended");
    return status;
}
