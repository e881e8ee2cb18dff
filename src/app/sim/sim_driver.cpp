#include "app/sim/sim_driver.h"

#include <filesystem>
#include <istream>
#include <nlohmann/json.hpp>
#include <ostream>
#include <set>

#include "app/sim/log_tail.h"
#include "app/sim/plist_json.h"
#include "app/sim/script_line.h"
#include "app/sim/sim_platform.h"
#include "core/marzipel_app.h"
#include "detection/app_catalog.h"
#include "detection/full_screen_detector.h"
#include "detection/installed_video_apps.h"
#include "diagnostics/debug_log.h"
#include "diagnostics/file_logger.h"
#include "platform/linux/files/plist_file_preferences_store.h"
#include "platform/linux/local_clock.h"
#include "platform/local/local_bundle_files.h"
#include "settings/settings_manager.h"

namespace marzipel {

namespace {

/// Simulated local time, real timestamps: the log file outlives the run.
class DriverClock final : public Clock {
public:
    LocalTime localTime() const override { return time; }
    std::string timestampText() const override {
        std::string text = real_.timestampText();
        given_.insert(text);
        return text;
    }
    bool gave(std::string_view timestamp) const { return given_.contains(timestamp); }
    LocalTime time{12, 0};

private:
    LocalClock real_;
    mutable std::set<std::string, std::less<>> given_;
};

class DriverWelcomeWindow final : public WelcomeWindowPresenter {
public:
    void showWelcomeWindow() override { onShow(); }
    std::function<void()> onShow;
};

std::optional<std::string> dashIsAbsent(std::string text) {
    if (text == "-") return std::nullopt;
    return text;
}

}  // namespace

struct SimDriver::World {
    World(const std::string& home, std::ostream& out)
        : out(out),
          documents((std::filesystem::path(home) / "Documents").string()),
          logTail((std::filesystem::path(documents) / "Marzipel_debug.log").string(),
                  [this](std::string_view text) { return clock.gave(text); }) {
        // A home whose Documents cannot be made is left to the logger to report.
        std::error_code ignored;
        std::filesystem::create_directories(documents, ignored);
        sim.userDirectories.documents = documents;
        sim.brightness.onCall = [this](const std::string& call) { emit("call " + call); };
        sim.systemLog.onEntry = [this](const std::string& message) { emit("syslog " + message); };
        sim.console.onLine = [this](const std::string& text) { emit("stdout " + text); };
        sim.application.onCall = [this](const std::string& call) {
            if (call.starts_with("policy ")) emit(call);
        };
        sim.application.onTerminate = [this] {
            if (!app->requestTermination()) emit("terminate cancel");
        };
        welcomeWindow.onShow = [this] { emit("welcome shown"); };
        store = std::make_shared<PlistFilePreferencesStore>(preferencesPathForHome(home),
                                                            sim.systemLog);
        settings = std::make_unique<SettingsManager>(store, sim.console);
        // Subscribed before the application object so that these lines come before its work.
        for (const char* name :
             {kSwitchedToFullScreenAppNotification, kSwitchedToRegularSpaceNotification}) {
            subscriptions.push_back(sim.notificationCenter.subscribe(
                name, nullptr,
                [this, name](const Notification&) { emit("post " + std::string(name)); }));
        }
        subscriptions.push_back(sim.notificationCenter.subscribe(
            kApplicationWillTerminateNotification, nullptr, [this](const Notification&) {
                emit("terminate now");
                terminated = true;
            }));
    }

    /// Prints `line` after whatever the debug log gained meanwhile.
    void emit(const std::string& line) {
        flushLog();
        out << line << '\n';
    }

    void flushLog() {
        for (const auto& message : logTail.newMessages()) out << "log " << message << '\n';
    }

    void buildApplication() {
        if (app) return;
        app = std::make_unique<MarzipelApp>(sim.platform(*settings, welcomeWindow, &clock));
        subscriptions.push_back(
            app->state().onWillChange([this](MarzipelState::Field field, bool value) {
                if (field == MarzipelState::Field::isActive) {
                    emit(std::string("state isActive ") + (value ? "true" : "false"));
                }
            }));
        subscriptions.push_back(app->tray().onStatusChanged(
            [this](const std::string& status) { emit("tray " + status); }));
    }

    std::ostream& out;
    DriverClock clock;
    std::string documents;
    LogTail logTail;
    SimPlatform sim;
    DriverWelcomeWindow welcomeWindow;
    LocalBundleFiles files;
    BundleCatalog catalog{files};
    std::shared_ptr<PlistFilePreferencesStore> store;
    std::unique_ptr<SettingsManager> settings;
    std::vector<Subscription> subscriptions;
    std::unique_ptr<MarzipelApp> app;
    bool terminated = false;

