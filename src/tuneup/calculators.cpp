#include "tuneup/calculators.h"

namespace slipbook::tuneup {}
