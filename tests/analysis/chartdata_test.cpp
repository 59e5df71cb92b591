#include "analysis/chartdata.h"

#include <gtest/gtest.h>
