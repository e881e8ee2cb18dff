#pragma once

#include <QCoreApplication>
#include <QTimer>

#include <chrono>
#include <functional>

namespace marzipel {

/// Runs the Qt event loop until `condition` holds or `timeout` has passed; true when it held.
inline bool processEventsUntil(const std::function<bool()>& condition,
                               std::chrono::milliseconds timeout = std::chrono::seconds(5)) {
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.start(timeout);
    while (!condition() && deadline.isActive())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}

}  // namespace marzipel
