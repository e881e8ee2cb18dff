#include "platform/plist/plist_codec.h"
