#include "views/ui/frmFilter.h"

namespace slipbook::views {}  // namespace slipbook::views
