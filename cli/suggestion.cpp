#include <algorithm>
#include <cctype>
#include <cstddef>
#include <optional>

#include "cli/help.h"

namespace marovia::cli {
namespace {

// In lower case, without leading dashes and what is set by "=".
std::string Bare(const std::string& word) {
  const std::size_t begin = std::min(word.find_first_not_of('-'), word.size());
  std::string bare = word.substr(begin, word.find('=') - begin);
  std::ranges::transform(bare, bare.begin(), [](unsigned char c) { return std::tolower(c); });
  return bare;
}

// Insertions, deletions, replacements, and swaps of neighbours that turn one word into the other.
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
  for (std::size_t i = 0; i <= a.size(); ++i) {
    for (std::size_t k = 0; k <= b.size(); ++k) {
      if (i == 0 || k == 0) {
        steps[i][k] = i + k;
        continue;
      }
      const std::size_t replaced = steps[i - 1][k - 1] + (a[i - 1] == b[k - 1] ? 0 : 1);
      steps[i][k] = std::min({steps[i - 1][k] + 1, steps[i][k - 1] + 1, replaced});
      if (i > 1 && k > 1 && a[i - 1] == b[k - 2] && a[i - 2] == b[k - 1])
        steps[i][k] = std::min(steps[i][k], steps[i - 2][k - 2] + 1);
    }
  }
  return steps[a.size()][b.size()];
}

// A third of the letters may be wrong; a start of three letters or more counts as one mistake.
std::optional<std::size_t> Mistakes(const std::string& word, const std::string& candidate) {
  constexpr std::size_t kStart = 3;
  const std::size_t distance = Distance(word, candidate);
  if (distance <= std::max(word.size(), candidate.size()) / 3) return distance;
  if (word.size() >= kStart && candidate.starts_with(word)) return 1;
  return std::nullopt;
}

std::vector<std::string> CommandsOf(const CLI::App& tool) {
  std::vector<std::string> names = {"help"};
  for (const CLI::App* command : tool.get_subcommands([](const CLI::App*) { return true; }))
    names.push_back(command->get_name());
  return names;
}

std::vector<std::string> OptionsOf(const CLI::App& app) {
  std::vector<std::string> names;
  for (const CLI::Option* option : app.get_options())
    for (const std::string& name : option->get_lnames()) names.push_back("--" + name);
  return names;
}

std::string WithSuggestion(const std::string& complaint, const std::string& word,
                           const std::vector<std::string>& candidates) {
  std::string list;
  for (const std::string& one : Meant(word, candidates)) list += (list.empty() ? "" : " or ") + one;
  return list.empty() ? complaint : complaint + "; did you mean " + list + "?";
}

bool IsOption(const std::string& word) {
  return word.size() > 1 && word.front() == '-';
}

std::string ComplaintOfOption(const CLI::App& app, const std::string& word) {
  const std::string name = word.substr(0, word.find('='));
  return WithSuggestion("'" + name + "' is not an option of " + app.get_name(), word,
                        OptionsOf(app));
}

}  // namespace

std::vector<std::string> Meant(const std::string& word,
                               const std::vector<std::string>& candidates) {
  std::vector<std::string> meant;
  std::size_t least = std::string::npos;
  const std::string bare = Bare(word);
  for (const std::string& candidate : candidates) {
    const std::size_t mistakes = Mistakes(bare, Bare(candidate)).value_or(std::string::npos);
    if (mistakes < least) meant.clear();
    least = std::min(least, mistakes);
    if (mistakes == least && mistakes != std::string::npos) meant.push_back(candidate);
  }
  return meant;
}

std::string ComplaintOfCommand(const CLI::App& tool, const std::string& word) {
  return WithSuggestion("'" + word + "' is not a command", word, CommandsOf(tool));
}

std::string ComplaintOfUnknown(const CLI::App& tool) {
  const std::vector<std::string> before = tool.remaining(false);
  const std::vector<CLI::App*> chosen = tool.get_subcommands();
  if (chosen.empty())
    return IsOption(before.front()) ? ComplaintOfOption(tool, before.front())
                                    : ComplaintOfCommand(tool, before.front());
  const CLI::App& command = *chosen.front();
  if (!before.empty())
    return "'" + before.front() + "' stands before the command; options follow it";
  const std::vector<std::string> words = command.remaining(false);
  const auto option = std::ranges::find_if(words, IsOption);
  return option != words.end() ? ComplaintOfOption(command, *option)
                               : "'" + words.front() + "' is one name too many";
}

}  // namespace marovia::cli
