// A table as text, for eyes or for programs.
#pragma once

#include <string>
#include <vector>

namespace marovia::bench {

using Row = std::vector<std::string>;

// Tabs between the cells.
std::string TabSeparated(const Row& row);

// Blanks between the cells, which end in line: the first `namesLeft` columns begin there instead.
std::string Aligned(const std::vector<Row>& rows, std::size_t namesLeft);

// A row of a table in Markdown, and the first row with the rule below it.
std::string MarkdownRow(const Row& row);
std::string MarkdownHead(const Row& row);

}  // namespace marovia::bench
