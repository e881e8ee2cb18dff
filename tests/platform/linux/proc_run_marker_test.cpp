// The marker of an active run, against real processes and real files.
#include "platform/linux/files/proc_run_marker.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/sim/sim_basics.h"
#include "support/child_process.h"
#include "support/scoped_env.h"
#include "support/temp_folder.h"

namespace marzipel {
namespace {

// Killed all at once, a run may not be reaped yet when the next one starts: its /proc entry
// still has the same start time, but it runs no more.
TEST(ProcRunMarkerTest, AKilledRunNotYetReapedHasEnded) {
    TempFolder folder;
    SimSystemLog log;
    const pid_t run = fork();
    if (run == 0) {
        ProcRunMarker(folder.path().string(), log).place();
        pause();
        _exit(0);
    }
    ProcRunMarker marker(folder.path().string(), log);
    EXPECT_TRUE(waitUntil([&] { return marker.find() == RunMark::ofRunningProcess; }));
    kill(run, SIGKILL);
    // Waits until it has ended, but leaves it unreaped until the marker has been read.
    siginfo_t ended;
    ASSERT_EQ(waitid(P_PID, run, &ended, WEXITED | WNOWAIT), 0);
    EXPECT_EQ(marker.find(), RunMark::ofEndedProcess);
    waitpid(run, nullptr, 0);
}

// The marker outlives a restart in the user's state folder ($XDG_STATE_HOME read as the
// configuration's folder is); after one, whichever process now has the id it names, it is one of
// an earlier boot. A marker that cannot be written is told.
TEST(ProcRunMarkerTest, KeptInTheStateFolderAndOfAnEarlierBootAfterARestart) {
    TempFolder temp;
    ScopedEnv state("XDG_STATE_HOME", temp / "state");
    EXPECT_EQ(runMarkerFolder(), temp / "state/marzipel");
    const std::string bootId = temp / "boot_id";
    writeFile(bootId, "0f8c2a4e-first-boot\n");
    SimSystemLog log;
    ProcRunMarker marker(temp / "state/marzipel", log, {}, bootId);
    marker.place();
    EXPECT_EQ(marker.find(), RunMark::ofRunningProcess);
    writeFile(bootId, "5d1e9b70-next-boot\n");
    EXPECT_EQ(marker.find(), RunMark::ofEarlierBoot);
    marker.remove();
    EXPECT_EQ(marker.find(), RunMark::none);
    EXPECT_TRUE(log.entries.empty());

    ProcRunMarker underAFile(bootId, log, {}, bootId);
    underAFile.place();
    ASSERT_EQ(log.entries.size(), 1u);
    EXPECT_NE(log.entries[0].find("Could not place the run marker: "), std::string::npos);
    EXPECT_EQ(underAFile.find(), RunMark::none);
}

}  // namespace
}  // namespace marzipel
