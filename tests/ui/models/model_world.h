#pragma once

#include <gtest/gtest.h>

#include "support/temp_folder.h"
#include "ui/ui_world.h"

namespace marzipel {

/// The windows' world for the Qt-free models, with a real Documents folder so that the debug
/// log can be opened.
struct ModelWorld : testing::Test, UiWorld {
    TempFolder home;

    ModelWorld() { sim.userDirectories.documents = home.path().string(); }
};

}  // namespace marzipel
