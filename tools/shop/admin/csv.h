// Comma-separated values (RFC 4180), by libcsv.
#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace shop {

using CsvRow = std::vector<std::string>;

// Returns the rows; a byte order mark before them and empty lines are skipped. Throws
// std::runtime_error for a quote out of place.
[[nodiscard]] std::vector<CsvRow> ReadCsv(const std::string &text);

// Writes one row, every field in quotes, ended by CR LF.
void WriteCsv(std::ostream &out, const CsvRow &row);

} // namespace shop
