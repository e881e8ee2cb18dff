#include "platform/linux/windows/kwin/kwin_window_source.h"

#include "platform/linux/dbus/bus_name_owner.h"
#include "platform/linux/dbus/marzipel_bus_service.h"
#include "platform/linux/windows/kwin/kwin_script.h"
#include "platform/linux/windows/reported_windows.h"

namespace marzipel {

KWinWindowSource::KWinWindowSource(ReportedWindows& windows, MarzipelBusService& bus,
                                   QString scriptPath, SystemLog& log)
    : windows_(windows),
      bus_(bus),
      log_(log),
      kwin_(std::make_unique<BusNameOwner>(bus.bus(), QStringLiteral("org.kde.KWin"))),
      script_(std::make_unique<KWinScript>(std::move(scriptPath), log, bus.bus())) {
    bus_.acceptWindowReports(
        *kwin_,
        {[this](std::optional<ReportedWindow> window) { windows_.reportActive(std::move(window)); },
         [this](std::vector<WindowIdentity> list) { windows_.reportWindows(std::move(list)); }});
    kwin_->setChangedHandler([this](const QString& owner) { kwinChanged(owner); });
    script_->start();
}

KWinWindowSource::~KWinWindowSource() { bus_.refuseWindowReports(); }

void KWinWindowSource::kwinChanged(const QString& owner) {
    if (!owner.isEmpty()) {
        // A KWin that came back (the session restarts it after a crash) has no script.
        script_->start();
        return;
    }
    log_.error(kAppLogSubsystem, kAppLogCategory,
               "KWin left the session bus: no window has focus until it is back");
    windows_.reportWindows({});
    windows_.reportActive(std::nullopt);
}

}  // namespace marzipel
