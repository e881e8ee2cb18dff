#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>
#include <memory>
#include <set>

#include "platform/system_log.h"

class QDBusServiceWatcher;

namespace marzipel {

class ReportedWindows;

/// The UUID of Marzipel's GNOME Shell extension.
inline constexpr char kGnomeShellExtensionUuid[] = "marzipel@orsavelt.com";

/// GNOME's windows as Marzipel's own GNOME Shell extension reports them on the session bus,
/// pushed into `ReportedWindows`. Reports count only from the connection that owns
/// "org.gnome.Shell"; any other sender is refused, with one log line per sender. At start the
/// extension is switched on if the shell knows it; a shell that does not (it reads extensions
/// at login) gets the user a note to log out and in once. While the extension is off, no window
/// has focus. Main thread only.
class GnomeShellWindows final : public QObject {
    Q_OBJECT

public:
    /// `sink` and `log` must outlive this object. `uuid` names the extension to ask for.
    GnomeShellWindows(ReportedWindows& sink, SystemLog& log,
                      QDBusConnection bus = QDBusConnection::sessionBus(),
                      QString uuid = QString::fromLatin1(kGnomeShellExtensionUuid));
    ~GnomeShellWindows() override;

private Q_SLOTS:
    void onChanged(const QDBusMessage& message);
    void onExtensionStateChanged(const QString& uuid, const QVariantMap& info);

private:
    void start();
    void stateIs(double state, const QString& error);
    void readState();
    void report(const QDBusMessage& message);
    void stopSeeing();
    void say(const std::string& line, const std::string& summary, const std::string& body);

    ReportedWindows& sink_;
    SystemLog& log_;
    QDBusConnection bus_;
    QString uuid_;
    QString shellOwner_;
    std::unique_ptr<QDBusServiceWatcher> ownerWatcher_;
    std::set<QString> refusedSenders_;
    bool seeing_ = false;
};

}  // namespace marzipel
