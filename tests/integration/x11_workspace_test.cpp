#include "platform/linux/x11_workspace.h"

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <filesystem>
#include <tuple>

#include "support/fake_desktop_entries.h"
#include "x_session.h"

namespace marzipel {
namespace {

// Above the kernel's largest process id, so that no real process answers for them.
constexpr std::int32_t kTotem = 5000001;
constexpr std::int32_t kFlatpakVlc = 5000002;
constexpr std::int32_t kFlatpakCelluloid = 5000003;
constexpr std::int32_t kSnapMpv = 5000004;
constexpr std::int32_t kFirefox = 5000005;
constexpr std::int32_t kSmplayer = 5000006;
constexpr std::int32_t kUnknown = 5000007;
constexpr std::int32_t kTrayHelper = 5000008;
constexpr std::int32_t kPalette = 5000009;

using Summary = std::tuple<std::int32_t, std::optional<std::string>, std::optional<std::string>,
                           std::optional<std::string>, ActivationPolicy>;

Summary summary(const RunningApplication& app) {
    return {app.processId, app.bundleIdentifier, app.localizedName, app.bundlePath,
            app.activationPolicy};
}

std::string entryPath(const std::string& id) {
    return "/usr/share/applications/" + id + ".desktop";
}

class X11WorkspaceTest : public ::testing::Test {
protected:
    void writeProcFile(std::int32_t processId, const std::string& name, std::string_view text) {
        writeFile(proc / (std::to_string(processId) + "/" + name), text);
    }

