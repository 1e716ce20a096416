#include "cli/run_report.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <numeric>
#include <system_error>
#include <unistd.h>

namespace marovia::cli {
namespace {

constexpr std::chrono::milliseconds kPause{100};

void Write(const std::string& text) {
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

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

// 0 where the system does not tell.
std::uintmax_t BytesOf(const FileTask& task) {
  std::error_code unknown;
  const std::uintmax_t bytes = std::filesystem::file_size(task.input, unknown);
  return unknown ? 0 : bytes;
}

}  // namespace

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

RunReport::RunReport(const std::vector<FileTask>& tasks, const CommonOptions& options,
                     bool alwaysSumsUp)
    : files_(tasks.size()),
      json_(options.json),
      alwaysSumsUp_(alwaysSumsUp),
      progress_(options.verbosity == Verbosity::kNormal) {
  console_.SetVerbosity(options.verbosity);
  if (!progress_.IsShown()) return;
  for (const FileTask& task : tasks) bytes_ += BytesOf(task);
}

void RunReport::Take(const FileTask& task, const FileOutcome& outcome) {
  const std::lock_guard lock(mutex_);
  ++taken_;
  if (outcome.skipped) {
    ++skipped_;
  } else {
    ++counts_[outcome.status];
  }
  if (progress_.IsShown()) CountBytes(task, outcome.skipped);
  if (!outcome.record.lines.empty() || !outcome.record.text.empty() || json_) progress_.Clear();
  console_.PassOn(outcome.record);
  Print(outcome.record.text);
  if (json_) PrintJson(task, outcome);
  progress_.Show(ProgressText());
}

void RunReport::PrintJson(const FileTask& task, const FileOutcome& outcome) {
  Json json = outcome.record.result;
  if (json.is_null()) {
    json = {{"input", task.input}};
    if (!task.output.empty()) json["output"] = task.output;
  }
  json["skipped"] = outcome.skipped;
  json["exitStatus"] = static_cast<int>(outcome.status);
  if (outcome.status != ExitStatus::kDone) json["error"] = outcome.record.complaint;
  Print(JsonLine(json));
}

void RunReport::Print(const std::string& text) {
  if (broken_ || text.empty()) return;
  const ExitStatus printed = RunGuarded(console_, [&] {
    console_.Print(text);
    return ExitStatus::kDone;
  });
  broken_ = printed != ExitStatus::kDone;
}

// What was skipped cost no time, and is no part of what has to be done.
void RunReport::CountBytes(const FileTask& task, bool skipped) {
  const std::uintmax_t bytes = BytesOf(task);
  if (skipped) {
    bytes_ -= std::min(bytes_, bytes);
  } else {
    bytesDone_ += bytes;
  }
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
  if (bytesDone_ == 0 || bytesDone_ >= bytes_) return text;
  const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start_;
  const double left = static_cast<double>(bytes_ - bytesDone_) / static_cast<double>(bytesDone_);
  return text + ", " + DurationText(elapsed.count() * left) + " left";
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
  const ExitStatus status = Status();
  if (!broken_ && (alwaysSumsUp_ || status != ExitStatus::kDone)) console_.Notice(SummaryText());
  return status;
}

std::string DurationText(double seconds) {
  constexpr std::int64_t kMinute = 60;
  constexpr std::int64_t kHour = 60;  // minutes
  const auto whole = static_cast<std::int64_t>(std::ceil(seconds));
  if (whole <= 2 * kMinute) return std::to_string(whole) + " s";
  const std::int64_t minutes = (whole + kMinute / 2) / kMinute;
  if (minutes < kHour) return std::to_string(minutes) + " min";
  return std::to_string(minutes / kHour) + " h " + std::to_string(minutes % kHour) + " min";
}

}  // namespace marovia::cli
