#include "tuneup/ui/frmTuneUpBase.h"

namespace slipbook::tuneup {}
