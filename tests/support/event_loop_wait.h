#pragma once

#include <QTest>

#include <chrono>
#include <functional>

namespace marzipel {

/// Runs the Qt event loop until `condition` holds or `timeout` has passed; true when it held.
/// The condition is not tried again once it held (it may take what it found).
inline bool processEventsUntil(const std::function<bool()>& condition,
                               std::chrono::milliseconds timeout = std::chrono::seconds(10)) {
    return QTest::qWaitFor(condition, static_cast<int>(timeout.count()));
}

}  // namespace marzipel
