// Sample pictures of the data-to-colour path, for a demo host and for looking at the
// tables: a synthetic scan (a tilt and a few bumps) shown through a colour table and
// written as a BMP file, and a sheet of every table.
#pragma once

#include <string>
#include <vector>

namespace orlex {

// A synthetic scan of rows x cols values spread over most of the int range: a tilt
// along x, two raised bumps and one pit. Deterministic; rows and cols below 1 give an
// empty array.
std::vector<int> SyntheticScan(int rows, int cols);

// Shows `data` (rows x cols, row 0 at the bottom) through colour table `table` between
// `low` and `high`, as a real-time view would (8-bit with palette, `realTime` true) or an
// off-line one (24-bit interpolated), and writes the bitmap as a BMP file at `path`.
// Returns false when the bitmap can't be made or the file can't be written.
bool WriteDataBmp(const std::string& path, const std::vector<int>& data, int rows, int cols, int table, double low,
                  double high, bool realTime);

// Writes into `directory` (which must exist; a trailing separator is optional) the
// synthetic scan through tables 0, 1, 3, 12, 15, 22 and 25, 8-bit and 24-bit
// ("scan-table12-8bit.bmp", "scan-table12-24bit.bmp", ...), and "colour-tables.bmp", a
// sheet with one band per table of the list. Builds the colour tables if needed.
// Returns the paths written.
std::vector<std::string> WriteColourSamples(const std::string& directory);

}  // namespace orlex
