#include "integration/gnome/gnome_shell_session.h"

#include <gio/gio.h>
#include <gtest/gtest.h>

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <filesystem>
#include <stdexcept>

#include "platform/linux/gnome_shell_windows.h"
#include "support/temp_folder.h"

namespace marzipel::dbustest {
namespace {

const QString kShell = QStringLiteral("org.gnome.Shell");
const QString kUuid = QString::fromLatin1(kGnomeShellExtensionUuid);
constexpr char kWaylandDisplay[] = "marzipel-test-gnome";

std::string scratch(const std::string& relative) { return (scratchFolder() / relative).string(); }

QDBusMessage callShell(const QString& service, const QString& path, const QString& interface,
                       const QString& method, const QVariantList& arguments = {}) {
    QDBusMessage message = QDBusMessage::createMethodCall(service, path, interface, method);
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message, QDBus::Block, 5000);
}

QDBusMessage callExtensions(const QString& method) {
    return callShell(kShell, "/org/gnome/Shell", "org.gnome.Shell.Extensions", method, {kUuid});
}

bool overviewShown() {
    const QDBusMessage reply =
        callShell(kShell, "/org/gnome/Shell", "org.freedesktop.DBus.Properties", "Get",
                  {kShell, QStringLiteral("OverviewActive")});
    return reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

void switchOnInUsersKeys() {
    GSettings* settings = g_settings_new("org.gnome.shell");
    const char* const enabled[] = {kGnomeShellExtensionUuid, nullptr};
    g_settings_set_strv(settings, "enabled-extensions", enabled);
    g_settings_sync();
    g_object_unref(settings);
}

void install(const std::filesystem::path& extension, const std::filesystem::path& dataHome) {
    const auto target = dataHome / "gnome-shell/extensions" / extension.filename();
    std::filesystem::create_directories(target);
    std::filesystem::copy(extension, target,
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
}

}  // namespace

GnomeShellSession::GnomeShellSession(const std::vector<std::string>& desktopEntryIds) {
    for (const std::string& id : desktopEntryIds)
        writeFile(dataHome() + "/applications/" + id + ".desktop",
                  "[Desktop Entry]\nType=Application\nName=" + id + "\nExec=true\n");
    install(GNOME_SHELL_EXTENSION, dataHome());
    switchOnInUsersKeys();
    makeRuntimeFolder(scratch("home/runtime"));
    logind_ = std::make_unique<MockService>("logind", "org.freedesktop.login1", true);
    startServer(
        shell_,
        {GNOME_SHELL_PROGRAM, "--headless", "--wayland", "--no-x11", "--wayland-display",
         kWaylandDisplay, "--virtual-monitor", "1280x800"},
        {"XDG_RUNTIME_DIR=" + scratch("home/runtime"), "XDG_DATA_HOME=" + dataHome(),
         "HOME=" + scratch("home")},
        [&] { return extensionState() == 1; }, 30s);
    leaveOverview();
}

GnomeShellSession::~GnomeShellSession() {
    shell_.stop();
    logind_.reset();
}

std::vector<std::string> GnomeShellSession::clientEnvironment() const {
    std::vector<std::string> result =
        waylandClientEnvironment(scratch("home/runtime"), kWaylandDisplay);
    result.push_back("XDG_DATA_HOME=" + dataHome());
    return result;
}

std::string GnomeShellSession::displayVariable() const {
    return std::string("WAYLAND_DISPLAY=") + kWaylandDisplay;
}

std::string GnomeShellSession::dataHome() const { return scratch("data"); }

Child GnomeShellSession::startWindow(const std::string& appId) const {
    return startTestWindow(appId, clientEnvironment(), 20s);
}

int GnomeShellSession::extensionState() const {
    const QDBusMessage reply = callExtensions(QStringLiteral("GetExtensionInfo"));
    if (reply.type() != QDBusMessage::ReplyMessage) return 0;
    const auto info = qdbus_cast<QVariantMap>(reply.arguments().value(0).value<QDBusArgument>());
    return info.value(QStringLiteral("state")).toInt();
}

bool GnomeShellSession::switchExtension(bool on) const {
    callExtensions(on ? QStringLiteral("EnableExtension") : QStringLiteral("DisableExtension"));
    return waitUntil([&] { return (extensionState() == 1) == on; });
}

namespace {

/// Starts the shell once for every test of the program, and ends it before the buses go.
class Environment final : public ::testing::Environment {
public:
    void SetUp() override {
        try {
            session = std::make_unique<GnomeShellSession>(
                std::vector<std::string>{kListedApp, kOtherListedApp});
        } catch (const std::exception& error) {
            GTEST_FAIL() << error.what();
        }
    }
    void TearDown() override { session.reset(); }

    static inline std::unique_ptr<GnomeShellSession> session;
};

const auto* const environment = ::testing::AddGlobalTestEnvironment(new Environment);

}  // namespace

GnomeShellSession& gnomeShell() { return *Environment::session; }

/// The shell starts in the overview, where no window gets focus; a user leaves it with Escape,
/// here typed through Mutter's remote desktop.
void GnomeShellSession::leaveOverview() const {
    // It is shown once the start-up animation has run.
    if (!waitUntil(overviewShown)) throw std::runtime_error("the overview did not show");
    const QString service = QStringLiteral("org.gnome.Mutter.RemoteDesktop");
    const QDBusMessage created = callShell(service, "/org/gnome/Mutter/RemoteDesktop", service,
                                           QStringLiteral("CreateSession"));
    const QString session = created.arguments().value(0).value<QDBusObjectPath>().path();
    const QString interface = service + QStringLiteral(".Session");
    constexpr unsigned kEscape = 1;  // evdev KEY_ESC
    callShell(service, session, interface, QStringLiteral("Start"));
    callShell(service, session, interface, QStringLiteral("NotifyKeyboardKeycode"),
              {kEscape, true});
    callShell(service, session, interface, QStringLiteral("NotifyKeyboardKeycode"),
              {kEscape, false});
    const bool left = waitUntil([] { return !overviewShown(); });
    callShell(service, session, interface, QStringLiteral("Stop"));
    if (!left) throw std::runtime_error("the overview stayed");
}

}  // namespace marzipel::dbustest
