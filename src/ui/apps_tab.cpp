#include "ui/apps_tab.h"
