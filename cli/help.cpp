#include "cli/help.h"

#include <algorithm>
#include <cstddef>
#include <sstream>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace marovia::cli {
namespace {

// A term, and what it is.
struct Entry {
  std::string term;
  std::string text;
};

constexpr std::size_t kWidthWithoutTerminal = 80;
constexpr std::size_t kLeastWidth = 40;
constexpr std::size_t kMostWidth = 100;  // longer lines are hard to read
constexpr std::size_t kGap = 2;          // before a term, and behind it
constexpr std::size_t kLeastTextOfExample = 24;

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

// Columns of the terminal that standard output is, held to what reads well; 80 where it is none.
std::size_t TerminalWidth() {
  winsize size{};
  if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0)
    return kWidthWithoutTerminal;
  return std::clamp<std::size_t>(size.ws_col, kLeastWidth, kMostWidth);
}

// The column at which the texts begin, `most` or less: behind the longest term that ends before it.
std::size_t TextColumn(const std::vector<Entry>& entries, std::size_t most) {
  std::size_t column = 2 * kGap;
  for (const Entry& entry : entries) {
    const std::size_t behind = kGap + entry.term.size() + kGap;
    if (!entry.text.empty() && behind <= most) column = std::max(column, behind);
  }
  return column;
}

// Each entry indented, its text beside the term or, where that is too long, beneath.
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

// Lines indented by two blanks are entries, whose text is set apart by two blanks or more; other
// lines are joined to paragraphs, which end at an empty line or an entry. No term is broken: it is
// there to be copied.
std::string LaidOut(const std::string& text, std::size_t width) {
  std::string lines;
  for (Blocks blocks(text); !blocks.AtEnd();) {
    if (blocks.TakeGap()) {
      lines += "\n";
    } else if (blocks.AtEntry()) {
      const std::vector<Entry> entries = blocks.TakeEntries();
      lines += LaidOut(entries, TextColumn(entries, width - kLeastTextOfExample), width);
    } else {
      lines += Wrapped(blocks.TakeParagraph(), width, 0);
    }
  }
  return lines;
}

struct Group {
  std::string name;
  std::vector<Entry> entries;
};

void Add(std::vector<Group>& groups, const std::string& name, Entry entry) {
  if (name.empty()) return;  // hidden
  auto group = std::ranges::find(groups, name, &Group::name);
  if (group == groups.end()) group = groups.insert(group, {name, {}});
  group->entries.push_back(std::move(entry));
}

Entry EntryOf(const CLI::Option& option) {
  const std::string& values = option.get_option_text();
  const std::string name = option.get_name(option.get_positional(), !option.get_positional());
  return {name + (values.empty() ? "" : " " + values), option.get_description()};
}

// Files first, then options and commands in the order in which they were added.
std::vector<Group> GroupsOf(const CLI::App& app) {
  std::vector<Group> groups;
  for (const bool files : {true, false})
    for (const CLI::Option* option : app.get_options())
      if (option->get_positional() == files) Add(groups, option->get_group(), EntryOf(*option));
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; }))
    Add(groups, command->get_group(), {command->get_name(), command->get_description()});
  return groups;
}

std::string DefaultForm(const CLI::App& app) {
  std::string form = "[OPTIONS]";
  for (const CLI::Option* option : app.get_options()) {
    if (!option->get_positional() || option->get_group().empty()) continue;
    const std::string name = option->get_name(true, false);
    form += option->get_required() ? " " + name : " [" + name + "...]";
  }
  return form;
}

std::string AsSentence(const std::string& description) {
  return description + (description.ends_with('.') ? "\n" : ".\n");
}

}  // namespace

HelpFormatter::HelpFormatter(std::vector<std::string> forms) : forms_(std::move(forms)) {}

std::string HelpFormatter::Usage(const CLI::App& app, const std::string& name) const {
  const std::vector<std::string> forms =
      forms_.empty() ? std::vector<std::string>{DefaultForm(app)} : forms_;
  std::string text;
  for (const std::string& form : forms)
    text += (text.empty() ? "Usage: " : "       ") + name + " " + form + "\n";
  return text;
}

std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode /*mode*/) const {
  const std::size_t width = TerminalWidth();
  const std::vector<Group> groups = GroupsOf(*app);
  std::vector<Entry> all;
  for (const Group& group : groups)
    all.insert(all.end(), group.entries.begin(), group.entries.end());
  // An option of many values stands alone, so that it does not press all other texts to the border.
  const std::size_t column = TextColumn(all, width * 3 / 7);

  std::string text = Usage(*app, name) + "\n" + LaidOut(AsSentence(app->get_description()), width);
  for (const Group& group : groups)
    text += "\n" + group.name + ":\n" + LaidOut(group.entries, column, width);
  return text + "\n" + LaidOut(app->get_footer(), width);
}

}  // namespace marovia::cli
