#include "ui/icon_set.h"
