#include "weather/weatherlog.h"

namespace slipbook::weather {}  // namespace slipbook::weather
