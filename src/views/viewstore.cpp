#include "views/viewstore.h"

namespace slipbook::views {}  // namespace slipbook::views
