#pragma once

// Time slips read from a CSV file into the logbook: the file's columns matched to run fields,
// each row checked as the run window checks a run, and the rows that pass saved together.

namespace slipbook::exchange {}  // namespace slipbook::exchange
