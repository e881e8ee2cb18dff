#include "ui/general_tab.h"
