#include "bench/table_text.h"

#include <algorithm>
#include <cstddef>

namespace marovia::bench {
namespace {

constexpr std::size_t kGap = 2;

std::vector<std::size_t> WidthsOf(const std::vector<Row>& rows) {
  std::vector<std::size_t> widths;
  for (const Row& row : rows) {
    widths.resize(std::max(widths.size(), row.size()));
    for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], row[i].size());
  }
  return widths;
}

}  // namespace

std::string TabSeparated(const Row& row) {
  std::string line;
  for (const std::string& cell : row) line += (line.empty() ? "" : "\t") + cell;
  return line + "\n";
}

std::string Aligned(const std::vector<Row>& rows, std::size_t namesLeft) {
  const std::vector<std::size_t> widths = WidthsOf(rows);
  std::string text;
  for (const Row& row : rows) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      const std::string padding(widths[i] - row[i].size(), ' ');
      if (i > 0) text += std::string(kGap, ' ');
      text += i < namesLeft ? row[i] + padding : padding + row[i];
    }
    text += "\n";
  }
  return text;
}

std::string MarkdownRow(const Row& row) {
  std::string line = "|";
  for (const std::string& cell : row) line += " " + cell + " |";
  return line + "\n";
}

std::string MarkdownHead(const Row& row) {
  return MarkdownRow(row) + MarkdownRow(Row(row.size(), "---"));
}

}  // namespace marovia::bench
