#include "exchange/runimport.h"

namespace slipbook::exchange {}  // namespace slipbook::exchange
