#include "detection/running_application_adapter.h"

#include <algorithm>

namespace marzipel {

bool RunningApplicationProtocol::isAmong(
    const std::vector<RunningApplication>& applications) const {
    const RunningApplication& self = application();
    return std::ranges::any_of(applications,
                               [&](const RunningApplication& other) { return other == self; });
}

}  // namespace marzipel
