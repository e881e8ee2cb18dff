// Time of one went-full-screen event: from the detector noticing the full-screen space to the
// last platform call, with settings read from and the saved state written to the real
// preferences file (atomic save included).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "core/marzipel_app.h"
#include "platform/linux/plist_file_preferences_store.h"
#include "platform/sim/sim_application.h"
#include "platform/sim/sim_basics.h"
#include "platform/sim/sim_brightness_service.h"
#include "platform/sim/sim_space_monitor.h"
#include "platform/sim/sim_updater.h"
#include "platform/sim/sim_workspace.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

struct NoWelcome final : WelcomeWindowPresenter {
    void showWelcomeWindow() override {}
};

struct BenchWorld {
    std::filesystem::path home;
    SimUserDirectories directories;
    SimClock clock;
    SimConsole console;
    SimSystemLog systemLog;
    SimBrightnessWorld brightness;
    SimBrightnessServiceFactory factory{brightness};
    SimWorkspace workspace;
    SimPowerAssertions assertions;
    SimSpaceMonitor spaces;
    NotificationCenter center;
    SimApplication application{center};
    SimUpdater updater;
    NoWelcome welcome;
    std::unique_ptr<SettingsManager> settings;
    std::unique_ptr<MarzipelApp> app;

    BenchWorld() {
        std::random_device random;
        home = std::filesystem::temp_directory_path() /
               ("marzipel-bench-" + std::to_string(random()));
        std::filesystem::create_directories(home);
        directories.documents = home.string();
        auto store = std::make_shared<PlistFilePreferencesStore>(
            preferencesPathForHome(home.string()), systemLog);
        settings = std::make_unique<SettingsManager>(store, console);
        settings->addTriggerApp(AppItem{"org.videolan.vlc", "VLC", std::nullopt});
        settings->setAppFeature("org.videolan.vlc", Feature::onlyWhenPlayingVideo, false);
        workspace.applications.push_back(RunningApplication{501, "org.videolan.vlc", "VLC"});
        workspace.frontmostProcessId = 501;
        assertions.reply.table->emplace(501, PlistArray{PlistDictionary{
                                                 {"AssertionTrueType", "PreventUserIdleDisplaySleep"}}});
        brightness.status = {true, 1, {}, {}};
        app = std::make_unique<MarzipelApp>(
            MarzipelPlatform{factory, workspace, assertions, spaces, application, updater,
                             systemLog, clock, console, directories, *settings, center, welcome});
        application.finishLaunching();
    }
    ~BenchWorld() {
        app.reset();
        std::error_code ignored;
        std::filesystem::remove_all(home, ignored);
    }
};

void BM_WentFullScreenEvent(benchmark::State& state) {
    BenchWorld world;
    for (auto _ : state) {
        world.spaces.switchSpace(true);
        state.PauseTiming();
        world.spaces.switchSpace(false);
        world.brightness.status.enabled = true;
        state.ResumeTiming();
    }
    const auto& calls = world.brightness.calls;
    if (std::count(calls.begin(), calls.end(), "app setEnabled false") != state.iterations()) {
        state.SkipWithError("an event did not activate");
    }
}
BENCHMARK(BM_WentFullScreenEvent)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace marzipel

BENCHMARK_MAIN();
