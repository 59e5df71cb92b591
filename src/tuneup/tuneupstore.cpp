#include "tuneup/tuneupstore.h"

namespace slipbook::tuneup {}
