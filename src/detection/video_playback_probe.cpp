#include "detection/video_playback_probe.h"

#include <string>

#include "diagnostics/debug_log.h"

namespace marzipel {
namespace {

/// Whether every process maps to a list of string-keyed records. One stray entry makes the whole
/// table unreadable, as a cast of the whole dictionary would.
bool isAssertionTable(const AssertionsByProcess& table) {
    for (const auto& [processId, assertions] : table) {
        const PlistArray* records = assertions.as<PlistArray>();
        if (!records) return false;
        for (const PlistValue& record : *records) {
            if (!record.is<PlistDictionary>()) return false;
        }
    }
    return true;
}

bool preventsDisplaySleep(const PlistDictionary& record) {
    auto type = record.find("AssertionTrueType");
    if (type == record.end()) return false;
    const std::string* name = type->second.as<std::string>();
    return name && *name == "PreventUserIdleDisplaySleep";
}

}  // namespace

VideoPlaybackProbe::VideoPlaybackProbe(PowerAssertions& assertions, const Workspace& workspace,
                                       SystemLog& systemLog, const SettingsManager& settings)
    : assertions_(assertions), workspace_(workspace), systemLog_(systemLog), settings_(settings) {}

std::vector<RunningApplication> VideoPlaybackProbe::applicationsPlayingVideo() {
    const Result<AssertionsByProcess> table = assertions_.assertionsByProcess();
    if (!table.ok()) {
        systemLog_.error(kAppLogSubsystem, kAppLogCategory,
                         "Error retrieving power management assertions");
        return {};
    }
    if (!isAssertionTable(table.value())) return {};

    std::vector<RunningApplication> playing;
    for (const auto& [processId, assertions] : table.value()) {
        for (const PlistValue& record : *assertions.as<PlistArray>()) {
            if (!preventsDisplaySleep(*record.as<PlistDictionary>())) continue;
            if (std::optional<RunningApplication> app = workspace_.runningApplication(processId)) {
                playing.push_back(std::move(*app));
            } else {
                debugLog(settings_,
                         "Failed to create application from PID " + std::to_string(processId));
            }
        }
    }
    return playing;
}

}  // namespace marzipel
