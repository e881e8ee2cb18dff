#include "platform/macos/mac_console.h"

#include <cstdio>

namespace marzipel {

void MacConsole::printLine(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    std::fflush(stdout);
}

}  // namespace marzipel
