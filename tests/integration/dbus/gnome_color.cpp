#include "gnome_color.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVariant>
#include <cmath>
#include <ctime>

namespace marzipel::dbustest {
namespace {

const QString kColor = QStringLiteral("org.gnome.SettingsDaemon.Color");

}  // namespace

bool colorProperty(const char* name) {
    QDBusMessage message = QDBusMessage::createMethodCall(kColor, "/org/gnome/SettingsDaemon/Color",
                                                          "org.freedesktop.DBus.Properties", "Get");
    message.setArguments({kColor, QString::fromLatin1(name)});
    const QDBusMessage reply = QDBusConnection::sessionBus().call(message, QDBus::Block, 5000);
    return reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

bool colorServiceUp() {
    const auto reply = QDBusConnection::sessionBus().interface()->isServiceRegistered(kColor);
    return reply.isValid() && reply.value();
}

double hoursFromNow(double offset) {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    localtime_r(&now, &local);
    return std::fmod(local.tm_hour + local.tm_min / 60.0 + offset + 24.0, 24.0);
}

}  // namespace marzipel::dbustest
