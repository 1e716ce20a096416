#include "cli/terminal_text.h"

#include <algorithm>
#include <sstream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace marovia::cli {
namespace {

constexpr std::size_t kWidthWithoutTerminal = 80;
constexpr std::size_t kLeastWidth = 40;
constexpr std::size_t kMostWidth = 100;  // longer lines are hard to read
constexpr std::size_t kGap = 2;          // before a term, and behind it
constexpr std::size_t kLeastText = 24;   // columns that a term must leave to its text

std::string Blanks(std::size_t count) {
  std::string blanks;
  blanks.resize(count, ' ');
  return blanks;
}

// The words in lines of `width`, all but the first indented; a word that is longer stands alone.
std::string Wrapped(const std::string& text, std::size_t width, std::size_t indent) {
  std::istringstream words(text);
  std::string lines;
  std::size_t column = indent;
  for (std::string word; words >> word; column += word.size()) {
    if (!lines.empty() && column + 1 + word.size() > width) {
      lines += "\n" + Blanks(indent);
      column = indent;
    } else if (!lines.empty()) {
      lines += " ";
      ++column;
    }
    lines += word;
  }
  return lines + "\n";
}

bool IsEntry(const std::string& line) {
  return line.starts_with(Blanks(kGap));
}

Entry EntryOf(const std::string& line) {
  const std::size_t end = std::min(line.find(Blanks(kGap), kGap), line.size());
  return {line.substr(kGap, end - kGap), line.substr(end)};
}

// What comes next of a text, taken off its lines.
class Blocks {
 public:
  explicit Blocks(const std::string& text) : lines_(text) { Next(); }

  [[nodiscard]] bool AtEnd() const { return atEnd_; }
  [[nodiscard]] bool AtEntry() const { return IsEntry(line_); }

  std::vector<Entry> TakeEntries() {
    std::vector<Entry> entries;
    for (; !atEnd_ && IsEntry(line_); Next()) entries.push_back(EntryOf(line_));
    return entries;
  }
  std::string TakeParagraph() {
    std::string words;
    for (; !atEnd_ && !line_.empty() && !IsEntry(line_); Next()) words += line_ + " ";
    return words;
  }
  bool TakeGap() {
    if (atEnd_ || !line_.empty()) return false;
    Next();
    return true;
  }

 private:
  void Next() { atEnd_ = !std::getline(lines_, line_); }

  std::istringstream lines_;
  std::string line_;
  bool atEnd_ = false;
};

}  // namespace

std::size_t TerminalWidth() {
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
    return kWidthWithoutTerminal;
  return std::clamp<std::size_t>(size.ws_col, kLeastWidth, kMostWidth);
}

std::size_t TextColumn(const std::vector<Entry>& entries, std::size_t width) {
  const std::size_t most = width - kLeastText;
  std::size_t column = 2 * kGap;
  for (const Entry& entry : entries) {
    const std::size_t behind = kGap + entry.term.size() + kGap;
    if (!entry.text.empty() && behind <= most) column = std::max(column, behind);
  }
  return column;
}

std::string LaidOut(const std::vector<Entry>& entries, std::size_t column, std::size_t width) {
  std::string text;
  for (const auto& [term, words] : entries) {
    text += Blanks(kGap) + term;
    if (words.empty()) {
      text += "\n";
      continue;
    }
    const std::size_t behind = kGap + term.size() + kGap;
    text += behind > column ? "\n" + Blanks(column) : Blanks(column - behind + kGap);
    text += Wrapped(words, width, column);
  }
  return text;
}

std::string LaidOut(const std::string& text, std::size_t width) {
  std::string lines;
  for (Blocks blocks(text); !blocks.AtEnd();) {
    if (blocks.TakeGap()) {
      lines += "\n";
    } else if (blocks.AtEntry()) {
      const std::vector<Entry> entries = blocks.TakeEntries();
      lines += LaidOut(entries, TextColumn(entries, width), width);
    } else {
      lines += Wrapped(blocks.TakeParagraph(), width, 0);
    }
  }
  return lines;
}

}  // namespace marovia::cli
