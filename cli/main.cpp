#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <unistd.h>

#include "marovia/error.h"
#include "marovia/version.h"

#include "cli/commands.h"
#include "cli/guard.h"
#include "cli/help.h"

namespace marovia::cli {
namespace {

constexpr const char* kFooter =
    "Start with:\n"
    "  marovia compress photo.pgm photo.awf\n"
    "  marovia decompress photo.awf decoded.pgm\n"
    "  marovia measure photo.pgm decoded.pgm\n"
    "\n"
    "Each command has its own --help.\n"
    "\n"
    "Exit status: 0 done; 1 failed; 2 wrong usage; 3 done, but the file was cut short;\n"
    "4 could not read or write; 5 not a file that is read here; 6 over a limit.\n";

void DescribeTool(CLI::App& tool, Action& action) {
  tool.formatter(std::make_shared<HelpFormatter>());
  tool.set_help_flag("-h,--help", "Print this help");
  tool.set_version_flag("--version", std::string("marovia ") + kVersion, "Print the version");
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
}

// The name of the command that the words chose, for the pointer to its help.
std::string CommandName(const CLI::App& tool) {
  const auto commands = tool.get_subcommands();
  return commands.empty() ? "marovia" : "marovia " + commands.front()->get_name();
}

ExitStatus ParseAndRun(int count, const char* const* words, Console& console) {
  Action action;
  CLI::App tool("Wavelet compression of grey images, lossy and lossless.", "marovia");
  DescribeTool(tool, action);
  try {
    tool.parse(count, words);
  } catch (const CLI::CallForVersion& version) {
    console.Print(std::string(version.what()) + "\n");
    return ExitStatus::kDone;
  } catch (const CLI::CallForHelp&) {
    console.Print(tool.help());
    return ExitStatus::kDone;
  } catch (const CLI::ParseError& error) {
    Fail(Errc::kInvalidArgument,
         std::string(error.what()) + " (see " + CommandName(tool) + " --help)");
  }
  if (action) return action(console);
  console.Print(tool.help());
  return ExitStatus::kDone;
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
  return static_cast<int>(marovia::cli::RunGuarded(
      console, [&] { return marovia::cli::ParseAndRun(argc, argv, console); }));
}
