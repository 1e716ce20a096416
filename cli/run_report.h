// What a run over many files has to say: whole lines as files are done, and at the end a summary.
#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <string>

#include "cli/console.h"
#include "cli/exit_status.h"
#include "cli/file_list.h"
#include "cli/options.h"
#include "cli/progress_line.h"

namespace marovia::cli {

struct FileOutcome {
  ExitStatus status = ExitStatus::kDone;
  bool skipped = false;
  Record record;
};

class RunReport {
 public:
  RunReport(std::size_t files, const CommonOptions& options);

  // Says what there is to say of a file. Several threads may call it at once.
  void Take(const FileTask& task, const FileOutcome& outcome);
  // Standard output takes no more, so that the run has no use.
  [[nodiscard]] bool Broken() const { return broken_; }

  // The summary; call it once, at the end. Returns the status of the run: done where all files are
  // done or skipped, the status that all failures share, or failed where they differ. Files cut
  // short count only where nothing failed.
  ExitStatus Finish();

 private:
  void PrintJson(const FileTask& task, const FileOutcome& outcome);
  [[nodiscard]] int Count(ExitStatus status) const;
  [[nodiscard]] int FailureCount() const;
  [[nodiscard]] std::string ProgressText() const;
  [[nodiscard]] std::string SummaryText() const;
  [[nodiscard]] ExitStatus Status() const;

  std::size_t files_;
  bool json_;
  std::mutex mutex_;
  Console console_;
  ProgressLine progress_;
  std::map<ExitStatus, int> counts_;  // without those skipped
  int taken_ = 0;
  int skipped_ = 0;
  std::atomic<bool> broken_ = false;
};

}  // namespace marovia::cli
