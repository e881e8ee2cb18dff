#include "ui/key_release_filter.h"
