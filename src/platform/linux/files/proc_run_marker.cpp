#include "platform/linux/files/proc_run_marker.h"

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <optional>
#include <sstream>
#include <utility>

#include "platform/linux/files/atomic_file.h"
#include "platform/linux/xdg/xdg_base_directories.h"

namespace marzipel {

namespace {

/// The fields of /proc/PID/stat that tell whether it is still the same process, and whether it
/// still runs; both empty when it is gone.
struct ProcessStat {
    /// Field 3: 'Z' for a zombie, 'X' for a dead process, others for a live one.
    std::string state;
    /// Field 22: when the process started, in clock ticks after boot.
    std::string startTime;
};

/// Read after the last ')', as the program name before it may hold spaces and parentheses.
ProcessStat statOf(const std::string& procRoot, long processId) {
    std::ifstream stat(procRoot + "/" + std::to_string(processId) + "/stat");
    const std::string line{std::istreambuf_iterator<char>(stat), {}};
    const auto nameEnd = line.rfind(')');
    if (nameEnd == std::string::npos) return {};
    std::istringstream fields(line.substr(nameEnd + 1));
    ProcessStat result;
    std::string field;
    // The fields after the name start at field 3.
    for (int number = 3; number <= 22; ++number) {
        if (!(fields >> field)) return {};
        if (number == 3) result.state = field;
    }
    result.startTime = field;
    return result;
}

}  // namespace

ProcRunMarker::ProcRunMarker(std::string folder, SystemLog& log, Scheduler scheduler,
                             std::string bootIdFile, std::string procRoot)
    : file_(folder.empty() ? std::string() : folder + "/active"),
      log_(log),
      bootIdFile_(std::move(bootIdFile)),
      procRoot_(std::move(procRoot)),
      scheduler_(std::move(scheduler)) {}

ProcRunMarker::~ProcRunMarker() { flush(); }

RunMark ProcRunMarker::find() const {
    if (file_.empty()) return RunMark::none;
    // The file may still hold an ended run's marker until the task writes ours.
    if (placePending_) return RunMark::ofRunningProcess;
    std::ifstream marker(file_);
    if (!marker) return RunMark::none;
    std::string boot;
    long processId = 0;
    std::string startTime;
    if (!(marker >> boot >> processId >> startTime) || processId <= 0) {
        return RunMark::ofEndedProcess;
    }
    // Process ids and start times begin again with every boot.
    if (boot != bootId()) return RunMark::ofEarlierBoot;
    const ProcessStat stat = statOf(procRoot_, processId);
    // Killed but not yet reaped, a process keeps its entry and start time.
    const bool runs = stat.startTime == startTime && stat.state != "Z" && stat.state != "X";
    return runs ? RunMark::ofRunningProcess : RunMark::ofEndedProcess;
}

void ProcRunMarker::place() {
    if (file_.empty()) return;
    if (!scheduler_) {
        write();
        return;
    }
    if (std::exchange(placePending_, true)) return;
    scheduler_([weakSelf = std::weak_ptr(self_)] {
        if (const auto self = weakSelf.lock()) (*self)->flush();
    });
}

void ProcRunMarker::flush() {
    if (std::exchange(placePending_, false)) write();
}

void ProcRunMarker::write() {
    const long self = getpid();
    const Status placed =
        replaceFileAtomically(file_, bootId() + " " + std::to_string(self) + " " +
                                         statOf(procRoot_, self).startTime + "\n");
    if (placed.ok()) return;
    log_.error(kAppLogSubsystem, kAppLogCategory,
               "Could not place the run marker: " + placed.message() +
                   "; if this run ends unexpectedly, the next one cannot put things back");
}

std::string ProcRunMarker::bootId() const {
    std::ifstream file(bootIdFile_);
    std::string id;
    // A machine without the file counts as one boot.
    if (!(file >> id)) return "unknown";
    return id;
}

void ProcRunMarker::remove() {
    if (file_.empty()) return;
    placePending_ = false;
    std::error_code ignored;
    std::filesystem::remove(file_, ignored);
}

std::string runMarkerFolder() {
    const std::optional<std::string> state = stateHomeDirectory(homeDirectory());
    return state ? *state + "/marzipel" : std::string();
}

}  // namespace marzipel
