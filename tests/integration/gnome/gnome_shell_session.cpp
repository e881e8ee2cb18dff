#include "integration/gnome/gnome_shell_session.h"

#include <gtest/gtest.h>

#include <QDBusArgument>
#include <filesystem>
#include <memory>
#include <stdexcept>

#include "integration/program/marzipel_run.h"
#include "platform/linux/dbus/dbus_call.h"
#include "platform/linux/windows/gnome/gnome_shell_windows.h"
#include "support/temp_folder.h"

namespace marzipel::dbustest {
namespace {

const dbus::Address kShell{"org.gnome.Shell", "/org/gnome/Shell", "org.gnome.Shell"};
const dbus::Address kExtensions{kShell.service, kShell.path, "org.gnome.Shell.Extensions"};
const QString kUuid = QString::fromLatin1(kGnomeShellExtensionUuid);
constexpr char kWaylandDisplay[] = "marzipel-test-gnome";
constexpr char kEvalUuid[] = "eval@marzipel.test";

/// Puts the shell in its unsafe mode, in the entry form of Marzipel's extension, which is the
/// one this shell loads.
void installEvalExtension(const std::string& folder) {
    writeFile(folder + "/metadata.json", R"({"uuid": "eval@marzipel.test", "name": "Eval",
        "description": "Eval for tests", "shell-version": ["43", "44", "45", "46", "47", "48",
        "49", "50"]})");
    const bool module =
        readFile(GNOME_SHELL_EXTENSION "/extension.js").find("export default") != std::string::npos;
    writeFile(folder + "/extension.js", module ? R"(
import {Extension} from 'resource:///org/gnome/shell/extensions/extension.js';
export default class extends Extension {
    enable() { global.context.unsafe_mode = true; }
    disable() {}
})"
                                               : R"(
function init() {
    return {enable() { global.context.unsafe_mode = true; }, disable() {}};
})");
}

QDBusMessage callExtensions(const QString& method) {
    return dbus::call(QDBusConnection::sessionBus(), kExtensions, method, {kUuid});
}

bool overviewShown() {
    const auto shown = dbus::property(QDBusConnection::sessionBus(), kShell, "OverviewActive");
    return shown.ok() && shown.value().toBool();
}

/// Whether the user's keys, as last written, name the extension under `key` of the shell's.
bool namedInUsersKeys(const std::string& key) {
    const std::string keys = readFile(scratch("config/glib-2.0/settings/keyfile"));
    const std::size_t line = keys.find("\n" + key + "=");
    return line != std::string::npos &&
           keys.substr(line, keys.find('\n', line + 1) - line).find(kGnomeShellExtensionUuid) !=
               std::string::npos;
}

/// The shell starts in the overview, where no window gets focus; it is shown once the start-up
/// animation has run.
void leaveOverview() {
    if (!waitUntil(overviewShown)) throw std::runtime_error("the overview did not show");
    (void)dbus::setProperty(QDBusConnection::sessionBus(), kShell, "OverviewActive", false);
    if (!waitUntil([] { return !overviewShown(); }))
        throw std::runtime_error("the overview stayed");
}

}  // namespace

GnomeShellSession::GnomeShellSession() {
    // Before the shell starts, so that it names the test player's windows by their entry.
    programtest::writePlayerEntry();
    const std::string extensions = scratch("data/gnome-shell/extensions/");
    const std::string extension = extensions + kGnomeShellExtensionUuid;
    std::filesystem::create_directories(extension);
    installEvalExtension(extensions + kEvalUuid);
    std::filesystem::copy(GNOME_SHELL_EXTENSION, extension,
                          std::filesystem::copy_options::recursive |
                              std::filesystem::copy_options::overwrite_existing);
    makeRuntimeFolder(scratch("home/runtime"));
    startServer(
        shell_,
        {GNOME_SHELL_PROGRAM, "--headless", "--wayland", "--no-x11", "--wayland-display",
         kWaylandDisplay, "--virtual-monitor", "1280x800"},
        {"XDG_RUNTIME_DIR=" + scratch("home/runtime"), "XDG_DATA_HOME=" + scratch("data"),
         "HOME=" + scratch("home")},
        [&] { return extensionState() != 0; }, 30s);
    dbus::call(QDBusConnection::sessionBus(), kExtensions, "EnableExtension", {kEvalUuid});
    if (!switchExtension(true)) throw std::runtime_error("the extension stayed off");
    if (!waitUntil([&] { return eval("1") == "1"; }))
        throw std::runtime_error("the shell does not answer Eval");
    leaveOverview();
}

std::vector<std::string> GnomeShellSession::clientEnvironment() const {
    return waylandClientEnvironment(scratch("home/runtime"), kWaylandDisplay);
}

Child GnomeShellSession::startWindow(const std::string& appId) const {
    return startTestWindow(appId, clientEnvironment(), 20s);
}

std::string GnomeShellSession::eval(const std::string& code) const {
    const QDBusMessage reply =
        dbus::call(QDBusConnection::sessionBus(), kShell, "Eval", {QString::fromStdString(code)});
    const QList<QVariant> result = reply.arguments();
    if (result.size() != 2 || !result[0].toBool()) return {};
    return result[1].toString().toStdString();
}

std::string GnomeShellSession::topBarMenu() const {
    return eval(std::string("Main.panel.statusArea['") + kGnomeShellExtensionUuid +
                "']?.menu._getMenuItems().map(item => item.label.text) ?? null");
}

int GnomeShellSession::extensionState() const {
    const auto info = dbus::firstResult(callExtensions(QStringLiteral("GetExtensionInfo")));
    if (!info.ok()) return 0;
    return qdbus_cast<QVariantMap>(info.value().value<QDBusArgument>()).value("state").toInt();
}

bool GnomeShellSession::switchExtension(bool on) const {
    callExtensions(on ? QStringLiteral("EnableExtension") : QStringLiteral("DisableExtension"));
    // The shell writes the user's keys after it says it is done: a test that compares them
    // must not see them change under it.
    return waitUntil([&] {
        return (extensionState() == 1) == on && namedInUsersKeys("enabled-extensions") == on &&
               namedInUsersKeys("disabled-extensions") != on;
    });
}

namespace {

/// Starts the shell once for every test of the program, and ends it before the buses go.
class Environment final : public ::testing::Environment {
public:
    void SetUp() override {
        try {
            session = std::make_unique<GnomeShellSession>();
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

}  // namespace marzipel::dbustest
