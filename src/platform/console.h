#pragma once

#include <string_view>

namespace marzipel {

/// The process's standard output, for the few messages the program prints there.
class Console {
public:
    virtual ~Console() = default;
    /// Writes `text` followed by a line feed.
    virtual void printLine(std::string_view text) = 0;
};

}  // namespace marzipel
