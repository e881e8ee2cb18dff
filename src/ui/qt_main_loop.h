#pragma once

#include "ui/models/settings_view_model.h"

namespace marzipel {

/// Posts onto the Qt event loop, to run once the current event has been handled.
PostToMainLoop qtMainLoop();

}  // namespace marzipel
