#include "exchange/ui/frmExport.h"
