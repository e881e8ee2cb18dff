#include "platform/macos/mac_power_assertions.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

#include "platform/macos/foundation_bridge_objc.h"

namespace marzipel {

PowerAssertionsReply MacPowerAssertions::assertionsByProcess() {
    CFDictionaryRef copied = nullptr;
    PowerAssertionsReply reply;
    reply.result = IOPMCopyAssertionsByProcess(&copied);
    NSDictionary* table = CFBridgingRelease(copied);
    if (reply.result != kIOReturnSuccess || ![table isKindOfClass:NSDictionary.class]) {
        return reply;
    }
    std::map<std::int32_t, PlistValue> byProcess;
    for (id processId in table) {
        if (![processId isKindOfClass:NSNumber.class]) return reply;
        std::optional<PlistValue> assertions = plistValue(table[processId]);
        if (!assertions) return reply;
        byProcess.insert_or_assign([processId intValue], std::move(*assertions));
    }
    reply.table = std::move(byProcess);
    return reply;
}

}  // namespace marzipel
