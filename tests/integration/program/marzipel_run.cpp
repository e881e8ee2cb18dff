#include "integration/program/marzipel_run.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

#include "platform/plist/plist_codec.h"

namespace marzipel::programtest {
namespace {

constexpr char kSanitizerReport[] = "sanitizer-report";

// The supervisor starts a run that a sanitizer ended again, and the test could pass on the new
// one: every process of the program writes its reports (UndefinedBehaviorSanitizer's too) to
// files that the test reads at the end. The slow unwinder sees through the graphics drivers,
// which have no frame pointers and are unloaded before the leak check, to the library that the
// suppressions name.
std::string sanitizerOptions(const std::filesystem::path& report) {
    const char* options = std::getenv("ASAN_OPTIONS");
    return std::string("ASAN_OPTIONS=") + (options ? options + std::string(":") : "") +
           "fast_unwind_on_malloc=0:log_path=" + report.string();
}

}  // namespace

void writePlayerEntry() {
    writeFile(scratch("data/applications/") + kPlayer + ".desktop",
              "[Desktop Entry]\nType=Application\nName=Test Player\nExec=true\n");
}

std::vector<std::string> MarzipelRun::environment(
    const std::vector<std::string>& environment) const {
    std::vector<std::string> result{
        "HOME=" + home_.path().string(), "XDG_STATE_HOME=" + (home_.path() / "state").string(),
        "XDG_DATA_HOME=" + scratch("data"), "XDG_DATA_DIRS=/usr/local/share:/usr/share",
        sanitizerOptions(home_.path() / kSanitizerReport)};
    result.insert(result.end(), environment.begin(), environment.end());
    return result;
}

void MarzipelRun::start(const std::vector<std::string>& environment) {
    const auto documents = home_.path() / "Documents";
    std::filesystem::create_directories(documents);
    debugLog_ = (documents / "Marzipel_debug.log").string();
    if (std::filesystem::exists(debugLog_)) {
        std::filesystem::remove(debugLog_);
    } else {
        writeFile(scratch("config/marzipel/com.orsavelt.Marzipel.plist"),
                  toXmlPropertyList(PlistDictionary{
                      {"welcomeScreenShown", true},
                      {"debugLoggingEnabled", true},
                      {"enabledApps",
                       PlistArray{R"({"id":"marzipel-test-player","name":"Test Player"})"}},
                      {"enabledFeatures",
                       PlistArray{R"({"keyboardBacklight":{}})", R"({"nightShift":{}})"}}}));
    }
    process_ = Child({MARZIPEL_PROGRAM}, this->environment(environment));
    // The debug log is opened once the event loop runs, when the window source is in place.
    ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(debugLog_); }, 15s))
        << "marzipel did not finish launching";
}

MarzipelRun::~MarzipelRun() {
    process_.stop();
    for (const auto& entry : std::filesystem::directory_iterator(home_.path())) {
        if (entry.path().filename().string().starts_with(kSanitizerReport))
            ADD_FAILURE() << "marzipel reported:\n" << readFile(entry.path().string());
    }
}

pid_t MarzipelRun::appPid() const {
    const std::string children = "/proc/" + std::to_string(process_.pid()) + "/task/" +
                                 std::to_string(process_.pid()) + "/children";
    pid_t pid = -1;
    waitUntil([&] { return (std::istringstream(readFile(children)) >> pid).good(); });
    return pid;
}

bool MarzipelRun::activeRunSaved() const {
    return readFile(scratch("config/marzipel/com.orsavelt.Marzipel.plist")).find("marzipelData") !=
               std::string::npos &&
           std::filesystem::exists(home_.path() / "state/marzipel/active");
}

bool MarzipelRun::logHas(const std::string& line) const {
    return readFile(debugLog_).find(line + "\n") != std::string::npos;
}

std::vector<std::string> MarzipelRun::logLines() const {
    std::vector<std::string> messages;
    std::istringstream log(readFile(debugLog_));
    for (std::string line; std::getline(log, line);) {
        // The time ends with its zone and ": ".
        const std::size_t start = line.find(": ");
        messages.push_back(start == std::string::npos ? line : line.substr(start + 2));
    }
    return messages;
}

std::string gsettingsKeyfile() { return readFile(scratch("config/glib-2.0/settings/keyfile")); }

}  // namespace marzipel::programtest
