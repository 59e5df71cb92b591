#include "garage/ui/frmExpense.h"
