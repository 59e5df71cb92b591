#pragma once

namespace slipbook::store {

// Gives SQLite an allocator that keeps the blocks it frees and hands them out again for the next
// request of the same size class. A save builds a record of the whole run for each of its
// statements; with a large list in memory, the system allocator's search for such blocks costs
// more than the statements themselves. Takes effect only before SQLite's first use in the
// process (the first database opened); a later call changes nothing.
void UseSqliteMemoryPool();

}  // namespace slipbook::store
