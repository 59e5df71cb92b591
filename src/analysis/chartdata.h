#pragma once

// The series the charts draw, and the least-squares line through them.

namespace slipbook::analysis {}  // namespace slipbook::analysis
