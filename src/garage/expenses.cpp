#include "garage/expenses.h"
