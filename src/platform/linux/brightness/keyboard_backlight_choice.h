#pragma once

namespace marzipel {

/// The ways of reaching the keyboard backlight, each through a service that answers for one.
enum class KeyboardWay { gnomeSettingsDaemon, powerDevil, upower, led, none };

/// Which of them answer right now.
struct KeyboardWaysFound {
    bool gnomeSettingsDaemon = false;
    bool powerDevil = false;
    bool upower = false;
    bool led = false;
};

/// The desktop's power daemon comes first where one answers: it keeps its own copy of the level,
/// dims from it when the session goes idle and writes it back on activity, so a level set
/// behind its back comes back on. Then UPower, then the kernel's LED.
KeyboardWay chooseKeyboardWay(const KeyboardWaysFound& found);

}  // namespace marzipel
