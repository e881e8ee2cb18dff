#include "platform/linux/windows/window_source_choice.h"

#include <gtest/gtest.h>

namespace marzipel {

TEST(WindowSourceChoiceTest, PicksTheSourceOfTheSessionsCompositor) {
    struct Case {
        SessionFacts session;
        WindowSourceKind kind;
    };
    const Case cases[] = {
        {{"x11", "KDE", true, true, true}, WindowSourceKind::x11},
        {{"", "", false, false, false}, WindowSourceKind::x11},
        {{"", "", true, false, false}, WindowSourceKind::none},
        {{"wayland", "KDE", true, true, true}, WindowSourceKind::sway},
        {{"wayland", "KDE", true, false, false}, WindowSourceKind::kwin},
        {{"wayland", "", true, false, true}, WindowSourceKind::kwin},
        {{"wayland", "ubuntu:GNOME", true, false, false}, WindowSourceKind::gnomeShell},
        {{"wayland", "GNOME-Flashback", true, false, false}, WindowSourceKind::none},
        {{"wayland", "Hyprland", true, false, false}, WindowSourceKind::none},
    };
    for (const Case& c : cases) {
        const auto choice = chooseWindowSource(c.session);
        EXPECT_EQ(choice.kind, c.kind) << c.session.sessionType << "/" << c.session.currentDesktop;
        EXPECT_FALSE(choice.reason.empty());
    }
}

}  // namespace marzipel
