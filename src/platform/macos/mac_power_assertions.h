#pragma once

#include "platform/power_assertions.h"

namespace marzipel {

/// IOKit power management's assertions by process.
class MacPowerAssertions final : public PowerAssertions {
public:
    /// A failure carries IOKit's return code. A table IOKit does not give, or gives with a key
    /// that is not a process id or a value that is not a property list, reads as empty.
    Result<AssertionsByProcess> assertionsByProcess() override;
};

}  // namespace marzipel
