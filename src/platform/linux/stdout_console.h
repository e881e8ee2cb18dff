#pragma once

#include "platform/console.h"

namespace marzipel {

/// The process's standard output, flushed after each line.
class StdoutConsole final : public Console {
public:
    void printLine(std::string_view text) override;
};

}  // namespace marzipel
