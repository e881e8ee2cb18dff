#include "platform/linux/brightness/led_keyboard_backlight.h"

#include <fstream>
#include <set>
#include <string>

#include "platform/linux/dbus/dbus_call.h"

namespace marzipel {
namespace {

const dbus::Address kOwnSession{"org.freedesktop.login1", "/org/freedesktop/login1/session/auto",
                                "org.freedesktop.login1.Session"};

std::optional<int> readNumber(const std::filesystem::path& file) {
    std::ifstream in(file);
    int number = 0;
    if (!(in >> number)) return std::nullopt;
    return number;
}

}  // namespace

std::optional<std::filesystem::path> LedKeyboardBacklight::find(
    const std::filesystem::path& ledsFolder) {
    std::error_code error;
    std::set<std::filesystem::path> found;
    for (const auto& entry : std::filesystem::directory_iterator(ledsFolder, error)) {
        if (entry.path().filename().string().find("kbd_backlight") != std::string::npos) {
            found.insert(entry.path());
        }
    }
    if (found.empty()) return std::nullopt;
    return *found.begin();
}

Result<float> LedKeyboardBacklight::brightness() {
    std::optional<int> level = readNumber(led_ / "brightness");
    std::optional<int> maxLevel = readNumber(led_ / "max_brightness");
    if (!level || !maxLevel) {
        return Status::failure("Could not read the keyboard backlight from " + led_.string());
    }
    return fractionOfLevel(*level, *maxLevel);
}

void LedKeyboardBacklight::setBrightness(float value) {
    std::optional<int> maxLevel = readNumber(led_ / "max_brightness");
    if (!maxLevel) {
        log_.error(kAppLogSubsystem, kAppLogCategory,
                   "Could not read the highest keyboard backlight level from " + led_.string());
        return;
    }
    const auto level = static_cast<quint32>(levelOfFraction(value, *maxLevel));
    QDBusMessage reply =
        dbus::call(QDBusConnection::systemBus(), kOwnSession, "SetBrightness",
                   {QStringLiteral("leds"), QString::fromStdString(led_.filename().string()),
                    QVariant::fromValue(level)});
    if (reply.type() != QDBusMessage::ReplyMessage) {
        log_.error(
            kAppLogSubsystem, kAppLogCategory,
            "Could not set the keyboard backlight through logind: " + dbus::errorText(reply));
    }
}

}  // namespace marzipel
