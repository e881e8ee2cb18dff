#include "platform/linux/windows/gnome/gnome_shell_windows.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>

#include "platform/linux/dbus/dbus_call.h"
#include "platform/linux/dbus/desktop_notification.h"
#include "platform/linux/windows/reported_windows.h"

namespace marzipel {
namespace {

const QString kShell = QStringLiteral("org.gnome.Shell");
const dbus::Address kExtensions{kShell, QStringLiteral("/org/gnome/Shell"),
                                QStringLiteral("org.gnome.Shell.Extensions")};
const dbus::Address kReport{kShell, QStringLiteral("/com/orsavelt/Marzipel/Shell"),
                            QStringLiteral("com.orsavelt.Marzipel.Shell")};
const QString kReportSignature = QStringLiteral("a(issb)a(iss)");

/// The shell's ExtensionState values that matter here.
enum ExtensionState { enabled = 1, disabled = 2, error = 3, outOfDate = 4, initialized = 6 };
constexpr int kUninstalled = 99;

bool isOff(int state) {
    return state == disabled || state == error || state == outOfDate || state == initialized ||
           state == kUninstalled;
}

WindowIdentity identity(int processId, const QString& appId, const QString& wmClass) {
    WindowIdentity window;
    window.processId = processId;
    if (!appId.isEmpty()) window.applicationId = appId.toStdString();
    // On Wayland the window's class is the app id it states for itself.
    window.instance = window.className = wmClass.toStdString();
    return window;
}

std::optional<ReportedWindow> focusedOf(const QVariant& value) {
    const QDBusArgument list = value.value<QDBusArgument>();
    std::optional<ReportedWindow> focused;
    list.beginArray();
    while (!list.atEnd()) {
        int processId = 0;
        QString appId, wmClass;
        bool fullScreen = false;
        list.beginStructure();
        list >> processId >> appId >> wmClass >> fullScreen;
        list.endStructure();
        focused = ReportedWindow{identity(processId, appId, wmClass), fullScreen};
    }
    list.endArray();
    return focused;
}

std::vector<WindowIdentity> windowsOf(const QVariant& value) {
    const QDBusArgument list = value.value<QDBusArgument>();
    std::vector<WindowIdentity> windows;
    list.beginArray();
    while (!list.atEnd()) {
        int processId = 0;
        QString appId, wmClass;
        list.beginStructure();
        list >> processId >> appId >> wmClass;
        list.endStructure();
        windows.push_back(identity(processId, appId, wmClass));
    }
    list.endArray();
    return windows;
}

}  // namespace

GnomeShellWindows::GnomeShellWindows(ReportedWindows& sink, SystemLog& log, QDBusConnection bus,
                                     QString uuid)
    : sink_(sink), log_(log), bus_(std::move(bus)), uuid_(std::move(uuid)) {
    ownerWatcher_ = std::make_unique<QDBusServiceWatcher>(kShell, bus_,
                                                          QDBusServiceWatcher::WatchForOwnerChange);
    QObject::connect(ownerWatcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, this,
                     [this](const QString&, const QString&, const QString& owner) {
                         shellOwner_ = owner;
                         if (owner.isEmpty()) {
                             stopSeeing();
                         } else {
                             start();
                         }
                     });
    // Any sender, so that a report from elsewhere can be seen and refused.
    bus_.connect(QString(), kReport.path, kReport.interface, QStringLiteral("Changed"), this,
                 SLOT(onChanged(QDBusMessage)));
    bus_.connect(kShell, kExtensions.path, kExtensions.interface,
                 QStringLiteral("ExtensionStateChanged"), this,
                 SLOT(onExtensionStateChanged(QString, QVariantMap)));
    const QDBusConnectionInterface* names = bus_.interface();
    if (const auto owner = names ? names->serviceOwner(kShell) : QDBusReply<QString>();
        owner.isValid()) {
        shellOwner_ = owner.value();
        start();
    } else {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "GNOME Shell is not on the session bus: full screen is not seen");
    }
}

GnomeShellWindows::~GnomeShellWindows() = default;

