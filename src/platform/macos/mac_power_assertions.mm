#include "platform/macos/mac_power_assertions.h"

#include <IOKit/pwr_mgt/IOPMLib.h>

#include <cstdio>
#include <string>

#include "platform/macos/foundation_bridge_objc.h"

namespace marzipel {

Result<AssertionsByProcess> MacPowerAssertions::assertionsByProcess() {
    CFDictionaryRef copied = nullptr;
    const IOReturn result = IOPMCopyAssertionsByProcess(&copied);
    NSDictionary* table = CFBridgingRelease(copied);
    if (result != kIOReturnSuccess) {
        char code[16];
        std::snprintf(code, sizeof code, "0x%08x", static_cast<unsigned>(result));
        return Status::failure(
            std::string("IOPMCopyAssertionsByProcess failed with IOKit return code ") + code);
    }
    if (![table isKindOfClass:NSDictionary.class]) return AssertionsByProcess{};
    AssertionsByProcess byProcess;
    for (id processId in table) {
        if (![processId isKindOfClass:NSNumber.class]) return AssertionsByProcess{};
        std::optional<PlistValue> assertions = plistValue(table[processId]);
        if (!assertions) return AssertionsByProcess{};
        byProcess.insert_or_assign([processId intValue], std::move(*assertions));
    }
    return byProcess;
}

}  // namespace marzipel
