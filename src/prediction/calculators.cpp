#include "prediction/calculators.h"
