#pragma once

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <functional>

namespace marzipel {

/// Runs the Qt event loop until `condition` holds or `timeout` has passed; true when it held.
/// The condition is also tried every 10 ms, for what changes outside this process's events, and
/// not again once it held (it may take what it found).
inline bool processEventsUntil(const std::function<bool()>& condition,
                               std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.start(timeout);
    QTimer tick;
    tick.start(std::chrono::milliseconds(10));
    bool held = condition();
    while (!held && deadline.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        held = condition();
    }
    return held;
}

}  // namespace marzipel