    static bool isWorldCommand(const std::string& command);
    void runWorldCommand(const std::string& command, ScriptLine& line);
    void runCommand(const std::string& command, ScriptLine& line);
    void runSettingsCommand(const std::string& command, ScriptLine& line);
    void runDefaultsCommand(ScriptLine& line);
    void runCatalogueCommand(const std::string& command, ScriptLine& line);
    const AnyKey* createKey(const std::string& name) const;
    void printItem(const std::optional<AppItem>& item);
};

bool SimDriver::World::isWorldCommand(const std::string& command) {
    for (const char* name : {"app", "front", "keyboard", "nightshift", "clock", "assert"}) {
        if (command == name) return true;
    }
    return false;
}

void SimDriver::World::runWorldCommand(const std::string& command, ScriptLine& line) {
    if (command == "app") {
        RunningApplication running;
        running.processId = parseInt(line.next("process id"), "process id");
        running.bundleIdentifier = dashIsAbsent(line.next("bundle identifier"));
        running.localizedName = dashIsAbsent(line.next("name"));
        line.expectEnd();
        std::erase(sim.workspace.applications, running);
        sim.workspace.applications.push_back(running);
    } else if (command == "front") {
        std::string which = line.next("process id or none");
        line.expectEnd();
        if (which == "none") {
            sim.workspace.frontmostProcessId.reset();
            return;
        }
        int processId = parseInt(which, "process id");
        if (!sim.workspace.runningApplication(processId)) {
            throw ScriptError("no application with process id " + which);
        }
        sim.workspace.frontmostProcessId = processId;
    } else if (command == "keyboard") {
        sim.brightness.keyboard = parseFloat(line.next("brightness"), "brightness");
        line.expectEnd();
    } else if (command == "nightshift") {
        std::string enabled = line.next("enabled flag or missing");
        if (enabled == "missing") {
            line.expectEnd();
            if (app)
                throw ScriptError("nightshift missing must come before the application starts");
            sim.brightness.blueLightMissing = true;
            return;
        }
        if (enabled != "0" && enabled != "1") throw ScriptError("enabled flag must be 0 or 1");
        BlueLightStatus status;
        status.enabled = enabled == "1";
        status.mode = static_cast<BlueLightMode>(parseInt(line.next("mode"), "mode"));
        auto [fromHour, fromMinute] = parseTimeOfDay(line.next("from time"));
        auto [toHour, toMinute] = parseTimeOfDay(line.next("to time"));
        line.expectEnd();
        status.from = {fromHour, fromMinute};
        status.to = {toHour, toMinute};
        sim.brightness.status = status;
    } else if (command == "clock") {
        auto [hour, minute] = parseTimeOfDay(line.next("time"));
        line.expectEnd();
        clock.time = {hour, minute};
    } else {
        std::string what = line.next("process id, clear or fail");
        if (what == "clear" || what == "fail") {
            line.expectEnd();
            sim.powerAssertions.table.clear();
            sim.powerAssertions.failure = what == "clear"
                                              ? Status()
                                              : Status::failure(
                                                    "IOPMCopyAssertionsByProcess failed with IOKit "
                                                    "return code 0xe00002bc");
            return;
        }
        int processId = parseInt(what, "process id");
        std::string type = line.next("assertion type");
        line.expectEnd();
        PlistDictionary record{{"AssertName", "sim"}};
        if (type != "-") record.insert_or_assign("AssertionTrueType", type);
        PlistValue& list = sim.powerAssertions.table[processId];
        if (!list.is<PlistArray>()) list = PlistArray{};
        PlistArray records = *list.as<PlistArray>();
        records.push_back(std::move(record));
        list = std::move(records);
    }
}

void SimDriver::World::runCommand(const std::string& command, ScriptLine& line) {
    if (command == "launch") {
        line.expectEnd();
        sim.application.finishLaunching();
    } else if (command == "space") {
        std::string kind = line.next("full or regular");
        line.expectEnd();
        if (kind != "full" && kind != "regular") throw ScriptError("expected full or regular");
        sim.spaceMonitor.switchSpace(kind == "full");
    } else if (command == "quit") {
        line.expectEnd();
        app->tray().quit();
    } else if (command == "terminate") {
        line.expectEnd();
        sim.application.terminate();
    } else if (command == "defaults") {
        runDefaultsCommand(line);
    } else if (command == "bundle" || command == "discover") {
        runCatalogueCommand(command, line);
    } else {
        runSettingsCommand(command, line);
    }
}

void SimDriver::World::runSettingsCommand(const std::string& command, ScriptLine& line) {
    if (command == "trigger") {
        std::string action = line.next("add or remove");
        if (action != "add" && action != "remove") throw ScriptError("expected add or remove");
        AppItem item;
        item.id = line.next("identifier");
        item.name = line.next("name");
        if (!line.atEnd()) item.iconPath = line.next("icon path");
        line.expectEnd();
        if (action == "add") {
            settings->addTriggerApp(item);
        } else {
            settings->removeTriggerApp(item);
        }
    } else if (command == "feature") {
        std::string name = line.next("feature");
        bool on = parseOnOff(line.next("on or off"));
        line.expectEnd();
        if (name != "keyboardBacklight" && name != "nightShift") {
            throw ScriptError("expected keyboardBacklight or nightShift");
        }
        settings->setFeatureEnabled(*featureNamed(name), on);
    } else if (command == "appfeature") {
        std::string id = line.next("identifier");
        if (line.next("feature") != "onlyWhenPlayingVideo") {
            throw ScriptError("expected onlyWhenPlayingVideo");
        }
        bool on = parseOnOff(line.next("on or off"));
        line.expectEnd();
        settings->setAppFeature(id, Feature::onlyWhenPlayingVideo, on);
    } else if (command == "debug") {
        bool on = parseOnOff(line.next("on or off"));
        line.expectEnd();
        settings->debugLoggingEnabled().set(on);
        debugLoggingToggled(on, sim.userDirectories, clock, sim.console);
    } else {
        throw ScriptError("unknown command '" + command + "'");
    }
}

const AnyKey* SimDriver::World::createKey(const std::string& name) const {
    if (name == "marzipelData") return &settings->marzipelData();
    if (name == "appFeatures") return &settings->appFeatures();
    if (name == "enabledApps") return &settings->enabledApps();
    if (name == "enabledFeatures") return &settings->enabledFeatures();
    if (name == "debugLoggingEnabled") return &settings->debugLoggingEnabled();
    if (name == "welcomeScreenShown") return &settings->welcomeScreenShown();
    return nullptr;
}

void SimDriver::World::runDefaultsCommand(ScriptLine& line) {
    std::string action = line.next("write, delete or read");
    std::string key = line.next("key");
    if (action == "write") {
        store->setObject(key, plistFromJson(line.rest("JSON value")));
    } else if (action == "delete") {
        line.expectEnd();
        store->removeObject(key);
    } else if (action == "read") {
        line.expectEnd();
        createKey(key);
        auto object = store->object(key);
        emit("defaults " + key + " " + (object ? plistToJson(*object) : "absent"));
    } else {
        throw ScriptError("expected write, delete or read");
    }
}

void SimDriver::World::printItem(const std::optional<AppItem>& item) {
    emit(item ? "item " + nlohmann::json(*item).dump() : "item absent");
}

void SimDriver::World::runCatalogueCommand(const std::string& command, ScriptLine& line) {
    if (command == "bundle") {
        std::string path = line.next("bundle path");
        line.expectEnd();
        printItem(catalog.appItem(path));
        return;
    }
    std::vector<std::string> folders;
    while (!line.atEnd()) folders.push_back(line.next("folder"));
    auto items = folders.empty() ? findInstalledVideoApps(catalog, sim.systemLog)
                                 : findInstalledVideoApps(catalog, sim.systemLog, folders);
    for (const auto& item : items) printItem(item);
    emit("discovered " + std::to_string(items.size()));
}

SimDriver::SimDriver(const std::string& home, std::ostream& out)
    : world_(std::make_unique<World>(home, out)) {}

SimDriver::~SimDriver() = default;

int SimDriver::run(std::istream& script, std::ostream& err) {
    std::string text;
    for (int number = 1; std::getline(script, text); ++number) {
        ScriptLine line(text);
        if (line.atEnd() || text.starts_with('#')) continue;
        try {
            std::string command = line.next("command");
            if (World::isWorldCommand(command)) {
                world_->runWorldCommand(command, line);
            } else {
                world_->buildApplication();
                world_->runCommand(command, line);
            }
        } catch (const std::exception& error) {
            // A script error, or the platform refusing something the script asked for.
            world_->flushLog();
            world_->out.flush();
            err << "error " << number << ": " << error.what() << '\n';
            return 2;
        }
        if (world_->terminated) break;
    }
    world_->flushLog();
    world_->out.flush();
    return 0;
}

}  // namespace marzipel
