#include "views/runfilter.h"

namespace slipbook::views {}  // namespace slipbook::views
