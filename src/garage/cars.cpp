#include "garage/cars.h"
