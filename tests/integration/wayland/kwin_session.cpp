#include "integration/wayland/kwin_session.h"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/linux/dbus/dbus_call.h"
#include "support/event_loop_wait.h"

namespace marzipel::waylandtest {
namespace {

const QString kKWin = QStringLiteral("org.kde.KWin");
const dbus::Address kScripting{"org.kde.KWin", "/Scripting", "org.kde.kwin.Scripting"};

bool kwinOnBus() { return dbus::hasOwner(QDBusConnection::sessionBus(), kKWin); }

/// KWin takes its name before it serves its scripting.
bool scriptingUp() {
    return dbus::call(QDBusConnection::sessionBus(), kScripting, "isScriptLoaded", {"none"})
               .type() == QDBusMessage::ReplyMessage;
}

}  // namespace

KWinSession::KWinSession() {
    // The packaged binary carries a file capability that a container may refuse to grant; a
    // copy carries none. KWin finds its platform plugin only under its own name.
    std::filesystem::create_directories(folder_.path() / "bin");
    std::filesystem::copy_file(KWIN_PROGRAM, folder_.path() / "bin/kwin_wayland");
    makeRuntimeFolder(folder_.path() / "runtime");
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (!config) throw std::runtime_error("XDG_CONFIG_HOME is not set");
    // Always on ("Constant"): the user's lasting setting, which Marzipel gives back after full
    // screen. Plasma 5 and 6 read it from the same group.
    std::filesystem::create_directories(config);
    std::ofstream(std::filesystem::path(config) / "kwinrc")
        << "[NightColor]\nActive=true\nMode=Constant\nNightTemperature=3500\n";
    ensureRunning();
}

std::vector<std::string> KWinSession::clientEnvironment(const std::string& platform) const {
    return waylandClientEnvironment(folder_.path() / "runtime", "marzipel-test", platform);
}

void KWinSession::kill() {
    ::kill(kwin_.pid(), SIGKILL);
    kwin_.stop();
    if (!processEventsUntil([] { return !kwinOnBus(); }))
        throw std::runtime_error("KWin stays on the bus");
}

void KWinSession::ensureRunning() {
    if (kwin_.running() && kwinOnBus()) return;
    // QPainter compositing: no GPU here.
    startServer(kwin_,
                {(folder_.path() / "bin/kwin_wayland").string(), "--virtual", "--width", "1280",
                 "--height", "800", "--socket", "marzipel-test"},
                {"XDG_RUNTIME_DIR=" + (folder_.path() / "runtime").string(), "KWIN_COMPOSE=Q"},
                scriptingUp);
}

Child KWinSession::openWindow(const std::string& appId) const {
    return startTestWindow(appId, clientEnvironment());
}

std::string KWinSession::runScript(const std::string& source, bool keepLoaded) {
    const std::string name = "marzipel-test-" + std::to_string(++scripts_);
    const std::filesystem::path file = folder_.path() / (name + ".js");
    std::ofstream(file) << source;
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const Result<QVariant> id =
        dbus::firstResult(dbus::call(bus, kScripting, "loadScript",
                                     {QString::fromStdString(file), QString::fromStdString(name)}));
    if (!id.ok() || id.value().toInt() < 0) throw std::runtime_error("KWin did not load " + name);
    // KWin 5.27 serves the script at "/<id>", Plasma 6 at "/Scripting/Script<id>".
    QDBusMessage ran;
    for (const QString& path : {QStringLiteral("/%1"), QStringLiteral("/Scripting/Script%1")}) {
        ran = dbus::call(
            bus, {kScripting.service, path.arg(id.value().toInt()), "org.kde.kwin.Script"}, "run");
        if (ran.errorName() != QLatin1String("org.freedesktop.DBus.Error.UnknownObject")) break;
    }
    if (ran.type() != QDBusMessage::ReplyMessage)
        throw std::runtime_error("KWin did not run " + name + ": " + dbus::errorText(ran));
    // KWin 5.27 numbers a script by how many are loaded: one left loaded would share its
    // object path with a script loaded after another one is unloaded.
    if (!keepLoaded) unloadScript(name);
    return name;
}

void KWinSession::unloadScript(const std::string& name) {
    dbus::call(QDBusConnection::sessionBus(), kScripting, "unloadScript",
               {QString::fromStdString(name)});
}

}  // namespace marzipel::waylandtest
