#pragma once

#include "platform/power_assertions.h"

namespace marzipel {

/// Who keeps the display awake, gathered from three places and reported per process id as
/// "PreventUserIdleDisplaySleep" assertions: logind inhibitors that include "idle", GNOME
/// session-manager inhibitors with the idle flag, and MPRIS players that are playing (common
/// players keep the screen awake without any D-Bus inhibitor). The query fails only when none of
/// the three answers. Needs a Qt application object, as every QtDBus user does.
class LinuxPowerAssertions final : public PowerAssertions {
public:
    /// A failure gives each place's reason.
    Result<AssertionsByProcess> assertionsByProcess() override;

    /// Puts the first questions to the three places now, for an `assertionsByProcess` that
    /// follows in this event-loop turn.
    void readAhead();
};

}  // namespace marzipel
