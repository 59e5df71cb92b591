#pragma once

namespace slipbook::garage {}  // namespace slipbook::garage
