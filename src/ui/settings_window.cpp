#include "ui/settings_window.h"
