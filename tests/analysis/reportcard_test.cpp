#include "analysis/reportcard.h"

#include <gtest/gtest.h>
