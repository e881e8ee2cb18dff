// A window for the compositor tests: it names its application by the first argument (the
// Wayland app id), says "ready" once first painted, goes full screen on SIGUSR1 and back on
// SIGUSR2.

#include <QApplication>
#include <QSocketNotifier>
#include <QWidget>

#include <unistd.h>
#include <csignal>
#include <cstdio>
#include <utility>

namespace {

int signalPipe[2];

void forward(int signal) {
    const char byte = static_cast<char>(signal);
    (void)!write(signalPipe[1], &byte, 1);
}

class TestWindow : public QWidget {
protected:
    void paintEvent(QPaintEvent*) override {
        if (std::exchange(painted_, true)) return;
        std::puts("ready");
        std::fflush(stdout);
    }

private:
    bool painted_ = false;
};

}  // namespace

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    if (argc > 1) QGuiApplication::setDesktopFileName(QString::fromLocal8Bit(argv[1]));
    if (pipe(signalPipe) != 0) return 1;
    for (const int signal : {SIGUSR1, SIGUSR2}) std::signal(signal, forward);
    TestWindow window;
    window.resize(320, 200);
    QSocketNotifier notifier(signalPipe[0], QSocketNotifier::Read);
    QObject::connect(&notifier, &QSocketNotifier::activated, [&window] {
        char signal = 0;
        if (read(signalPipe[0], &signal, 1) != 1) return;
        if (signal == SIGUSR1) window.showFullScreen();
        if (signal == SIGUSR2) window.showNormal();
    });
    window.show();
    return QApplication::exec();
}
