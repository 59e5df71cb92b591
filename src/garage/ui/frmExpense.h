#pragma once

#include "common/ui/recordwindow.h"
#include "shell/windowcontext.h"

namespace slipbook::garage {}  // namespace slipbook::garage
