#include "views/ui/frmView.h"

namespace slipbook::views {}  // namespace slipbook::views
