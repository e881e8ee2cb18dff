#include "platform/linux/files/proc_run_marker.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <utility>

#include "platform/linux/files/atomic_file.h"

namespace marzipel {

namespace {

/// Field 22 of /proc/PID/stat: when the process started, in clock ticks after boot. Read after
/// the last ')', as the program name before it may hold spaces and parentheses.
std::string startTimeOf(const std::string& procRoot, long processId) {
    std::ifstream stat(procRoot + "/" + std::to_string(processId) + "/stat");
    const std::string line{std::istreambuf_iterator<char>(stat), {}};
    const auto nameEnd = line.rfind(')');
    if (nameEnd == std::string::npos) return {};
    std::istringstream fields(line.substr(nameEnd + 1));
    std::string field;
    // The fields after the name start at field 3.
    for (int number = 3; number <= 22; ++number) {
        if (!(fields >> field)) return {};
    }
    return field;
}

}  // namespace

ProcRunMarker::ProcRunMarker(std::string folder, std::string procRoot, Scheduler scheduler)
    : file_(folder.empty() ? std::string() : folder + "/active"),
      procRoot_(std::move(procRoot)),
      scheduler_(std::move(scheduler)) {}

ProcRunMarker::~ProcRunMarker() { flush(); }

RunMark ProcRunMarker::find() const {
    if (file_.empty()) return RunMark::none;
    // The file may still hold an ended run's marker until the task writes ours.
    if (placePending_) return RunMark::ofRunningProcess;
    std::ifstream marker(file_);
    if (!marker) return RunMark::none;
    long processId = 0;
    std::string startTime;
    if (!(marker >> processId >> startTime) || processId <= 0) return RunMark::ofEndedProcess;
    return startTimeOf(procRoot_, processId) == startTime ? RunMark::ofRunningProcess
                                                          : RunMark::ofEndedProcess;
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
    replaceFileAtomically(file_, std::to_string(self) + " " + startTimeOf(procRoot_, self) + "\n");
}

void ProcRunMarker::remove() {
    if (file_.empty()) return;
    placePending_ = false;
    std::error_code ignored;
    std::filesystem::remove(file_, ignored);
}

std::string runMarkerFolder() {
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    if (!runtime || runtime[0] != '/') return {};
    return std::string(runtime) + "/marzipel";
}

}  // namespace marzipel
