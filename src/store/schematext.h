#pragma once

namespace slipbook::store {

// The script that makes the template's tables, in the program's dialect.
const char* LogbookSchemaScript();

}  // namespace slipbook::store
