#pragma once

#include <cstdint>
#include <map>

#include "base/plist_value.h"
#include "base/status.h"

namespace marzipel {

/// Process id -> that process's power-management assertions, normally an array of string-keyed
/// dictionaries; any other shape is passed on as it came.
using AssertionsByProcess = std::map<std::int32_t, PlistValue>;

/// The platform's table of power assertions by process. Main thread.
class PowerAssertions {
public:
    virtual ~PowerAssertions() = default;
    /// The assertions held now; a failed query says what failed.
    virtual Result<AssertionsByProcess> assertionsByProcess() = 0;
};

}  // namespace marzipel
