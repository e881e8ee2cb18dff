#include "ui/models/settings_view_model.h"

namespace marzipel {

SettingsViewModel::SettingsViewModel(PostToMainLoop post)
    : post_(std::move(post)), self_(std::make_shared<SettingsViewModel*>(this)) {}

void SettingsViewModel::keyReleased(const KeyRelease& event) {
    if (event.autoRepeat || event.key != 'D' || !event.shift || !event.command) return;
    std::weak_ptr<SettingsViewModel*> weak = self_;
    post_([weak] {
        if (auto self = weak.lock()) (*self)->toggle();
    });
}

void SettingsViewModel::toggle() {
    showAdvancedSettings_ = !showAdvancedSettings_;
    changed_.emit();
}

}  // namespace marzipel
