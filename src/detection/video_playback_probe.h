#pragma once

#include <vector>

#include "platform/power_assertions.h"
#include "platform/system_log.h"
#include "platform/workspace.h"

namespace marzipel {

class SettingsManager;

/// Finds the applications that keep the display awake, which is how a playing video player
/// shows itself.
class VideoPlaybackProbe {
public:
    VideoPlaybackProbe(PowerAssertions& assertions, const Workspace& workspace,
                       SystemLog& systemLog, const SettingsManager& settings);

    /// One entry per "PreventUserIdleDisplaySleep" assertion held by an application, in the
    /// table's order; the same application may appear more than once.
    std::vector<RunningApplication> applicationsPlayingVideo();

private:
    PowerAssertions& assertions_;
    const Workspace& workspace_;
    SystemLog& systemLog_;
    const SettingsManager& settings_;
};

}  // namespace marzipel
