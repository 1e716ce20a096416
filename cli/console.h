// The tool's voice: results on standard output, everything else on standard error.
#pragma once

#include <string>

namespace marovia::cli {

enum class Verbosity { kQuiet, kNormal, kVerbose };

class Console {
 public:
  void SetVerbosity(Verbosity verbosity) { verbosity_ = verbosity; }
  [[nodiscard]] bool IsVerbose() const { return verbosity_ == Verbosity::kVerbose; }

  // The file in hand: every line names it, also that of an error thrown later, which does not know
  // the name. "-" is named in words.
  void SetInput(const std::string& name);
  void SetOutput(const std::string& name);

  // A result. Error kIo where standard output does not take it.
  void Print(const std::string& text);

  // One line about the file in hand: always, unless quiet, and only if verbose.
  void Complain(const std::string& what) const;
  void Notice(const std::string& what) const;
  void Tell(const std::string& text) const;

 private:
  std::string subject_;
  Verbosity verbosity_ = Verbosity::kNormal;
};

}  // namespace marovia::cli
