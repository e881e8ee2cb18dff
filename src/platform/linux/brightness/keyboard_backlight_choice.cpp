#include "platform/linux/brightness/keyboard_backlight_choice.h"

namespace marzipel {

KeyboardWay chooseKeyboardWay(const KeyboardWaysFound& found) {
    if (found.gnomeSettingsDaemon) return KeyboardWay::gnomeSettingsDaemon;
    if (found.powerDevil) return KeyboardWay::powerDevil;
    if (found.upower) return KeyboardWay::upower;
    if (found.led) return KeyboardWay::led;
    return KeyboardWay::none;
}

}  // namespace marzipel
