#include "prediction/setupruns.h"
