#include "ui/pixmaps.h"
