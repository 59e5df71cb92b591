#include "exchange/listexport.h"
