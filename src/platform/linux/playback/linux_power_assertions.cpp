#include "platform/linux/playback/linux_power_assertions.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <array>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

constexpr std::uint32_t kGnomeInhibitIdle = 8;
const QString kMprisPrefix = QStringLiteral("org.mpris.MediaPlayer2.");

const dbus::Address kLogind{"org.freedesktop.login1", "/org/freedesktop/login1",
                            "org.freedesktop.login1.Manager"};
const dbus::Address kGnomeSession{"org.gnome.SessionManager", "/org/gnome/SessionManager",
                                  "org.gnome.SessionManager"};

/// The first question to each place, in the order their answers are read.
struct FirstQuestion {
    bool onSystemBus;
    dbus::Address at;
    const char* method;
};

const std::array<FirstQuestion, 3>& firstQuestions() {
    static const std::array<FirstQuestion, 3> questions{{
        {true, kLogind, "ListInhibitors"},
        {false, kGnomeSession, "GetInhibitors"},
        {false, dbus::busDaemon(), "ListNames"},
    }};
    return questions;
}

QDBusConnection busOf(const FirstQuestion& question) {
    return question.onSystemBus ? QDBusConnection::systemBus() : QDBusConnection::sessionBus();
}

QDBusPendingCall ask(const FirstQuestion& question) {
    return dbus::send(busOf(question), question.at, question.method);
}

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
Status addLogindInhibitors(Table& table, const QDBusMessage& reply) {
    const Result<QVariant> result = dbus::firstResult(reply);
    if (!result.ok()) return result.status();
    const QDBusArgument list = result.value().value<QDBusArgument>();
    if (!result.value().canConvert<QDBusArgument>() ||
        list.currentSignature() != QLatin1String("a(ssssuu)")) {
        return Status::failure("the inhibitors are not of type a(ssssuu)");
    }
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
    return Status();
}

/// An inhibitor's application id is, for a GApplication, also its name on the session bus.
std::optional<std::int32_t> processOfAppId(const QDBusConnection& bus, QString appId) {
    if (appId.endsWith(QLatin1String(".desktop"))) appId.chop(8);
    if (appId.isEmpty()) return std::nullopt;
    return dbus::processId(bus, appId);
}

/// GNOME session-manager inhibitors; their process is found only where the app id leads to it.
Status addGnomeInhibitors(Table& table, const QDBusMessage& reply) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QString service = kGnomeSession.service;
    const Result<QVariant> result = dbus::firstResult(reply);
    if (!result.ok()) return result.status();
    if (!result.value().canConvert<QDBusArgument>()) {
        return Status::failure("the inhibitors are not a list of object paths");
    }
    const QList<QDBusObjectPath> paths =
        qdbus_cast<QList<QDBusObjectPath>>(result.value().value<QDBusArgument>());
    // Every inhibitor is asked both questions before any answer is awaited, as the players are.
    std::vector<std::pair<QDBusPendingCall, QDBusPendingCall>> asked;
    for (const QDBusObjectPath& path : paths) {
        const dbus::Address inhibitor{service, path.path(), service + QStringLiteral(".Inhibitor")};
        asked.emplace_back(dbus::send(bus, inhibitor, QStringLiteral("GetFlags")),
                           dbus::send(bus, inhibitor, QStringLiteral("GetAppId")));
    }
    for (auto& [flagsCall, appIdCall] : asked) {
        const Result<QVariant> flags = dbus::firstResult(dbus::waitFor(flagsCall));
        if (!flags.ok() || (flags.value().toUInt() & kGnomeInhibitIdle) == 0) continue;
        const Result<QVariant> appId = dbus::firstResult(dbus::waitFor(appIdCall));
        if (!appId.ok()) continue;
        const QString name = appId.value().toString();
        if (std::optional<std::int32_t> pid = processOfAppId(bus, name)) {
            addAssertion(table, *pid, name.toStdString());
        }
    }
    return Status();
}

/// MPRIS players that say they are playing. Counts as an answer only when some player answered.
Status addPlayingPlayers(Table& table, const QDBusMessage& namesReply) {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const Result<QVariant> names = dbus::firstResult(namesReply);
    if (!names.ok()) return names.status();
    // Every player is asked before any answer is awaited: a desktop with a browser or two has
    // several, and a slow one should not hold up the rest.
    std::vector<std::pair<QString, QDBusPendingCall>> statuses;
    for (const QString& name : names.value().toStringList()) {
        if (!name.startsWith(kMprisPrefix)) continue;
        statuses.emplace_back(
            name, dbus::sendPropertyGet(
                      bus, {name, "/org/mpris/MediaPlayer2", "org.mpris.MediaPlayer2.Player"},
                      "PlaybackStatus"));
    }
    bool answered = false;
    for (auto& [name, pending] : statuses) {
        const Result<QVariant> status = dbus::propertyValue(dbus::waitFor(pending));
        if (!status.ok()) continue;
        answered = true;
        if (status.value().toString() != QLatin1String("Playing")) continue;
        if (std::optional<std::int32_t> pid = dbus::processId(bus, name)) {
            addAssertion(table, *pid, name.toStdString());
        }
    }
    return answered ? Status() : Status::failure("no media player answered");
}

}  // namespace

void LinuxPowerAssertions::readAhead() {
    for (const FirstQuestion& question : firstQuestions()) {
        dbus::readAhead(busOf(question), question.at, question.method);
    }
}

Result<AssertionsByProcess> LinuxPowerAssertions::assertionsByProcess() {
    // The three sources are asked at once; each answer is read when it is needed.
    const auto& questions = firstQuestions();
    std::array<QDBusPendingCall, 3> calls{ask(questions[0]), ask(questions[1]), ask(questions[2])};
    Table table;
    const Status logind = addLogindInhibitors(table, dbus::waitFor(calls[0]));
    const Status gnome = addGnomeInhibitors(table, dbus::waitFor(calls[1]));
    const Status players = addPlayingPlayers(table, dbus::waitFor(calls[2]));
    if (!logind.ok() && !gnome.ok() && !players.ok()) {
        return Status::failure("logind: " + logind.message() + "; GNOME session manager: " +
                               gnome.message() + "; media players: " + players.message());
    }
    AssertionsByProcess assertions;
    for (auto& [processId, records] : table) assertions.emplace(processId, std::move(records));
    return assertions;
}

}  // namespace marzipel
