#include "ui/models/settings_view_model.h"

#include <gtest/gtest.h>

#include <vector>

namespace marzipel {
namespace {

struct SettingsViewModelTest : testing::Test {
    std::vector<std::function<void()>> posted;
    PostToMainLoop post = [this](std::function<void()> task) { posted.push_back(std::move(task)); };
    std::unique_ptr<SettingsViewModel> model = std::make_unique<SettingsViewModel>(post);

    void runPosted() {
        auto tasks = std::move(posted);
        posted.clear();
        for (auto& task : tasks) task();
    }
};

// Which key combinations toggle is checked through the settings window; this covers the
// deferred toggle, which the window test cannot see.
TEST_F(SettingsViewModelTest, TogglesWhenItsPostedTaskRunsAndNotOnceTheModelIsGone) {
    int changes = 0;
    auto changed = model->onChanged([&] { ++changes; });
    model->keyReleased({.key = 'E', .shift = true, .command = true});
    EXPECT_TRUE(posted.empty());
    model->keyReleased({.key = 'D', .shift = true, .command = true});
    EXPECT_FALSE(model->showAdvancedSettings()) << "not while the key event is handled";
    runPosted();
    EXPECT_TRUE(model->showAdvancedSettings());
    EXPECT_EQ(changes, 1);

    model->keyReleased({.key = 'D', .shift = true, .command = true});
    model.reset();
    // The new model most likely takes the freed place, where a stale toggle would show.
    model = std::make_unique<SettingsViewModel>(post);
    runPosted();
    EXPECT_FALSE(model->showAdvancedSettings());
}

}  // namespace
}  // namespace marzipel
