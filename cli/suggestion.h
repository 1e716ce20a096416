// What a user may have meant by a word that is not understood.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace marovia::cli {

// The candidates that are the fewest keystrokes from the word, or that it is the start of; none
// where no candidate is near.
std::vector<std::string> Meant(const std::string& word, const std::vector<std::string>& candidates);

// What is wrong with the words of a command line that the parser had no use for, in one line.
std::string ComplaintOfUnknown(const CLI::App& tool);

// The same of a word that should be a command.
std::string ComplaintOfCommand(const CLI::App& tool, const std::string& word);

}  // namespace marovia::cli
