#pragma once

#include <iosfwd>
#include <memory>
#include <string>

namespace marzipel {

/// Runs a script of world changes, events, settings and catalogue commands against the real
/// core on the in-memory platform, printing one line per thing that happened.
class SimDriver {
public:
    /// `home` holds the preferences file and the Documents folder of the debug log.
    SimDriver(const std::string& home, std::ostream& out);
    ~SimDriver();

    /// Runs `script` line by line. Returns the exit status: 0 at the end of the script or after
    /// a termination, 2 after reporting a bad line on `err`.
    int run(std::istream& script, std::ostream& err);

private:
    struct World;
    std::unique_ptr<World> world_;
};

}  // namespace marzipel
