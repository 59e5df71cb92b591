#include "garage/ui/frmCar.h"
