#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

#include "marovia/error.h"
#include "marovia/version.h"

#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/help.h"

namespace marovia::cli {
namespace {

using Words = std::vector<std::string>;

constexpr const char* kFooter =
    "Start with:\n"
    "  marovia compress photo.pgm photo.awh\n"
    "  marovia decompress photo.awh decoded.pgm\n"
    "  marovia measure photo.pgm decoded.pgm\n"
    "\n"
    "'marovia help COMMAND' and 'marovia COMMAND --help' tell what a command does.\n"
    "\n"
    "Exit status:\n"
    "  0  done\n"
    "  1  failed\n"
    "  2  wrong usage\n"
    "  3  done, but bits that were asked for are missing: the file was cut short\n"
    "  4  a file could not be read or written\n"
    "  5  not a file that is read here\n"
    "  6  over a limit on pixels or sides\n";

HelpFormatter HelpForms() {
  return HelpFormatter({"COMMAND [OPTIONS] [FILE...]", "help [COMMAND]", "--help | --version"});
}

void DescribeTool(CLI::App& tool, Action& action) {
  tool.formatter(std::make_shared<HelpFormatter>());
  tool.set_help_flag("-h,--help", "Print this help");
  tool.set_version_flag("-V,--version", std::string("marovia ") + kVersion, "Print the version");
  tool.require_subcommand(0, 1);
  tool.footer(kFooter);
  AddCompress(tool, action);
  AddDecompress(tool, action);
  AddMeasure(tool, action);
  AddInfo(tool, action);
  AddTruncate(tool, action);
  AddCurve(tool, action);
  AddDifference(tool, action);
  AddThumbnail(tool, action);
  // Only now, for a command takes over the one that is there when it is added.
  tool.formatter(std::make_shared<HelpFormatter>(HelpForms()));
}

// The name of the command that the words chose, for the pointer to its help.
std::string CommandName(const CLI::App& tool) {
  const auto commands = tool.get_subcommands();
  return commands.empty() ? "marovia" : "marovia " + commands.front()->get_name();
}

// "help" asks for the tool's help, "help COMMAND" for that of the command.
ExitStatus PrintHelp(const CLI::App& tool, const Words& words, Console& console) {
  if (words.size() > 2)
    Fail(Errc::kInvalidArgument, "help tells of one command at a time (see marovia --help)");
  if (words.size() == 1 || words[1] == "help") {
    console.Print(tool.help());
    return ExitStatus::kDone;
  }
  const auto commands =
      tool.get_subcommands([&](const CLI::App* one) { return one->get_name() == words[1]; });
  if (commands.empty())
    Fail(Errc::kInvalidArgument, ComplaintOfCommand(tool, words[1]) + " (see marovia --help)");
  console.Print(commands.front()->help(tool.get_name()));
  return ExitStatus::kDone;
}

// A script that forgot the command must not go on as if something had been done.
ExitStatus PrintHelpOfNoCommand(const CLI::App& tool, Console& console) {
  console.Print(tool.help());
  return ExitStatus::kFailed;
}

ExitStatus RefuseNoCommand(const CLI::App& tool, Console& console) {
  console.Complain("'--' is not a command (see marovia --help)");
  console.PassOn({{}, HelpForms().Usage(tool, tool.get_name()), {}, {}});
  return ExitStatus::kUsage;
}

// The library tells of a missing value, or one too many, in terms of its types.
std::string InWords(const CLI::ParseError& error) {
  const std::string text = error.what();
  const std::string option = text.substr(0, text.find(':'));
  if (text.ends_with(" missing")) return option + " needs a value";
  return text.find(": At Most 1") == std::string::npos ? text : option + " can be given only once";
}

void Parse(CLI::App& tool, const Words& words) {
  try {
    tool.parse(Words(words.rbegin(), words.rend()));
  } catch (const CLI::Success&) {
    throw;
  } catch (const CLI::ExtrasError&) {
    Fail(Errc::kInvalidArgument,
         ComplaintOfUnknown(tool) + " (see " + CommandName(tool) + " --help)");
  } catch (const CLI::ParseError& error) {
    Fail(Errc::kInvalidArgument, InWords(error) + " (see " + CommandName(tool) + " --help)");
  }
}

ExitStatus ParseAndRun(const Words& words, Console& console) {
  Action action;
  CLI::App tool("Wavelet compression of grey images, lossy and lossless.", "marovia");
  DescribeTool(tool, action);
  if (words.empty()) return PrintHelpOfNoCommand(tool, console);
  if (words.front() == "--") return RefuseNoCommand(tool, console);
  if (words.front() == "help") return PrintHelp(tool, words, console);
  try {
    Parse(tool, words);
  } catch (const CLI::CallForVersion& version) {
    console.Print(std::string(version.what()) + "\n");
    return ExitStatus::kDone;
  } catch (const CLI::CallForHelp&) {
    console.Print(tool.help());
    return ExitStatus::kDone;
  }
  return action ? action(console) : PrintHelpOfNoCommand(tool, console);
}

// The end where memory runs out in a place that can throw nothing on: the destructor of a value, or
// the making of the message that tells of it.
[[noreturn]] void EndWithoutMemory() {
  constexpr std::string_view kLine = "marovia: out of memory\n";
  try {
    if (const std::exception_ptr last = std::current_exception()) std::rethrow_exception(last);
  } catch (const std::bad_alloc&) {
    static_cast<void>(::write(STDERR_FILENO, kLine.data(), kLine.size()));
    std::_Exit(static_cast<int>(ExitStatus::kFailed));
  } catch (...) {
    std::abort();
  }
  std::abort();
}

}  // namespace

}  // namespace marovia::cli

int main(int argc, char** argv) {
  // A file that outgrows a limit on file sizes is then an error of the write, not the end of us.
  static_cast<void>(std::signal(SIGXFSZ, SIG_IGN));
  std::set_terminate(&marovia::cli::EndWithoutMemory);
  marovia::cli::Console console;
  return static_cast<int>(marovia::cli::RunGuarded(console, [&] {
    return marovia::cli::ParseAndRun({argv + std::min(argc, 1), argv + argc}, console);
  }));
}
