#include "ui/welcome_window.h"
