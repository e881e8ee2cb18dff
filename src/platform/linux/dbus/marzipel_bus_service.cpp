#include "platform/linux/dbus/marzipel_bus_service.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusVirtualObject>

#include "platform/linux/dbus/bus_name_owner.h"
#include "platform/linux/dbus/dbus_call.h"
#include "platform/linux/windows/window_report_reader.h"

namespace marzipel {
namespace {

const QString kName = QStringLiteral("com.orsavelt.Marzipel");
const QString kPath = QStringLiteral("/com/orsavelt/Marzipel");
const QString kInterface = QStringLiteral("com.orsavelt.Marzipel");
const QString kAccessDenied = QStringLiteral("org.freedesktop.DBus.Error.AccessDenied");
const QString kInvalidArgs = QStringLiteral("org.freedesktop.DBus.Error.InvalidArgs");
const QString kUnknownMethod = QStringLiteral("org.freedesktop.DBus.Error.UnknownMethod");

/// A user asking from a second start waits this long at most for the first to answer.
constexpr int kOpenSettingsTimeoutMs = 5000;

constexpr char kIntrospection[] = R"(  <interface name="com.orsavelt.Marzipel">
    <method name="OpenSettings"/>
    <method name="GetStatus">
      <arg name="status" type="s" direction="out"/>
    </method>
    <method name="About"/>
    <method name="Quit"/>
    <signal name="StatusChanged">
      <arg name="status" type="s"/>
    </signal>
    <method name="ReportActiveWindow">
      <arg name="window" type="a{sv}" direction="in"/>
    </method>
    <method name="ReportWindows">
      <arg name="windows" type="av" direction="in"/>
    </method>
  </interface>
)";

}  // namespace

class MarzipelBusService::Object final : public QDBusVirtualObject {
public:
    explicit Object(MarzipelBusService& service) : service_(service) {}

    QString introspect(const QString&) const override { return QLatin1String(kIntrospection); }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection&) override {
        return service_.handle(message);
    }

private:
    MarzipelBusService& service_;
};

MarzipelBusService::MarzipelBusService(SystemLog& log, QDBusConnection bus)
    : log_(log), bus_(std::move(bus)), object_(std::make_unique<Object>(*this)) {}

MarzipelBusService::~MarzipelBusService() {
    if (!registered_) return;
    bus_.unregisterObject(kPath);
    bus_.unregisterService(kName);
}

MarzipelBusService::Claim MarzipelBusService::claim() {
    if (!bus_.isConnected()) return Claim::noBus;
    // Served before the name is ours, so that no call reaches a name without its object.
    if (!bus_.registerVirtualObject(kPath, object_.get())) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not serve Marzipel's object on the session bus");
        return Claim::noBus;
    }
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        bus_.interface()->registerService(kName, QDBusConnectionInterface::DontQueueService,
                                          QDBusConnectionInterface::DontAllowReplacement);
    if (reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        registered_ = true;
        return Claim::owned;
    }
    bus_.unregisterObject(kPath);
    if (!reply.isValid()) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not ask for Marzipel's name on the session bus: " +
                       reply.error().message().toStdString());
        return Claim::noBus;
    }
    return Claim::taken;
}

bool MarzipelBusService::askOwnerToOpenSettings() {
    const QDBusMessage reply = bus_.call(
        QDBusMessage::createMethodCall(kName, kPath, kInterface, QStringLiteral("OpenSettings")),
        QDBus::Block, kOpenSettingsTimeoutMs);
    if (reply.type() == QDBusMessage::ReplyMessage) return true;
    log_.error(kAppLogSubsystem, kAppLogCategory,
               "The Marzipel already running did not open its settings: " + dbus::errorText(reply));
    return false;
}

void MarzipelBusService::acceptWindowReports(const BusNameOwner& reporter, WindowReports reports) {
    reporter_ = &reporter;
    reports_ = std::move(reports);
}

void MarzipelBusService::statusChanged(const std::string& status) {
    QDBusMessage signal =
        QDBusMessage::createSignal(kPath, kInterface, QStringLiteral("StatusChanged"));
    signal << QString::fromStdString(status);
    bus_.send(signal);
}

void MarzipelBusService::refuse(const QDBusMessage& call, const QString& errorName,
                                const std::string& why) {
    log_.error(kAppLogSubsystem, kAppLogCategory,
               "Refused " + call.member().toStdString() + " from " + call.service().toStdString() +
                   ": " + why);
    bus_.send(call.createErrorReply(errorName, QString::fromStdString(why)));
}

bool MarzipelBusService::handleTrayMenu(const QDBusMessage& call) {
    const QString& method = call.member();
    const std::function<void()>* command = method == QLatin1String("About")  ? &trayMenu_.about
                                           : method == QLatin1String("Quit") ? &trayMenu_.quit
                                                                             : nullptr;
    if (!command && method != QLatin1String("GetStatus")) return false;
    if (!call.signature().isEmpty()) {
        refuse(call, kInvalidArgs, method.toStdString() + " takes no arguments");
        return true;
    }
    if (!trayMenu_.status) {
        refuse(call, kUnknownMethod, "Marzipel shows no menu yet");
        return true;
    }
    if (!command) {
        bus_.send(call.createReply(QString::fromStdString(trayMenu_.status())));
        return true;
    }
    // Answered first: quitting may end the program before it could answer.
    bus_.send(call.createReply());
    (*command)();
    return true;
}

bool MarzipelBusService::handle(const QDBusMessage& call) {
    if (call.type() != QDBusMessage::MethodCallMessage || call.path() != kPath) return false;
    if (!call.interface().isEmpty() && call.interface() != kInterface) {
        refuse(call, kUnknownMethod, "unknown interface " + call.interface().toStdString());
        return true;
    }
    const QString& method = call.member();
    if (method == QLatin1String("OpenSettings")) {
        if (!call.signature().isEmpty()) {
            refuse(call, kInvalidArgs, "OpenSettings takes no arguments");
            return true;
        }
        bus_.send(call.createReply());
        if (openSettings_) openSettings_();
        return true;
    }
    if (handleTrayMenu(call)) return true;
    const bool active = method == QLatin1String("ReportActiveWindow");
    if (!active && method != QLatin1String("ReportWindows")) {
        refuse(call, kUnknownMethod, "unknown method");
        return true;
    }
    if (!reporter_ || reporter_->owner().isEmpty() || call.service() != reporter_->owner()) {
        refuse(call, kAccessDenied,
               "only " +
                   (reporter_ ? reporter_->name().toStdString() : std::string("a compositor")) +
                   " reports windows");
        return true;
    }
    // A sound report is answered before it is passed on; the rest are refused with the fault.
    const auto deliver = [&](auto read, const auto& handler) {
        if (!read.ok()) {
            refuse(call, kInvalidArgs, read.status().message());
            return;
        }
        bus_.send(call.createReply());
        if (handler) handler(std::move(read).value());
    };
    if (active) {
        deliver(WindowReportReader::readActive(call), reports_.active);
    } else {
        deliver(WindowReportReader::readWindows(call), reports_.windows);
    }
    return true;
}

}  // namespace marzipel
