// The tool's voice: results on standard output, everything else on standard error, and what the
// exit status tells a script.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "marovia/error.h"

namespace marovia::cli {

enum class ExitStatus {
  kDone = 0,
  kFailed = 1,      // the work itself failed: shapes differ, verification failed, out of memory
  kUsage = 2,       // the command line makes no sense, alone or for this image
  kIncomplete = 3,  // done, but bits that were asked for are missing from a cut or damaged file
  kIo = 4,          // a file could not be read or written
  kNotOurs = 5,     // not a file that the tool reads, or in a form that it does not read
  kLimit = 6,       // over a limit on pixels or sides
};

ExitStatus StatusOf(Errc code);

// A file name may hold line breaks and terminal codes; in a message it is one plain line.
std::string OneLine(std::string text);

using Json = nlohmann::ordered_json;

// Indented, or all in one line, and ended by a line feed; what is not UTF-8 in a file name is
// replaced.
std::string JsonText(const Json& json);
std::string JsonLine(const Json& json);

enum class Verbosity { kQuiet, kNormal, kVerbose };

// What the work on one of many files had to say, kept until it can be said in one piece.
struct Record {
  Json result;
  std::string lines;      // for standard error
  std::string complaint;  // the last of them, without the name of the file
  std::string text;       // for standard output
};

class Console {
 public:
  Console() = default;
  // Everything goes into the record, which must outlive the console.
  Console(Verbosity verbosity, Record& record) : verbosity_(verbosity), record_(&record) {}

  void SetVerbosity(Verbosity verbosity) { verbosity_ = verbosity; }
  [[nodiscard]] bool IsVerbose() const { return verbosity_ == Verbosity::kVerbose; }

  // The file in hand: every line names it, also that of an error thrown later, which does not know
  // the name. "-" is named in words.
  void SetInput(const std::string& name);
  void SetOutput(const std::string& name);

  // A result. Error kIo where standard output does not take it.
  void Print(const std::string& text);
  void Print(const Json& result);

  // One line about the file in hand: always, unless quiet, and only if verbose.
  void Complain(const std::string& what) const;
  void Notice(const std::string& what) const;
  void Tell(const std::string& text) const;

  // The lines of a record, as they are.
  void PassOn(const Record& record) const { WriteError(record.lines); }

 private:
  void WriteError(const std::string& text) const;

  std::string subject_;
  Verbosity verbosity_ = Verbosity::kNormal;
  Record* record_ = nullptr;
};

// Of the exception in hand, once it has been complained about with the name of the file in hand.
ExitStatus StatusOfException(Console& console);

// Runs the work, which returns an exit status; what it throws becomes one.
template <class Work>
ExitStatus RunGuarded(Console& console, const Work& work) {
  try {
    return work();
  } catch (...) {
    return StatusOfException(console);
  }
}

}  // namespace marovia::cli
