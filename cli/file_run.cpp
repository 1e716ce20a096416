#include "cli/file_run.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <limits>
#include <thread>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "marovia/error.h"

#include "cli/guard.h"
#include "cli/run_report.h"
#include "files/signal_hold.h"

namespace marovia::cli {
namespace {

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
