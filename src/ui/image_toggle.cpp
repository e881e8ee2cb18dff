#include "ui/image_toggle.h"
