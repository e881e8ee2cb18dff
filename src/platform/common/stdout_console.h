#pragma once

#include "platform/console.h"

namespace marzipel {

/// The process's standard output, flushed after each line so that it interleaves with the
/// system's own messages in a terminal or the macOS Console.
class StdoutConsole final : public Console {
public:
    void printLine(std::string_view text) override;
};

}  // namespace marzipel
