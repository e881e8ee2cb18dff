#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "base/plist_value.h"

namespace marzipel {

/// The answer to one query of the power-management assertions held by each process.
struct PowerAssertionsReply {
    /// 0 on success.
    int result = 0;
    /// Process id -> that process's assertions, normally an array of string-keyed dictionaries;
    /// any other shape is passed on as it came.
    std::optional<std::map<std::int32_t, PlistValue>> table;
};

/// The platform's table of power assertions by process. Main thread.
class PowerAssertions {
public:
    virtual ~PowerAssertions() = default;
    virtual PowerAssertionsReply assertionsByProcess() = 0;
};

}  // namespace marzipel
