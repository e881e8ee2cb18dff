#include "platform/common/stdout_console.h"

#include <iostream>

namespace marzipel {

void StdoutConsole::printLine(std::string_view text) { std::cout << text << '\n' << std::flush; }

}  // namespace marzipel
