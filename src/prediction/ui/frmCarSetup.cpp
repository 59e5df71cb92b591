#include "prediction/ui/frmCarSetup.h"
