#include "platform/linux/process/unix_signal_watcher.h"

#include <fcntl.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <cerrno>

namespace marzipel {
namespace {

volatile sig_atomic_t pipeWriteEnd = -1;

void writeSignalNumber(int signalNumber) {
    const int savedErrno = errno;
    const unsigned char byte = static_cast<unsigned char>(signalNumber);
    // A full pipe drops the byte: the loop already has signals waiting to be read.
    [[maybe_unused]] const ssize_t written = ::write(pipeWriteEnd, &byte, 1);
    errno = savedErrno;
}

}  // namespace

std::string signalName(int signalNumber) {
    switch (signalNumber) {
        case SIGTERM:
            return "SIGTERM";
        case SIGINT:
            return "SIGINT";
        case SIGHUP:
            return "SIGHUP";
    }
    return "signal " + std::to_string(signalNumber);
}

UnixSignalWatcher::UnixSignalWatcher(std::initializer_list<int> signalNumbers,
                                     std::function<void(int)> onSignal, QObject* parent)
    : QObject(parent), onSignal_(std::move(onSignal)), signalNumbers_(signalNumbers) {
    int ends[2];
    if (::pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) return;
    readEnd_ = ends[0];
    writeEnd_ = ends[1];
    pipeWriteEnd = writeEnd_;

    notifier_ = new QSocketNotifier(readEnd_, QSocketNotifier::Read, this);
    connect(notifier_, &QSocketNotifier::activated, this, [this] { drain(); });

    for (int signalNumber : signalNumbers_) {
        struct sigaction action {};
        action.sa_handler = writeSignalNumber;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        struct sigaction before {};
        ::sigaction(signalNumber, &action, &before);
        previous_.push_back(before);
    }
}

UnixSignalWatcher::~UnixSignalWatcher() {
    for (std::size_t i = 0; i < previous_.size(); ++i) {
        ::sigaction(signalNumbers_[i], &previous_[i], nullptr);
    }
    if (readEnd_ < 0) return;
    if (pipeWriteEnd == writeEnd_) pipeWriteEnd = -1;
    ::close(writeEnd_);
    ::close(readEnd_);
}

void UnixSignalWatcher::drain() {
    unsigned char bytes[16];
    ssize_t count;
    while ((count = ::read(readEnd_, bytes, sizeof bytes)) > 0) {
        for (ssize_t i = 0; i < count; ++i) {
            if (onSignal_) onSignal_(bytes[i]);
        }
    }
}

}  // namespace marzipel
