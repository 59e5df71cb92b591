#pragma once

// The log of weather readings: every reading the weather window works out, kept with its time,
// and the reading nearest a moment.

namespace slipbook::weather {}  // namespace slipbook::weather
