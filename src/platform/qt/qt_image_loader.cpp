#include "platform/qt/qt_image_loader.h"
