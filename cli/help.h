// How the help of the tool and of its commands is laid out, and what a user may have meant by a
// word that is not understood.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace marovia::cli {

class HelpFormatter : public CLI::FormatterBase {
 public:
  HelpFormatter() = default;
  // The forms in which a command may be called, one a line, without its name.
  explicit HelpFormatter(std::vector<std::string> forms);

  std::string make_help(const CLI::App* app, std::string name,
                        CLI::AppFormatMode mode) const override;

  [[nodiscard]] std::string Usage(const CLI::App& app, const std::string& name) const;

 private:
  std::vector<std::string> forms_;
};

// The candidates that are the fewest keystrokes from the word, or that it is the start of; none
// where no candidate is near.
std::vector<std::string> Meant(const std::string& word, const std::vector<std::string>& candidates);

// What is wrong with the words of a command line that the parser had no use for, in one line.
std::string ComplaintOfUnknown(const CLI::App& tool);

// The same of a word that should be a command.
std::string ComplaintOfCommand(const CLI::App& tool, const std::string& word);

}  // namespace marovia::cli
