#pragma once

namespace slipbook::tuneup {}
