// What is said of a run over many files: its lines, how far it is, a summary and the exit status.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/many_files.h"

namespace marovia::cli {

struct FileOutcome {
  ExitStatus status = ExitStatus::kDone;
  bool skipped = false;
  Record record;
};

// A line at the end of a terminal. Not safe for several threads at once.
class ProgressLine {
 public:
  // One that is not shown does nothing. Nothing is shown either where standard error is no
  // terminal.
  explicit ProgressLine(bool shown);

  [[nodiscard]] bool IsShown() const { return shown_; }
  // At most some ten times a second; what comes between is left out.
  void Show(const std::string& text);
  // Before anything else is written to the terminal.
  void Clear();

 private:
  bool shown_;
  std::size_t width_ = 0;  // of what stands there
  std::chrono::steady_clock::time_point next_;
};

class RunReport {
 public:
  // A run whose results are its output sums up only what failed.
  RunReport(const std::vector<FileTask>& tasks, const CommonOptions& options, bool alwaysSumsUp);

  // Says what there is to say of a file. Several threads may call it at once.
  void Take(const FileTask& task, const FileOutcome& outcome);
  // Standard output takes no more, so that the run has no use.
  [[nodiscard]] bool Broken() const { return broken_; }

  // The summary; call it once, at the end. Returns the status of the run: done where all files are
  // done or skipped, the status that all failures share, or failed where they differ. Files cut
  // short count only where nothing failed.
  ExitStatus Finish();

 private:
  void Print(const std::string& text);
  void PrintJson(const FileTask& task, const FileOutcome& outcome);
  [[nodiscard]] int Count(ExitStatus status) const;
  [[nodiscard]] int FailureCount() const;
  void CountBytes(const FileTask& task, bool skipped);
  [[nodiscard]] std::string ProgressText() const;
  [[nodiscard]] std::string SummaryText() const;
  [[nodiscard]] ExitStatus Status() const;

  std::size_t files_;
  bool json_;
  bool alwaysSumsUp_;
  std::mutex mutex_;
  Console console_;
  ProgressLine progress_;
  std::map<ExitStatus, int> counts_;  // without those skipped
  int taken_ = 0;
  int skipped_ = 0;
  // Of the inputs, and how many of these are done; only where progress is shown.
  std::uintmax_t bytes_ = 0;
  std::uintmax_t bytesDone_ = 0;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
  std::atomic<bool> broken_ = false;
};

// "40 s", "4 min", "2 h 10 min": rounded as one cares for.
std::string DurationText(double seconds);

}  // namespace marovia::cli
