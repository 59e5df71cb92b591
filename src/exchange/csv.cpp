#include "exchange/csv.h"
