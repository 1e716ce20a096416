#include "cli/many_files.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <limits>
#include <string>
#include <system_error>
#include <thread>
#include <vector>
#ifdef __GLIBC__
#include <malloc.h>
#endif

#include "marovia/error.h"

#include "cli/arguments.h"
#include "cli/console.h"
#include "cli/run_report.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

namespace fs = std::filesystem;

bool IsOlder(const std::string& name, const std::string& than) {
  std::error_code unknown;
  const fs::file_time_type time = fs::last_write_time(name, unknown);
  return !unknown && time < fs::last_write_time(than, unknown) && !unknown;
}

// Outputs are put in place whole, so one that is there is done.
bool IsDone(const FileArguments& files, const FileTask& task) {
  std::error_code none;
  if (!(files.skipExisting || files.update) || !fs::is_regular_file(task.output, none))
    return false;
  return !files.update || !IsOlder(task.output, task.input);
}

void MakeFolder(const std::string& folder, Console& console) {
  console.SetOutput(folder);
  std::error_code failure;
  fs::create_directories(folder, failure);
  if (!fs::is_directory(folder)) Fail(Errc::kIo, "cannot be made a folder: " + failure.message());
  console.SetOutput("");
}

FileOutcome OutcomeOf(const FileArguments& files, const CommonOptions& options,
                      const FileTask& task, const ManyFiles& many) {
  FileOutcome outcome;
  outcome.skipped = many.Writes() && IsDone(files, task);
  if (outcome.skipped) return outcome;
  Console console(options.verbosity, outcome.record);
  outcome.status = RunGuarded(console, [&] {
    if (many.Writes()) MakeFolder(fs::path(task.output).parent_path(), console);
    return many.work(task, console);
  });
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
                        const ManyFiles& many, Console& console) {
  const std::vector<FileTask> tasks = TasksOf(files, many, console);
  if (many.Writes()) MakeFolder(*files.folder, console);
  KeepFreedMemory();
  // A closed pipe is then an error of the write, which ends the run in good order.
  static_cast<void>(std::signal(SIGPIPE, SIG_IGN));
  // Before the threads, which inherit it: an interrupt waits until all of them have ended.
  const SignalHold hold;
  RunReport report(tasks, options, many.Writes());
  std::atomic<std::size_t> next = 0;
  RunOnThreads(std::min<std::size_t>(static_cast<std::size_t>(files.jobs), tasks.size()), [&] {
    while (!hold.IsAnyWaiting() && !report.Broken()) {
      const std::size_t mine = next++;
      if (mine >= tasks.size()) return;
      report.Take(tasks[mine], OutcomeOf(files, options, tasks[mine], many));
    }
  });
  return report.Finish();
}

}  // namespace marovia::cli
