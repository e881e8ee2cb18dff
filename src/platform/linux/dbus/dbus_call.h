#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVariantMap>
#include <cstdint>
#include <optional>
#include <string>

#include "base/status.h"

namespace marzipel::dbus {

/// Long enough for a busy service, short enough that a hung one cannot freeze the program.
inline constexpr int kCallTimeoutMs = 1500;

/// Where a method lives on a bus.
struct Address {
    QString service;
    QString path;
    QString interface;
};

/// One blocking call. A missing, failing or hung service gives an error reply, never an exception.
QDBusMessage call(const QDBusConnection& bus, const Address& at, const QString& method,
                  const QVariantList& arguments = {});

/// A call sent without waiting, so that several can be under way at once; `waitFor` gives its
/// reply as `call` would.
QDBusPendingCall send(const QDBusConnection& bus, const Address& at, const QString& method,
                      const QVariantList& arguments = {});
QDBusMessage waitFor(QDBusPendingCall& pending);

/// Sends a read whose answer the program expects to need in a moment: a blocking `call` or a
/// `send` of the same message takes that answer instead of asking again. An answer is taken once,
/// and only in the event loop's current turn, before any other call to that service (which
/// might change it). Main thread only, as are the calls that take the answer. Needs a Qt
/// application object; without one it does nothing.
void readAhead(const QDBusConnection& bus, const Address& at, const QString& method,
               const QVariantList& arguments = {});
/// `readAhead` of what `allProperties` asks.
void readAheadAllProperties(const QDBusConnection& bus, const Address& at);

/// The bus daemon itself, which answers for the names on the bus.
Address busDaemon();

/// The value of a successful reply to Properties.Get; fails as `firstResult` does.
Result<QVariant> propertyValue(const QDBusMessage& reply);
/// Sends Properties.Get for `name` without waiting.
QDBusPendingCall sendPropertyGet(const QDBusConnection& bus, const Address& at,
                                 const QString& name);

/// The first value of a successful reply. An error reply fails with its `errorText`, an empty
/// one with a message saying so.
Result<QVariant> firstResult(const QDBusMessage& reply);

/// Every property of an interface; fails as `firstResult` does, or when the answer is no map.
Result<QVariantMap> allProperties(const QDBusConnection& bus, const Address& at);

/// Fails as `propertyValue` does.
Result<QVariant> property(const QDBusConnection& bus, const Address& at, const QString& name);

/// A failure carries the `errorText` of the Set call's error reply.
Status setProperty(const QDBusConnection& bus, const Address& at, const QString& name,
                   const QVariant& value);

/// Whether some connection owns `name` right now; false when the bus itself does not answer.
bool hasOwner(const QDBusConnection& bus, const QString& name);

/// The process behind a bus name (unique or well known).
std::optional<std::int32_t> processId(const QDBusConnection& bus, const QString& name);

/// "name: message" of an error reply, for the system log.
std::string errorText(const QDBusMessage& reply);

}  // namespace marzipel::dbus
