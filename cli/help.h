// How the help of the tool and of its commands is laid out.
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

}  // namespace marovia::cli
