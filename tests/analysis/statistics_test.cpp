#include "analysis/statistics.h"

#include <gtest/gtest.h>
