#pragma once

#include <string_view>

#include "platform/brightness_service.h"

namespace marzipel {

/// The switch that keeps the blue-light filter off while active, in the words of the desktop
/// the user sees it on.
std::string_view blueLightToggleLabel(BlueLightFilterName name);

}  // namespace marzipel
