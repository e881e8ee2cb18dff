#pragma once

#include <signal.h>

#include <QObject>
#include <functional>
#include <initializer_list>
#include <string>
#include <vector>

class QSocketNotifier;

namespace marzipel {

/// Turns the given signals into calls on the main thread's event loop. The signal handler only
/// writes the signal's number into a pipe, the one thing it may safely do; the loop reads it
/// and calls `onSignal`. One watcher at a time per process: a second replaces the first's
/// handlers. The handlers in place before are put back when the watcher goes.
class UnixSignalWatcher final : public QObject {
public:
    UnixSignalWatcher(std::initializer_list<int> signalNumbers, std::function<void(int)> onSignal,
                      QObject* parent = nullptr);
    ~UnixSignalWatcher() override;
    UnixSignalWatcher(const UnixSignalWatcher&) = delete;
    UnixSignalWatcher& operator=(const UnixSignalWatcher&) = delete;

private:
    void drain();

    std::function<void(int)> onSignal_;
    std::vector<int> signalNumbers_;
    std::vector<struct sigaction> previous_;
    int readEnd_ = -1;
    int writeEnd_ = -1;
    QSocketNotifier* notifier_ = nullptr;
};

/// "SIGTERM" for SIGTERM and so on; "signal N" for one without a name.
std::string signalName(int signalNumber);

}  // namespace marzipel
