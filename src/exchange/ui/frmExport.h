#pragma once

namespace slipbook::exchange {}  // namespace slipbook::exchange
