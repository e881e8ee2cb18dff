#include "platform/linux/dbus_call.h"

#include <QDBusArgument>
#include <QDBusVariant>

namespace marzipel::dbus {
namespace {

const Address kBusDaemon{"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"};
const QString kPropertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");

Address propertiesOf(const Address& at) { return {at.service, at.path, kPropertiesInterface}; }

QDBusMessage methodCall(const Address& at, const QString& method, const QVariantList& arguments) {
    QDBusMessage message =
        QDBusMessage::createMethodCall(at.service, at.path, at.interface, method);
    message.setArguments(arguments);
    return message;
}

}  // namespace

QDBusMessage call(const QDBusConnection& bus, const Address& at, const QString& method,
                  const QVariantList& arguments) {
    return bus.call(methodCall(at, method, arguments), QDBus::Block, kCallTimeoutMs);
}

QDBusPendingCall send(const QDBusConnection& bus, const Address& at, const QString& method,
                      const QVariantList& arguments) {
    return bus.asyncCall(methodCall(at, method, arguments), kCallTimeoutMs);
}

QDBusMessage waitFor(QDBusPendingCall& pending) {
    pending.waitForFinished();
    return pending.reply();
}

Address busDaemon() { return kBusDaemon; }

std::optional<QVariant> propertyValue(const QDBusMessage& reply) {
    std::optional<QVariant> result = firstResult(reply);
    if (!result) return std::nullopt;
    return result->value<QDBusVariant>().variant();
}

QDBusPendingCall sendPropertyGet(const QDBusConnection& bus, const Address& at,
                                 const QString& name) {
    return send(bus, propertiesOf(at), QStringLiteral("Get"), {at.interface, name});
}

std::optional<QVariant> firstResult(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty()) {
        return std::nullopt;
    }
    return reply.arguments().constFirst();
}

std::optional<QVariantMap> allProperties(const QDBusConnection& bus, const Address& at) {
    std::optional<QVariant> result =
        firstResult(call(bus, propertiesOf(at), QStringLiteral("GetAll"), {at.interface}));
    if (!result || !result->canConvert<QDBusArgument>()) return std::nullopt;
    return qdbus_cast<QVariantMap>(result->value<QDBusArgument>());
}

std::optional<QVariant> property(const QDBusConnection& bus, const Address& at,
                                 const QString& name) {
    return propertyValue(call(bus, propertiesOf(at), QStringLiteral("Get"), {at.interface, name}));
}

QDBusMessage setProperty(const QDBusConnection& bus, const Address& at, const QString& name,
                         const QVariant& value) {
    return call(bus, propertiesOf(at), QStringLiteral("Set"),
                {at.interface, name, QVariant::fromValue(QDBusVariant(value))});
}

bool hasOwner(const QDBusConnection& bus, const QString& name) {
    std::optional<QVariant> result = firstResult(call(bus, kBusDaemon, "NameHasOwner", {name}));
    return result && result->toBool();
}

std::optional<std::int32_t> processId(const QDBusConnection& bus, const QString& name) {
    std::optional<QVariant> result =
        firstResult(call(bus, kBusDaemon, "GetConnectionUnixProcessID", {name}));
    if (!result) return std::nullopt;
    return static_cast<std::int32_t>(result->toUInt());
}

std::string errorText(const QDBusMessage& reply) {
    return (reply.errorName() + QStringLiteral(": ") + reply.errorMessage()).toStdString();
}

}  // namespace marzipel::dbus
