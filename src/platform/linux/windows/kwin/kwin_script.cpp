#include "platform/linux/windows/kwin/kwin_script.h"

#include <QStringList>
#include <QXmlStreamReader>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

const QString kPluginName = QStringLiteral("marzipel");
const dbus::Address kScripting{"org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting"};

/// KWin takes its bus name before it serves its scripting: a few tenths of a second, and
/// seconds on a machine busy starting a whole session.
constexpr int kStartAttempts = 100;
constexpr std::chrono::milliseconds kRetryInterval{100};

/// Where KWin serves a loaded script: "/<id>" on 5.27, "/Scripting/Script<id>" on Plasma 6.
struct ScriptPath {
    QString parent;
    QString prefix;

    QString of(int id) const {
        return (parent == QLatin1String("/") ? parent : parent + QLatin1Char('/')) + prefix +
               QString::number(id);
    }
};
const ScriptPath kScriptPaths[] = {{QStringLiteral("/"), QString()},
                                   {QStringLiteral("/Scripting"), QStringLiteral("Script")}};

/// The objects KWin serves right under `parent`.
QStringList children(const QDBusConnection& bus, const QString& parent) {
    const Result<QVariant> xml = dbus::firstResult(dbus::call(
        bus, {kScripting.service, parent, "org.freedesktop.DBus.Introspectable"}, "Introspect"));
    QStringList names;
    if (!xml.ok()) return names;
    QXmlStreamReader reader(xml.value().toString());
    while (!reader.atEnd() && !reader.hasError()) {
        if (reader.readNext() == QXmlStreamReader::StartElement &&
            reader.name() == QLatin1String("node") &&
            reader.attributes().hasAttribute(QLatin1String("name")))
            names.append(reader.attributes().value(QLatin1String("name")).toString());
    }
    return names;
}

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
    // KWin numbers a script by how many are loaded, so after another script was unloaded ours
    // may get the number, and the object path, of one still loaded: its path then serves that
    // other script.
    const QStringList before =
        children(bus_, kScriptPaths[0].parent) + children(bus_, kScriptPaths[1].parent);
    const QDBusMessage loaded =
        dbus::call(bus_, kScripting, QStringLiteral("loadScript"), {path_, kPluginName});
    const Result<QVariant> id = dbus::firstResult(loaded);
    if (loaded.errorName() == QLatin1String("org.freedesktop.DBus.Error.UnknownObject") &&
        --attemptsLeft_ > 0) {
        retry_.start();
        return;
    }
    if (!id.ok() || id.value().toInt() < 0) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "KWin did not load the window script " + path_.toStdString() + ": " +
                       (id.ok() ? "it answered " + id.value().toString().toStdString()
                                : id.status().message()));
        return;
    }
    id_ = id.value().toInt();
    QDBusMessage ran;
    for (const ScriptPath& path : kScriptPaths) {
        if (before.contains(path.prefix + QString::number(*id_))) {
            // Not ours: Scripting.start() runs every loaded script that is not running yet.
            ran = dbus::call(bus_, kScripting, QStringLiteral("start"));
            break;
        }
        ran = dbus::call(bus_, {kScripting.service, path.of(*id_), "org.kde.kwin.Script"},
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
