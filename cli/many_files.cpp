#include "cli/many_files.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <limits>
#include <map>
#include <mutex>
#include <numeric>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "marovia/error.h"

#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/file_list.h"
#include "files/signal_hold.h"

namespace marovia::cli {
namespace {

// Not safe for several threads at once.
class ProgressLine {
 public:
  // One that is not shown does nothing. Nothing is shown either where standard error is no
  // terminal.
  explicit ProgressLine(bool shown);

  // At most some ten times a second; what comes between is left out.
  void Show(const std::string& text);
  // Before anything else is written to the terminal.
  void Clear();

 private:
  bool shown_;
  std::size_t width_ = 0;  // of what stands there
  std::chrono::steady_clock::time_point next_;
};

constexpr std::chrono::milliseconds kPause{100};

void Write(const std::string& text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

ProgressLine::ProgressLine(bool shown) : shown_(shown && ::isatty(STDERR_FILENO) == 1) {}

void ProgressLine::Show(const std::string& text) {
  const auto now = std::chrono::steady_clock::now();
  if (!shown_ || now < next_) return;
  next_ = now + kPause;
  Clear();
  Write(text);
  width_ = text.size();
}

void ProgressLine::Clear() {
  if (width_ > 0) Write("\r" + std::string(width_, ' ') + "\r");
  width_ = 0;
}

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

std::string MeaningOf(ExitStatus status) {
  switch (status) {
    case ExitStatus::kDone:
      return "done";
    case ExitStatus::kFailed:
      return "failed";
    case ExitStatus::kUsage:
      return "asked for what the file does not bear";
    case ExitStatus::kIncomplete:
      return "cut short";
    case ExitStatus::kIo:
      return "could not be read or written";
    case ExitStatus::kNotOurs:
      return "no file that is read here";
    case ExitStatus::kLimit:
      return "over a limit";
  }
  return "";
}

bool IsFailure(ExitStatus status) {
  return status != ExitStatus::kDone && status != ExitStatus::kIncomplete;
}

RunReport::RunReport(std::size_t files, const CommonOptions& options)
    : files_(files), json_(options.json), progress_(options.verbosity == Verbosity::kNormal) {
  console_.SetVerbosity(options.verbosity);
}

void RunReport::Take(const FileTask& task, const FileOutcome& outcome) {
  const std::lock_guard lock(mutex_);
  ++taken_;
  if (outcome.skipped) {
    ++skipped_;
  } else {
    ++counts_[outcome.status];
  }
  if (!outcome.record.lines.empty() || json_) progress_.Clear();
  console_.PassOn(outcome.record);
  if (json_ && !broken_) PrintJson(task, outcome);
  progress_.Show(ProgressText());
}

void RunReport::PrintJson(const FileTask& task, const FileOutcome& outcome) {
  Json json = outcome.record.result;
  if (json.is_null()) json = {{"input", task.input}, {"output", task.output}};
  json["skipped"] = outcome.skipped;
  json["exitStatus"] = static_cast<int>(outcome.status);
  if (outcome.status != ExitStatus::kDone) json["error"] = outcome.record.complaint;
  const ExitStatus printed = RunGuarded(console_, [&] {
    console_.Print(JsonLine(json));
    return ExitStatus::kDone;
  });
  broken_ = printed != ExitStatus::kDone;
}

int RunReport::Count(ExitStatus status) const {
  const auto found = counts_.find(status);
  return found == counts_.end() ? 0 : found->second;
}

int RunReport::FailureCount() const {
  return std::accumulate(counts_.begin(), counts_.end(), 0, [](int sum, const auto& entry) {
    return sum + (IsFailure(entry.first) ? entry.second : 0);
  });
}

std::string RunReport::ProgressText() const {
  std::string text = "marovia: " + std::to_string(taken_) + " of " + std::to_string(files_);
  if (skipped_ > 0) text += ", " + std::to_string(skipped_) + " skipped";
  if (const int failures = FailureCount()) text += ", " + std::to_string(failures) + " failed";
  return text;
}

std::string RunReport::SummaryText() const {
  const int done = Count(ExitStatus::kDone) + Count(ExitStatus::kIncomplete);
  std::string text = std::to_string(done) + " of " + std::to_string(files_) + " files done";
  if (skipped_ > 0) text += ", " + std::to_string(skipped_) + " skipped";
  if (const auto left = static_cast<int>(files_) - taken_)
    text += ", " + std::to_string(left) + " not begun";
  for (const auto& [status, count] : counts_) {
    if (status == ExitStatus::kDone) continue;
    text += ", " + std::to_string(count) + " " + MeaningOf(status) + " (exit status " +
            std::to_string(static_cast<int>(status)) + ")";
  }
  return text;
}

ExitStatus RunReport::Status() const {
  if (broken_) return ExitStatus::kIo;
  if (const int failures = FailureCount()) {
    for (const auto& [status, count] : counts_)
      if (IsFailure(status) && count == failures) return status;
    return ExitStatus::kFailed;
  }
  return Count(ExitStatus::kIncomplete) > 0 ? ExitStatus::kIncomplete : ExitStatus::kDone;
}

ExitStatus RunReport::Finish() {
  progress_.Clear();
  if (!broken_) console_.Notice(SummaryText());
  return Status();
}

namespace fs = std::filesystem;

// Outputs are put in place whole, so one that is there is done.
bool IsDone(const FileArguments& files, const FileTask& task) {
  std::error_code none;
  return files.skipExisting && fs::is_regular_file(task.output, none);
}

void MakeFolder(const std::string& folder, Console& console) {
  console.SetOutput(folder);
  std::error_code failure;
  fs::create_directories(folder, failure);
  if (!fs::is_directory(folder)) Fail(Errc::kIo, "cannot be made a folder: " + failure.message());
  console.SetOutput("");
}

FileOutcome OutcomeOf(const FileArguments& files, const CommonOptions& options,
                      const FileTask& task, const FileWork& work) {
  FileOutcome outcome;
  outcome.skipped = IsDone(files, task);
  if (outcome.skipped) return outcome;
  Console console(options.verbosity, outcome.record);
  outcome.status = RunGuarded(console, [&] { return work(task, console); });
  return outcome;
}

// Each file's arrays are about as large as the last one's: memory given back in between would only
// have to be cleared by the system again. To be called before there are threads.
void KeepFreedMemory() {
#ifdef __GLIBC__
  constexpr int kLargestOfTheHeap = 32 << 20;
  // NOLINTBEGIN(concurrency-mt-unsafe): no thread has begun.
  mallopt(M_MMAP_THRESHOLD, kLargestOfTheHeap);
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  // NOLINTEND(concurrency-mt-unsafe)
#endif
}

// The calling thread works too.
void RunOnThreads(std::size_t count, const std::function<void()>& work) {
  std::vector<std::jthread> others;
  for (std::size_t n = 1; n < count; ++n) others.emplace_back(work);
  work();
}

}  // namespace

ExitStatus RunOneFile(const FileArguments& files, const FileTask& task, const FileWork& work,
                      Console& console) {
  if (IsDone(files, task)) return ExitStatus::kDone;
  return work(task, console);
}

ExitStatus RunManyFiles(const FileArguments& files, const CommonOptions& options,
                        std::string_view extension, const FileWork& work, Console& console) {
  const std::vector<FileTask> tasks = TasksOf(files, extension, console);
  MakeFolder(*files.outputDir, console);
  KeepFreedMemory();
  // A closed pipe is then an error of the write, which ends the run in good order.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  // Before the threads, which inherit it: an interrupt waits until all of them have ended.
  const SignalHold hold;
  RunReport report(tasks.size(), options);
  std::atomic<std::size_t> next = 0;
  RunOnThreads(std::min<std::size_t>(static_cast<std::size_t>(files.jobs), tasks.size()), [&] {
    while (!hold.IsAnyWaiting() && !report.Broken()) {
      const std::size_t mine = next++;
      if (mine >= tasks.size()) return;
      report.Take(tasks[mine], OutcomeOf(files, options, tasks[mine], work));
    }
  });
  return report.Finish();
}

}  // namespace marovia::cli
