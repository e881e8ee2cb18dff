#include "ui/app_row.h"
