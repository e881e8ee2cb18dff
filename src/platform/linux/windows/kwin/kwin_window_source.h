#pragma once

#include <QString>
#include <memory>

#include "platform/system_log.h"

namespace marzipel {

class BusNameOwner;
class KWinScript;
class MarzipelBusService;
class ReportedWindows;

/// KDE Plasma's windows on Wayland: our script inside KWin reports them to Marzipel's bus
/// name, and they go to `windows`. Should KWin leave the bus (it crashed), no window has focus
/// from then on, and the system log says why; a KWin that comes back gets the script again.
/// Main thread only.
class KWinWindowSource {
public:
    /// Starts the script at `scriptPath`; `windows`, `bus` and `log` must outlive this object.
    KWinWindowSource(ReportedWindows& windows, MarzipelBusService& bus, QString scriptPath,
                     SystemLog& log);
    /// Unloads the script and refuses further reports.
    ~KWinWindowSource();
    KWinWindowSource(const KWinWindowSource&) = delete;
    KWinWindowSource& operator=(const KWinWindowSource&) = delete;

private:
    void kwinChanged(const QString& owner);

    ReportedWindows& windows_;
    MarzipelBusService& bus_;
    SystemLog& log_;
    std::unique_ptr<BusNameOwner> kwin_;
    std::unique_ptr<KWinScript> script_;
};

}  // namespace marzipel
