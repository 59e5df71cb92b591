#include "analysis/chartdata.h"

namespace slipbook::analysis {}  // namespace slipbook::analysis
