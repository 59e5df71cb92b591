#include "tuneup/ui/frmTuneUp.h"

namespace slipbook::tuneup {}
