#include "cli/help.h"

#include <algorithm>
#include <utility>

#include "cli/terminal_text.h"

namespace marovia::cli {
namespace {

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
  const std::size_t column = TextColumn(all, width);

  std::string text = Usage(*app, name) + "\n" + LaidOut(AsSentence(app->get_description()), width);
  for (const Group& group : groups)
    text += "\n" + group.name + ":\n" + LaidOut(group.entries, column, width);
  return text + "\n" + LaidOut(app->get_footer(), width);
}

}  // namespace marovia::cli
