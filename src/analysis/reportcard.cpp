#include "analysis/reportcard.h"

namespace slipbook::analysis {}  // namespace slipbook::analysis