    XSession session;
    XClient& client = session.client();
    FakeDesktopEntries entries;
    TempFolder proc;
    X11Workspace workspace{entries, session.display(), proc.path().string()};
};

TEST_F(X11WorkspaceTest, FindsEachApplicationsEntryInOrderOfTrustAndOneEntryPerProcess) {
    EXPECT_EQ(workspace.frontmostApplication(), std::nullopt);
    entries.add("org.gnome.Totem", "Videos");
    entries.add("vlc", "VLC (system)");
    entries.add("org.videolan.VLC", "VLC media player");
    entries.add("mpv_mpv", "mpv (snap)");
    entries.add("io.mpv.Mpv", "mpv Media Player", "mpv");
    entries.add("mpv", "mpv (by name)");
    entries.add("firefox-esr", "Firefox ESR");
    entries.add("org.example.Smplayer", "SMPlayer", "Smplayer");
    entries.add("smplayer", "SMPlayer (by name)");

    client.createWindow({.processId = kTotem,
                         .instance = "totem",
                         .className = "Totem",
                         .gtkApplicationId = "org.gnome.Totem"});
    writeProcFile(kFlatpakVlc, "root/.flatpak-info",
                  "[Instance]\nname=wrong\n\n[Application]\nname=org.videolan.VLC\nruntime=x\n");
    writeProcFile(kFlatpakVlc, "cgroup", "0::/user.slice/app-flatpak-org.other.App-9.scope\n");
    client.createWindow({.processId = kFlatpakVlc, .instance = "vlc", .className = "vlc"});
    writeProcFile(kFlatpakCelluloid, "cgroup",
                  "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                  "app-flatpak-io.github.celluloid_player.Celluloid-1234.scope\n");
    client.createWindow(
        {.processId = kFlatpakCelluloid, .instance = "celluloid", .className = "Celluloid"});
    writeProcFile(kSnapMpv, "cgroup",
                  "0::/user.slice/user-1000.slice/user@1000.service/app.slice/"
                  "snap.mpv.mpv-0f4d2c8e-3b1a-4c5d-9e6f-7a8b9c0d1e2f.scope\n");
    const auto player =
        client.createWindow({.processId = kSnapMpv, .instance = "mpv", .className = "mpv"});
    client.createWindow(
        {.processId = kFirefox, .instance = "Navigator", .className = "firefox-esr"});
    client.createWindow({.processId = kSmplayer, .instance = "smplayer", .className = "Smplayer"});
    client.createWindow(
        {.processId = kUnknown, .instance = "ghostplayer", .className = "GhostPlayer"});
    // Windows that stay out of the taskbar: a process with none in it is an accessory, and one
    // that shows a taskbar window later is named after that.
    client.createWindow({.processId = kTrayHelper, .skipTaskbar = true});
    client.createWindow(
        {.processId = kSnapMpv, .instance = "mpv", .className = "mpv", .skipTaskbar = true});
    client.createWindow({.processId = kPalette, .utility = true});
    client.createWindow({.processId = kPalette, .skipTaskbar = true});
    client.createWindow({.instance = "nopid", .className = "NoPid"});
    const auto late = client.createWindow(
        {.processId = kTrayHelper, .instance = "helper", .className = "Helper"});

    std::vector<Summary> running;
    for (const auto& app : workspace.runningApplications()) running.push_back(summary(app));
    const auto regular = ActivationPolicy::regular;
    const std::vector<Summary> expected{
        {kTotem, "org.gnome.Totem", "Videos", entryPath("org.gnome.Totem"), regular},
        {kFlatpakVlc, "org.videolan.VLC", "VLC media player", entryPath("org.videolan.VLC"),
         regular},
        {kFlatpakCelluloid, "io.github.celluloid_player.Celluloid", "Celluloid", std::nullopt,
         regular},
        {kSnapMpv, "mpv_mpv", "mpv (snap)", entryPath("mpv_mpv"), regular},
        {kFirefox, "firefox-esr", "Firefox ESR", entryPath("firefox-esr"), regular},
        {kSmplayer, "org.example.Smplayer", "SMPlayer", entryPath("org.example.Smplayer"), regular},
        {kUnknown, std::nullopt, "GhostPlayer", std::nullopt, regular},
        {kTrayHelper, std::nullopt, "Helper", std::nullopt, regular},
        {kPalette, std::nullopt, "TestWindow", std::nullopt, ActivationPolicy::accessory},
    };
    EXPECT_EQ(running, expected);
    const auto helper = workspace.runningApplication(kTrayHelper);
    ASSERT_TRUE(helper);
    EXPECT_EQ(helper->localizedName, "Helper") << "named after its taskbar window";
    EXPECT_EQ(workspace.runningApplication(kPalette + 1), std::nullopt) << "no window";

    client.activate(player);
    auto front = workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(summary(*front), expected[3]);
    client.activate(late);
    front = workspace.frontmostApplication();
    ASSERT_TRUE(front);
    EXPECT_EQ(summary(*front), expected[7]);
}

TEST_F(X11WorkspaceTest, AnswerReadAheadServesTheRestOfTheTurn) {
    entries.add("io.mpv.Mpv", "mpv Media Player", "mpv");
    // One window: activating several in a row lets openbox hand the focus back and forth.
    const auto player =
        client.createWindow({.processId = kSnapMpv, .instance = "mpv", .className = "mpv"});
    client.activate(player);
    const auto setProcessId = [&](std::uint32_t processId) {
        xcb_change_property(client.x().get(), XCB_PROP_MODE_REPLACE, player,
                            client.x().ewmh()._NET_WM_PID, XCB_ATOM_CARDINAL, 32, 1, &processId);
        client.x().sync();
    };
    const auto frontmostId = [&] {
        const auto front = workspace.frontmostApplication();
        return front ? front->processId : 0;
    };
    const auto asked = workspace.frontmostApplication();
    ASSERT_TRUE(asked);

    workspace.readAhead(player);
    const auto readAhead = workspace.frontmostApplication();
    ASSERT_TRUE(readAhead);
    EXPECT_EQ(summary(*readAhead), summary(*asked)) << "read from the guessed window alone";
    setProcessId(kTrayHelper);
    EXPECT_EQ(frontmostId(), kSnapMpv) << "later in the same turn";
    QCoreApplication::processEvents();
    EXPECT_EQ(frontmostId(), kTrayHelper) << "the turn has ended";

    workspace.readAhead(player);
    EXPECT_EQ(frontmostId(), kTrayHelper);
    setProcessId(kSnapMpv);
    workspace.readAhead(player);
    EXPECT_EQ(frontmostId(), kSnapMpv) << "a new read-ahead replaces the old";

    QCoreApplication::processEvents();
    workspace.readAhead(player + 1000);
    EXPECT_EQ(frontmostId(), kSnapMpv) << "a wrong guess, of a window that does not exist";
}

}  // namespace
}  // namespace marzipel
