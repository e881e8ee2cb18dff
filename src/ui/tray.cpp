#include "ui/tray.h"
