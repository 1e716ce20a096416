#include "cli/help.h"

#include <utility>

namespace marovia::cli {
namespace {

constexpr std::size_t kHelpColumn = 30;

}  // namespace

HelpFormatter::HelpFormatter() {
  column_width(kHelpColumn);
  label("SUBCOMMAND", "COMMAND");
  label("Positionals", "Files");
}

HelpFormatter::HelpFormatter(std::vector<std::string> forms) : HelpFormatter() {
  forms_ = std::move(forms);
}

// One blank line between the groups of options, where the library puts two.
std::string HelpFormatter::make_help(const CLI::App* app, std::string name,
                                     CLI::AppFormatMode mode) const {
  std::string text = Formatter::make_help(app, std::move(name), mode);
  for (std::size_t gap = 0; (gap = text.find("\n\n\n", gap)) != std::string::npos;)
    text.erase(gap, 1);
  return text;
}

std::string HelpFormatter::make_usage(const CLI::App* app, std::string name) const {
  if (forms_.empty()) return Formatter::make_usage(app, std::move(name));
  std::string text;
  for (const std::string& form : forms_)
    text += (text.empty() ? "Usage: " : "       ") + name + " [OPTIONS] " + form + "\n";
  return text;
}

}  // namespace marovia::cli