void GnomeShellWindows::start() {
    const Result<QVariant> result = dbus::firstResult(
        dbus::call(bus_, kExtensions, QStringLiteral("GetExtensionInfo"), {uuid_}));
    if (!result.ok()) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "GNOME Shell did not say whether it runs Marzipel's extension: " +
                       result.status().message());
        return;
    }
    const QVariantMap info = qdbus_cast<QVariantMap>(result.value().value<QDBusArgument>());
    if (info.isEmpty()) {
        say("GNOME Shell does not know Marzipel's extension yet, as it was installed during "
            "this session: log out and in once; until then full screen is not seen",
            "Log out and in once to let Marzipel see full screen",
            "GNOME Shell reads its extensions at login, and Marzipel's was installed after that. "
            "Until then Marzipel cannot see full screen.");
        return;
    }
    const int state = info.value(QStringLiteral("state")).toInt();
    if (state == disabled || state == initialized) {
        const QDBusMessage enabling =
            dbus::call(bus_, kExtensions, QStringLiteral("EnableExtension"), {uuid_});
        if (enabling.type() == QDBusMessage::ErrorMessage)
            log_.error(
                kAppLogSubsystem, kAppLogCategory,
                "GNOME Shell did not switch Marzipel's extension on: " + dbus::errorText(enabling));
        // The shell says when it is on, through ExtensionStateChanged.
        return;
    }
    if (state == enabled) {
        readState();
        return;
    }
    log_.error(kAppLogSubsystem, kAppLogCategory,
               "Marzipel's GNOME Shell extension cannot run (state " + std::to_string(state) +
                   "): " + info.value(QStringLiteral("error")).toString().toStdString());
}

void GnomeShellWindows::onExtensionStateChanged(const QString& uuid, const QVariantMap& info) {
    if (uuid != uuid_) return;
    const int state = info.value(QStringLiteral("state")).toInt();
    if (state == enabled && !seeing_) readState();
    if (!isOff(state) || !seeing_) return;
    say("Marzipel's GNOME Shell extension was switched off: full screen is not seen until it "
        "is switched on again",
        "Marzipel cannot see full screen any more",
        "Its GNOME Shell extension was switched off. Switch it on again in Extensions to let "
        "Marzipel see full screen.");
    stopSeeing();
}

void GnomeShellWindows::readState() {
    seeing_ = true;
    auto* watcher =
        new QDBusPendingCallWatcher(dbus::send(bus_, kReport, QStringLiteral("GetState")), this);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, this,
                     [this](QDBusPendingCallWatcher* finished) {
                         finished->deleteLater();
                         const QDBusMessage reply = finished->reply();
                         if (reply.type() == QDBusMessage::ReplyMessage) {
                             report(reply);
                         } else {
                             log_.error(kAppLogSubsystem, kAppLogCategory,
                                        "Marzipel's GNOME Shell extension did not report: " +
                                            dbus::errorText(reply));
                         }
                     });
}

void GnomeShellWindows::onChanged(const QDBusMessage& message) {
    if (message.service() != shellOwner_ || shellOwner_.isEmpty()) {
        if (refusedSenders_.insert(message.service()).second)
            log_.error(kAppLogSubsystem, kAppLogCategory,
                       "Refused a window report from " + message.service().toStdString() +
                           ", which is not GNOME Shell");
        return;
    }
    report(message);
}

void GnomeShellWindows::report(const QDBusMessage& message) {
    if (message.signature() != kReportSignature) return;
    std::optional<ReportedWindow> focused = focusedOf(message.arguments().at(0));
    sink_.reportWindows(windowsOf(message.arguments().at(1)));
    sink_.reportActive(std::move(focused));
}

void GnomeShellWindows::stopSeeing() {
    seeing_ = false;
    sink_.reportWindows({});
    sink_.reportActive(std::nullopt);
}

void GnomeShellWindows::say(const std::string& line, const std::string& summary,
                            const std::string& body) {
    log_.error(kAppLogSubsystem, kAppLogCategory, line);
    showDesktopNotification(summary, body);
}

}  // namespace marzipel
