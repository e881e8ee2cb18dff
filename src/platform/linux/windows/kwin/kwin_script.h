#pragma once

#include <QDBusConnection>
#include <QString>
#include <QTimer>
#include <optional>

#include "platform/system_log.h"

namespace marzipel {

/// A script of ours running inside KWin under the name "marzipel", through KWin's Scripting
/// interface on the session bus. A script left behind by a Marzipel that died is replaced.
/// Blocking calls with a deadline; main thread only, with Qt's event loop.
class KWinScript {
public:
    /// `path` is the script file; nothing happens before `start`.
    KWinScript(QString path, SystemLog& log, QDBusConnection bus = QDBusConnection::sessionBus());
    /// Unloads the script if this object started it.
    ~KWinScript();
    KWinScript(const KWinScript&) = delete;
    KWinScript& operator=(const KWinScript&) = delete;

    /// Unloads any script of the same name, loads ours and runs it. A KWin that is still
    /// starting (its name is on the bus, its scripting not yet) is asked again a few times on
    /// the event loop. The reason of a failure goes to the system log.
    void start();
    /// Unloads the script; nothing when it is not loaded.
    void stop();

private:
    void tryStart();

    QString path_;
    SystemLog& log_;
    QDBusConnection bus_;
    std::optional<int> id_;
    QTimer retry_;
    int attemptsLeft_ = 0;
};

}  // namespace marzipel
