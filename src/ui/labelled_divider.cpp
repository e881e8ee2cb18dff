#include "ui/labelled_divider.h"
