#pragma once

namespace marzipel {}  // namespace marzipel
