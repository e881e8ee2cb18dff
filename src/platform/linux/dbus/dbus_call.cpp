#include "platform/linux/dbus/dbus_call.h"

#include <QCoreApplication>
#include <QDBusArgument>
#include <QDBusVariant>
#include <algorithm>
#include <utility>
#include <vector>

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

QDBusMessage allPropertiesCall(const Address& at) {
    return methodCall(propertiesOf(at), QStringLiteral("GetAll"), {at.interface});
}

struct ReadAhead {
    QString bus;
    QDBusMessage message;
    QDBusPendingCall pending;
};

std::vector<ReadAhead>& readAheads() {
    static std::vector<ReadAhead> list;
    return list;
}

bool sameCall(const QDBusMessage& a, const QDBusMessage& b) {
    return a.service() == b.service() && a.path() == b.path() && a.interface() == b.interface() &&
           a.member() == b.member() && a.arguments() == b.arguments();
}

std::vector<ReadAhead>::iterator findReadAhead(const QDBusConnection& bus,
                                               const QDBusMessage& message) {
    return std::ranges::find_if(readAheads(), [&](const ReadAhead& read) {
        return read.bus == bus.name() && sameCall(read.message, message);
    });
}

/// The answer read ahead for `message`, if there is one; any other read ahead from the same
/// service is dropped, as `message` may change what it would say.
std::optional<QDBusPendingCall> takeReadAhead(const QDBusConnection& bus,
                                              const QDBusMessage& message) {
    std::vector<ReadAhead>& list = readAheads();
    const auto found = findReadAhead(bus, message);
    if (found != list.end()) {
        QDBusPendingCall pending = found->pending;
        list.erase(found);
        return pending;
    }
    std::erase_if(list, [&](const ReadAhead& read) {
        return read.bus == bus.name() && read.message.service() == message.service();
    });
    return std::nullopt;
}

// Whether a clearing of the read-aheads is posted and has not run yet.
bool clearPosted = false;

void clearReadAheads() {
    clearPosted = false;
    readAheads().clear();
}

void sendAhead(const QDBusConnection& bus, const QDBusMessage& message) {
    QCoreApplication* application = QCoreApplication::instance();
    if (!application) return;
    std::vector<ReadAhead>& list = readAheads();
    if (findReadAhead(bus, message) != list.end()) return;
    static QCoreApplication* clearsOnQuit = nullptr;
    if (clearsOnQuit != application) {
        // Posted events may not run once the loop has ended, and pending calls must not
        // outlive the application's bus connections.
        QObject::connect(application, &QCoreApplication::aboutToQuit, application, clearReadAheads);
        QObject::connect(application, &QObject::destroyed, [] {
            clearsOnQuit = nullptr;
            clearPosted = false;
        });
        clearsOnQuit = application;
    }
    if (!std::exchange(clearPosted, true)) {
        // Qt sends posted events once the current turn is over, before it next reads a socket:
        // an answer older than that is stale. One post at a time: under a stream of changes the
        // loop can take many turns to reach posted events, and they would pile up meanwhile.
        QMetaObject::invokeMethod(application, clearReadAheads, Qt::QueuedConnection);
    }
    list.push_back({bus.name(), message, bus.asyncCall(message, kCallTimeoutMs)});
}

QDBusMessage call(const QDBusConnection& bus, const QDBusMessage& message) {
    if (std::optional<QDBusPendingCall> pending = takeReadAhead(bus, message)) {
        return waitFor(*pending);
    }
    return bus.call(message, QDBus::Block, kCallTimeoutMs);
}

}  // namespace

QDBusMessage call(const QDBusConnection& bus, const Address& at, const QString& method,
                  const QVariantList& arguments) {
    return call(bus, methodCall(at, method, arguments));
}

QDBusPendingCall send(const QDBusConnection& bus, const Address& at, const QString& method,
                      const QVariantList& arguments) {
    const QDBusMessage message = methodCall(at, method, arguments);
    if (std::optional<QDBusPendingCall> pending = takeReadAhead(bus, message)) return *pending;
    return bus.asyncCall(message, kCallTimeoutMs);
}

QDBusMessage waitFor(QDBusPendingCall& pending) {
    pending.waitForFinished();
    return pending.reply();
}

void readAhead(const QDBusConnection& bus, const Address& at, const QString& method,
               const QVariantList& arguments) {
    sendAhead(bus, methodCall(at, method, arguments));
}

void readAheadAllProperties(const QDBusConnection& bus, const Address& at) {
    sendAhead(bus, allPropertiesCall(at));
}

Address busDaemon() { return kBusDaemon; }

Result<QVariant> propertyValue(const QDBusMessage& reply) {
    Result<QVariant> result = firstResult(reply);
    if (!result.ok()) return result;
    return result.value().value<QDBusVariant>().variant();
}

QDBusPendingCall sendPropertyGet(const QDBusConnection& bus, const Address& at,
                                 const QString& name) {
    return send(bus, propertiesOf(at), QStringLiteral("Get"), {at.interface, name});
}

Result<QVariant> firstResult(const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage) return Status::failure(errorText(reply));
    if (reply.arguments().isEmpty()) return Status::failure("the reply holds no value");
    return reply.arguments().constFirst();
}

Result<QVariantMap> allProperties(const QDBusConnection& bus, const Address& at) {
    Result<QVariant> result = firstResult(call(bus, allPropertiesCall(at)));
    if (!result.ok()) return result.status();
    if (!result.value().canConvert<QDBusArgument>()) {
        return Status::failure("the answer is not a map of properties");
    }
    return qdbus_cast<QVariantMap>(result.value().value<QDBusArgument>());
}

Result<QVariant> property(const QDBusConnection& bus, const Address& at, const QString& name) {
    return propertyValue(call(bus, propertiesOf(at), QStringLiteral("Get"), {at.interface, name}));
}

Status setProperty(const QDBusConnection& bus, const Address& at, const QString& name,
                   const QVariant& value) {
    const QDBusMessage reply = call(bus, propertiesOf(at), QStringLiteral("Set"),
                                    {at.interface, name, QVariant::fromValue(QDBusVariant(value))});
    if (reply.type() == QDBusMessage::ReplyMessage) return Status();
    return Status::failure(errorText(reply));
}

bool hasOwner(const QDBusConnection& bus, const QString& name) {
    return firstResult(call(bus, kBusDaemon, "NameHasOwner", {name})).valueOr(false).toBool();
}

std::optional<std::int32_t> processId(const QDBusConnection& bus, const QString& name) {
    Result<QVariant> result =
        firstResult(call(bus, kBusDaemon, "GetConnectionUnixProcessID", {name}));
    if (!result.ok()) return std::nullopt;
    return static_cast<std::int32_t>(result.value().toUInt());
}

std::string errorText(const QDBusMessage& reply) {
    return (reply.errorName() + QStringLiteral(": ") + reply.errorMessage()).toStdString();
}

}  // namespace marzipel::dbus
