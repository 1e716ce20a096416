// The tool's voice: results on standard output, everything else on standard error.
#pragma once

#include <string>

#include "cli/json_text.h"

namespace marovia::cli {

enum class Verbosity { kQuiet, kNormal, kVerbose };

// What the work on one of many files had to say, kept until it can be said in one piece.
struct Record {
  Json result;
  std::string lines;      // for standard error
  std::string complaint;  // the last of them, without the name of the file
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

}  // namespace marovia::cli
