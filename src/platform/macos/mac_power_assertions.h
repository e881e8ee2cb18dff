#pragma once

#include "platform/power_assertions.h"

namespace marzipel {

/// IOKit power management's assertions by process.
class MacPowerAssertions final : public PowerAssertions {
public:
    /// The table is absent when IOKit gives none or one with a key that is not a process id.
    PowerAssertionsReply assertionsByProcess() override;
};

}  // namespace marzipel
