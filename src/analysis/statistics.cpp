#include "analysis/statistics.h"

namespace slipbook::analysis {}  // namespace slipbook::analysis
