#include "platform/linux/brightness/kwin_night_color.h"

#include <QDateTime>
#include <QTime>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

const dbus::Address kPlasma6{"org.kde.KWin", "/org/kde/KWin/NightLight", "org.kde.KWin.NightLight"};
const dbus::Address kPlasma5{"org.kde.KWin", "/ColorCorrect", "org.kde.kwin.ColorCorrect"};

constexpr unsigned kNeutralTemperature = 6500;

/// KWin's modes: 0 automatic (located sunset to sunrise), 1 fixed location (sunset to sunrise),
/// 2 fixed timings, 3 constant (always on, no schedule).
BlueLightMode statusMode(unsigned kwinMode) {
    switch (kwinMode) {
        case 0:
        case 1:
            return BlueLightMode::sunsetToSunrise;
        case 2:
            return BlueLightMode::customSchedule;
        case 3:
            return BlueLightMode::alwaysOn;
        default:
            return BlueLightMode::byHand;
    }
}

BlueLightStatus::Time localTimeOf(qulonglong secondsSinceEpoch) {
    if (secondsSinceEpoch == 0) return {};
    const QTime time = QDateTime::fromSecsSinceEpoch(static_cast<qint64>(secondsSinceEpoch)).time();
    return {time.hour(), time.minute()};
}

const dbus::Address& addressOf(KWinNightColor::Generation generation) {
    return generation == KWinNightColor::Generation::plasma6 ? kPlasma6 : kPlasma5;
}

}  // namespace

std::optional<KWinNightColor::Generation> KWinNightColor::find() {
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (dbus::property(bus, kPlasma6, "available").ok()) return Generation::plasma6;
    if (dbus::property(bus, kPlasma5, "available").ok()) return Generation::plasma5;
    return std::nullopt;
}

BlueLightStatus KWinNightColor::status() {
    const dbus::Address& at = addressOf(generation_);
    const Result<QVariantMap> read = dbus::allProperties(QDBusConnection::sessionBus(), at);
    if (!read.ok()) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not read Night Color from KWin: " + read.status().message());
        return {};
    }
    const QVariantMap& properties = read.value();
    // "running" stays true through the day of a schedule; the filter shows only at night.
    // Plasma 5 says which half of the day it is only through the temperature it aims for.
    const bool night = properties.contains("daylight")
                           ? !properties.value("daylight").toBool()
                           : properties.value("targetTemperature").toUInt() < kNeutralTemperature;
    BlueLightStatus status;
    status.enabled =
        properties.value("available").toBool() && properties.value("running").toBool() && night;
    status.mode = statusMode(properties.value("mode").toUInt());
    if (status.mode == BlueLightMode::customSchedule) {
        const auto previous =
            localTimeOf(properties.value("previousTransitionDateTime").toULongLong());
        const auto next =
            localTimeOf(properties.value("scheduledTransitionDateTime").toULongLong());
        status.from = night ? previous : next;
        status.to = night ? next : previous;
    }
    return status;
}

void KWinNightColor::readAhead() {
    dbus::readAheadAllProperties(QDBusConnection::sessionBus(), addressOf(generation_));
}

void KWinNightColor::setEnabled(bool enabled) {
    if (enabled) {
        release();
        return;
    }
    if (cookie_) return;
    const dbus::Address& at = addressOf(generation_);
    const Result<QVariant> cookie =
        dbus::firstResult(dbus::call(QDBusConnection::sessionBus(), at, "inhibit"));
    if (cookie.ok()) {
        cookie_ = cookie.value().toUInt();
    } else {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not switch Night Color off through KWin: " + cookie.status().message());
    }
}

void KWinNightColor::setMode(BlueLightMode mode) {
    // The schedule is the user's and stays untouched. Choosing a schedule means letting it decide
    // again, which is what giving back our inhibition does; "no schedule" changes nothing.
    if (mode != BlueLightMode::byHand) release();
}

void KWinNightColor::release() {
    if (!cookie_) return;
    const dbus::Address& at = addressOf(generation_);
    QDBusMessage reply =
        dbus::call(QDBusConnection::sessionBus(), at, "uninhibit", {QVariant::fromValue(*cookie_)});
    cookie_.reset();
    if (reply.type() != QDBusMessage::ReplyMessage) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not switch Night Color back on through KWin: " + dbus::errorText(reply));
    }
}

}  // namespace marzipel
