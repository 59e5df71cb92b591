#pragma once

// What each dial-in method would have predicted for each run, beside what happened.

namespace slipbook::analysis {}  // namespace slipbook::analysis
