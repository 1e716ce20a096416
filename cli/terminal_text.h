// Text laid out in lines that fit a terminal.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace marovia::cli {

// Columns of the terminal that standard output is, held to what reads well; 80 where it is none.
std::size_t TerminalWidth();

// A term, and what it is.
struct Entry {
  std::string term;
  std::string text;
};

// The column at which the texts begin: behind the longest term, of those that leave room.
std::size_t TextColumn(const std::vector<Entry>& entries, std::size_t width);

// Each entry indented, its text beside the term or, where that is too long, beneath.
std::string LaidOut(const std::vector<Entry>& entries, std::size_t column, std::size_t width);

// Lines indented by two blanks are entries, whose text is set apart by two blanks or more; other
// lines are joined to paragraphs, which end at an empty line or an entry. No term is broken: it is
// there to be copied.
std::string LaidOut(const std::string& text, std::size_t width);

}  // namespace marovia::cli
