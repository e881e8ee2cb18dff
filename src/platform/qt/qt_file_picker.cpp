#include "platform/qt/qt_file_picker.h"
