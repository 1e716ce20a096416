#include "cli/run_report.h"

#include <numeric>

#include "cli/guard.h"

namespace marovia::cli {
namespace {

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

}  // namespace

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

}  // namespace marovia::cli
