#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/brightness/blue_light.h"
#include "platform/system_log.h"

namespace marzipel {

/// KWin's Night Color (Plasma 5) or Night Light (Plasma 6) on the session bus. The filter is
/// switched off by holding an inhibition and on by giving it back; KWin drops an inhibition by
/// itself when the connection that holds it goes away, so a crash never leaves the filter off.
class KWinNightColor final : public BlueLight {
public:
    enum class Generation { plasma5, plasma6 };

    /// The interface KWin answers on right now, newest first.
    static std::optional<Generation> find();

    /// An inhibition still held at destruction is left to KWin, which drops it with our bus
    /// connection.
    KWinNightColor(Generation generation, SystemLog& log) : generation_(generation), log_(log) {}

    BlueLightStatus status() override;
    void setEnabled(bool enabled) override;
    void setMode(BlueLightMode mode) override;
    void readAhead() override;
    /// Plasma 6 renamed it.
    BlueLightFilterName name() const override {
        return generation_ == Generation::plasma6 ? BlueLightFilterName::nightLight
                                                  : BlueLightFilterName::nightColor;
    }

private:
    void release();

    Generation generation_;
    SystemLog& log_;
    std::optional<std::uint32_t> cookie_;
};

}  // namespace marzipel
