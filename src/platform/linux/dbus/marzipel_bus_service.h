#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/windows/reported_windows.h"
#include "platform/system_log.h"

namespace marzipel {

class BusNameOwner;

/// Marzipel's own name on the session bus, "com.orsavelt.Marzipel", with one object,
/// "/com/orsavelt/Marzipel", interface "com.orsavelt.Marzipel":
/// - OpenSettings(): anyone may ask (a second start of Marzipel does);
/// - GetStatus() -> s, About(), Quit() and the signal StatusChanged(s): the tray's menu, for a
///   panel that shows it instead of a tray (Marzipel's GNOME Shell extension does); anyone may
///   ask, as anyone of the session may end Marzipel anyway;
/// - ReportActiveWindow(a{sv}) and ReportWindows(av): from the compositor's script only,
///   read by `WindowReportReader`; any other caller gets AccessDenied.
/// A refused call gets an error reply and one line in the system log. Main thread only.
class MarzipelBusService {
public:
    enum class Claim { owned, taken, noBus };

    /// The handlers of the window reports, called on the main thread.
    struct WindowReports {
        std::function<void(std::optional<ReportedWindow>)> active;
        std::function<void(std::vector<WindowIdentity>)> windows;
    };

    explicit MarzipelBusService(SystemLog& log,
                                QDBusConnection bus = QDBusConnection::sessionBus());
    ~MarzipelBusService();
    MarzipelBusService(const MarzipelBusService&) = delete;
    MarzipelBusService& operator=(const MarzipelBusService&) = delete;

    /// Serves the object and asks for the name without queueing; `taken` when another
    /// connection holds it, `noBus` without a session bus. Only `owned` keeps the object.
    Claim claim();
    /// Asks the Marzipel that holds the name to open its settings window; blocks for at most
    /// a few seconds. False, with the reason in the system log, when it did not answer.
    bool askOwnerToOpenSettings();

    void setOpenSettingsHandler(std::function<void()> handler) {
        openSettings_ = std::move(handler);
    }

    /// The tray's menu as a panel outside Marzipel shows it.
    struct TrayMenu {
        std::function<std::string()> status;
        std::function<void()> about;
        std::function<void()> quit;
    };
    /// Answers GetStatus, About and Quit with `menu`; an empty menu refuses them again.
    void setTrayMenu(TrayMenu menu) { trayMenu_ = std::move(menu); }
    /// Tells whoever listens that the menu's status line now reads `status`.
    void statusChanged(const std::string& status);
    /// Accepts window reports from the current owner of `reporter`, which must outlive this
    /// service.
    void acceptWindowReports(const BusNameOwner& reporter, WindowReports reports);
    /// Refuses window reports from anyone again.
    void refuseWindowReports() {
        reporter_ = nullptr;
        reports_ = {};
    }

    const QDBusConnection& bus() const { return bus_; }

private:
    class Object;

    void refuse(const QDBusMessage& call, const QString& errorName, const std::string& why);
    bool handle(const QDBusMessage& call);
    bool handleTrayMenu(const QDBusMessage& call);

    SystemLog& log_;
    QDBusConnection bus_;
    std::unique_ptr<Object> object_;
    bool registered_ = false;
    std::function<void()> openSettings_;
    TrayMenu trayMenu_;
    const BusNameOwner* reporter_ = nullptr;
    WindowReports reports_;
};

}  // namespace marzipel
