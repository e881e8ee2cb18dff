#include "platform/macos/mac_user_directories.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_bridge_objc.h"

namespace marzipel {

std::optional<std::string> MacUserDirectories::documentsDirectory() const {
    NSURL* documents = [NSFileManager.defaultManager URLsForDirectory:NSDocumentDirectory
                                                            inDomains:NSUserDomainMask]
                           .firstObject;
    if (!documents.path) return std::nullopt;
    return utf8String(documents.path);
}

}  // namespace marzipel
