// Time of one went-full-screen event: from the detector noticing the full-screen space to the
// last platform call, with settings read from and the saved state written to the real
// preferences file (atomic save included).
#include <benchmark/benchmark.h>

#include <algorithm>
#include <filesystem>
#include <random>

#include "app/sim/sim_platform.h"
#include "platform/linux/files/plist_file_preferences_store.h"
#include "settings/settings_manager.h"

namespace marzipel {
namespace {

struct NoWelcome final : WelcomeWindowPresenter {
    void showWelcomeWindow() override {}
};

struct BenchWorld {
    std::filesystem::path home;
    SimPlatform sim;
    NoWelcome welcome;
    std::unique_ptr<SettingsManager> settings;
    std::unique_ptr<MarzipelApp> app;

    BenchWorld() {
        std::random_device random;
        home =
            std::filesystem::temp_directory_path() / ("marzipel-bench-" + std::to_string(random()));
        std::filesystem::create_directories(home);
        sim.userDirectories.documents = home.string();
        auto store = std::make_shared<PlistFilePreferencesStore>(
            preferencesPathForHome(home.string()), sim.systemLog);
        settings = std::make_unique<SettingsManager>(store, sim.console);
        settings->addTriggerApp(AppItem{"org.videolan.vlc", "VLC", std::nullopt});
        settings->setAppFeature("org.videolan.vlc", Feature::onlyWhenPlayingVideo, false);
        sim.workspace.applications.push_back(
            RunningApplication{501, "org.videolan.vlc", "VLC", std::nullopt});
        sim.workspace.frontmostProcessId = 501;
        sim.powerAssertions.table.emplace(
            501, PlistArray{PlistDictionary{{"AssertionTrueType", "PreventUserIdleDisplaySleep"}}});
        sim.brightness.status = {true, BlueLightMode::sunsetToSunrise, {}, {}};
        app = std::make_unique<MarzipelApp>(sim.platform(*settings, welcome));
        sim.application.finishLaunching();
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
        world.sim.spaceMonitor.switchSpace(true);
        state.PauseTiming();
        world.sim.spaceMonitor.switchSpace(false);
        world.sim.brightness.status.enabled = true;
        state.ResumeTiming();
    }
    const auto& calls = world.sim.brightness.calls;
    if (std::count(calls.begin(), calls.end(), "app setEnabled false") != state.iterations()) {
        state.SkipWithError("an event did not activate");
    }
}
BENCHMARK(BM_WentFullScreenEvent)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace marzipel

BENCHMARK_MAIN();
