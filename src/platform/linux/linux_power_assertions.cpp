#include "platform/linux/linux_power_assertions.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <string>

#include "platform/linux/dbus_call.h"

namespace marzipel {
namespace {

constexpr std::uint32_t kGnomeInhibitIdle = 8;
const QString kMprisPrefix = QStringLiteral("org.mpris.MediaPlayer2.");

using Table = std::map<std::int32_t, PlistArray>;

void addAssertion(Table& table, std::int32_t processId, const std::string& name) {
    table[processId].push_back(PlistDictionary{
        {"AssertionTrueType", "PreventUserIdleDisplaySleep"},
        {"AssertType", "PreventUserIdleDisplaySleep"},
        {"AssertName", name},
        {"AssertPID", static_cast<std::int64_t>(processId)},
    });
}

/// logind's inhibitors: a(ssssuu) of what (colon-separated), who, why, mode, uid, pid.
bool addLogindInhibitors(Table& table) {
    const dbus::Address manager{"org.freedesktop.login1", "/org/freedesktop/login1",
                                "org.freedesktop.login1.Manager"};
    std::optional<QVariant> result =
        dbus::firstResult(dbus::call(QDBusConnection::systemBus(), manager, "ListInhibitors"));
    if (!result || !result->canConvert<QDBusArgument>()) return false;
    const QDBusArgument list = result->value<QDBusArgument>();
    if (list.currentSignature() != QLatin1String("a(ssssuu)")) return false;
    list.beginArray();
    while (!list.atEnd()) {
        QString what, who, why, mode;
        uint uid = 0, pid = 0;
        list.beginStructure();
        list >> what >> who >> why >> mode >> uid >> pid;
        list.endStructure();
        if (what.split(u':').contains(QLatin1String("idle"))) {
            addAssertion(table, static_cast<std::int32_t>(pid),
                         (who + QStringLiteral(": ") + why).toStdString());
        }
    }
    list.endArray();
    return true;
}

/// An inhibitor's application id is, for a GApplication, also its name on the session bus.
std::optional<std::int32_t> processOfAppId(const QDBusConnection& bus, QString appId) {
    if (appId.endsWith(QLatin1String(".desktop"))) appId.chop(8);
    if (appId.isEmpty()) return std::nullopt;
    return dbus::processId(bus, appId);
}

/// GNOME session-manager inhibitors; their process is found only where the app id leads to it.
bool addGnomeInhibitors(Table& table) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QString service = QStringLiteral("org.gnome.SessionManager");
    std::optional<QVariant> result = dbus::firstResult(
        dbus::call(bus, {service, "/org/gnome/SessionManager", service}, "GetInhibitors"));
    if (!result || !result->canConvert<QDBusArgument>()) return false;
    const QList<QDBusObjectPath> paths =
        qdbus_cast<QList<QDBusObjectPath>>(result->value<QDBusArgument>());
    for (const QDBusObjectPath& path : paths) {
        const dbus::Address inhibitor{service, path.path(), service + QStringLiteral(".Inhibitor")};
        std::optional<QVariant> flags = dbus::firstResult(dbus::call(bus, inhibitor, "GetFlags"));
        if (!flags || (flags->toUInt() & kGnomeInhibitIdle) == 0) continue;
        std::optional<QVariant> appId = dbus::firstResult(dbus::call(bus, inhibitor, "GetAppId"));
        if (!appId) continue;
        if (std::optional<std::int32_t> pid = processOfAppId(bus, appId->toString())) {
            addAssertion(table, *pid, appId->toString().toStdString());
        }
    }
    return true;
}

/// MPRIS players that say they are playing. Counts as an answer only when some player answered.
bool addPlayingPlayers(Table& table) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    std::optional<QStringList> names = dbus::names(bus);
    if (!names) return false;
    bool answered = false;
    for (const QString& name : *names) {
        if (!name.startsWith(kMprisPrefix)) continue;
        std::optional<QVariant> status =
            dbus::property(bus, {name, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player"},
                           "PlaybackStatus");
        if (!status) continue;
        answered = true;
        if (status->toString() != QLatin1String("Playing")) continue;
        if (std::optional<std::int32_t> pid = dbus::processId(bus, name)) {
            addAssertion(table, *pid, name.toStdString());
        }
    }
    return answered;
}

}  // namespace

PowerAssertionsReply LinuxPowerAssertions::assertionsByProcess() {
    Table table;
    const bool logind = addLogindInhibitors(table);
    const bool gnome = addGnomeInhibitors(table);
    const bool players = addPlayingPlayers(table);
    if (!logind && !gnome && !players) return {.result = 1, .table = std::nullopt};
    std::map<std::int32_t, PlistValue> assertions;
    for (auto& [processId, records] : table) assertions.emplace(processId, std::move(records));
    return {.result = 0, .table = std::move(assertions)};
}

}  // namespace marzipel
