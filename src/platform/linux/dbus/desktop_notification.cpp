#include "platform/linux/dbus/desktop_notification.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QString>
#include <QStringList>
#include <QVariantMap>

namespace marzipel {

void showDesktopNotification(const std::string& summary, const std::string& body) {
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.Notifications"),
                                                  QStringLiteral("/org/freedesktop/Notifications"),
                                                  QStringLiteral("org.freedesktop.Notifications"),
                                                  QStringLiteral("Notify"));
    message << QStringLiteral("Marzipel") << 0U << QStringLiteral("com.orsavelt.Marzipel")
            << QString::fromStdString(summary) << QString::fromStdString(body) << QStringList()
            << QVariantMap() << -1;
    message.setAutoStartService(true);
    QDBusConnection::sessionBus().asyncCall(message);
}

}  // namespace marzipel
