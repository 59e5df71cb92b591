#include "prediction/ui/frmETPrediction.h"
