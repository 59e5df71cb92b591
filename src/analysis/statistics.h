#pragma once

// Figures of a car's runs: reaction times, ETs, consistency, bests per track.

namespace slipbook::analysis {}  // namespace slipbook::analysis
