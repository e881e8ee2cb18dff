#include "platform/linux/brightness/keyboard_backlight.h"

#include <algorithm>
#include <cmath>

namespace marzipel {

float fractionOfLevel(int level, int maxLevel) {
    if (maxLevel <= 0) return 0.0f;
    return static_cast<float>(std::clamp(level, 0, maxLevel)) / static_cast<float>(maxLevel);
}

int levelOfFraction(float fraction, int maxLevel) {
    if (maxLevel <= 0 || !std::isfinite(fraction)) return 0;
    const long level = std::lround(static_cast<double>(fraction) * maxLevel);
    return static_cast<int>(std::clamp<long>(level, 0, maxLevel));
}

}  // namespace marzipel
