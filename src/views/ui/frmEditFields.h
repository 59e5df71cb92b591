#pragma once

namespace slipbook::views {}  // namespace slipbook::views
