#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace workbench {

struct CsvRow {
    std::size_t line = 1; // where it begins in the file
    std::vector<std::string> fields;
};

struct CsvTable {
    char separator = ',';
    std::vector<CsvRow> rows; // the names of the columns first; without empty lines
};

// Reads comma-separated values as programs write them: with or without a byte-order mark, lines that end in
// LF or CRLF, quoted fields with line ends in them; semicolons or tabs where the first line has more of them.
// Throws ImportError for quotes that do not close and for text behind a closing one.
[[nodiscard]] CsvTable readCsv(std::string_view text);

} // namespace workbench
