#include "views/ui/frmEditFields.h"

namespace slipbook::views {}  // namespace slipbook::views
