#include "platform/linux/kwin_script.h"

#include "platform/linux/dbus_call.h"

namespace marzipel {
namespace {

const QString kPluginName = QStringLiteral("marzipel");
const dbus::Address kScripting{"org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting"};

/// KWin takes its bus name before it serves its scripting: a few tenths of a second at most.
constexpr int kStartAttempts = 20;
constexpr std::chrono::milliseconds kRetryInterval{100};

}  // namespace

KWinScript::KWinScript(QString path, SystemLog& log, QDBusConnection bus)
    : path_(std::move(path)), log_(log), bus_(std::move(bus)) {
    retry_.setSingleShot(true);
    retry_.setInterval(kRetryInterval);
    QObject::connect(&retry_, &QTimer::timeout, [this] { tryStart(); });
}

KWinScript::~KWinScript() { stop(); }

void KWinScript::start() {
    attemptsLeft_ = kStartAttempts;
    tryStart();
}

void KWinScript::tryStart() {
    // A name that is still loaded cannot be loaded again (KWin answers -1).
    dbus::call(bus_, kScripting, QStringLiteral("unloadScript"), {kPluginName});
    const QDBusMessage loaded =
        dbus::call(bus_, kScripting, QStringLiteral("loadScript"), {path_, kPluginName});
    const std::optional<QVariant> id = dbus::firstResult(loaded);
    if (loaded.errorName() == QLatin1String("org.freedesktop.DBus.Error.UnknownObject") &&
        --attemptsLeft_ > 0) {
        retry_.start();
        return;
    }
    if (!id || id->toInt() < 0) {
        log_.error(
            kAppLogSubsystem, kAppLogCategory,
            "KWin did not load the window script " + path_.toStdString() + ": " +
                (id ? "it answered " + id->toString().toStdString() : dbus::errorText(loaded)));
        return;
    }
    id_ = id->toInt();
    // KWin 5.27 serves each loaded script at "/<id>", Plasma 6 at "/Scripting/Script<id>".
    QDBusMessage ran;
    for (const QString& path : {QStringLiteral("/%1"), QStringLiteral("/Scripting/Script%1")}) {
        ran = dbus::call(bus_, {kScripting.service, path.arg(*id_), "org.kde.kwin.Script"},
                         QStringLiteral("run"));
        if (ran.errorName() != QLatin1String("org.freedesktop.DBus.Error.UnknownObject")) break;
    }
    if (ran.type() != QDBusMessage::ReplyMessage) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "KWin did not run the window script: " + dbus::errorText(ran));
        stop();
    }
}

void KWinScript::stop() {
    retry_.stop();
    if (!id_) return;
    id_.reset();
    dbus::call(bus_, kScripting, QStringLiteral("unloadScript"), {kPluginName});
}

}  // namespace marzipel
