#include "cli/console.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <new>
#include <system_error>

#include "marovia/error.h"

#include "files/input_file.h"

namespace marovia::cli {
namespace {

// The reports end their lines as text boxes want them; a terminal wants the bare line feed.
std::string WithPlainLineEnds(std::string text) {
  std::erase(text, '\r');
  return text;
}

}  // namespace

std::string OneLine(std::string text) {
  std::ranges::replace_if(
      text, [](unsigned char c) { return c < ' ' || c == 127; }, '?');
  return text;
}

ExitStatus StatusOf(Errc code) {
  switch (code) {
    case Errc::kInvalidArgument:
      return ExitStatus::kUsage;
    case Errc::kIo:
      return ExitStatus::kIo;
    case Errc::kMalformed:
    case Errc::kUnsupported:
      return ExitStatus::kNotOurs;
    case Errc::kLimit:
      return ExitStatus::kLimit;
    case Errc::kOverflow:
    case Errc::kIndex:
      break;
  }
  return ExitStatus::kFailed;
}

std::string JsonText(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string JsonLine(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

void Console::SetInput(const std::string& name) {
  subject_ = name == kStandardStream ? "standard input" : name;
}

void Console::SetOutput(const std::string& name) {
  subject_ = name == kStandardStream ? "standard output" : name;
}

void Console::Print(const std::string& text) {
  if (record_ != nullptr) {
    record_->text += text;
    return;
  }
  errno = 0;
  if (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0)
    return;
  SetOutput(kStandardStream);
  Fail(Errc::kIo, "cannot be written: " + std::generic_category().message(errno));
}

void Console::Print(const Json& result) {
  if (record_ == nullptr) return Print(JsonText(result));
  record_->result = result;
}

void Console::Complain(const std::string& what) const {
  if (record_ != nullptr) record_->complaint = OneLine(what);
  const std::string subject = subject_.empty() ? "" : subject_ + ": ";
  WriteError(OneLine("marovia: " + subject + what) + "\n");
}

void Console::Notice(const std::string& what) const {
  if (verbosity_ != Verbosity::kQuiet) Complain(what);
}

void Console::Tell(const std::string& text) const {
  if (IsVerbose()) WriteError(WithPlainLineEnds(text));
}

void Console::WriteError(const std::string& text) const {
  if (record_ != nullptr) {
    record_->lines += text;
    return;
  }
  // Nobody is left to be told if standard error fails.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
}

ExitStatus StatusOfException(Console& console) {
  try {
    throw;
  } catch (const Error& error) {
    console.Complain(error.what());
    return StatusOf(error.Code());
  } catch (const std::bad_alloc&) {
    console.Complain("out of memory");
  } catch (const std::exception& error) {
    console.Complain(error.what());
  }
  return ExitStatus::kFailed;
}

}  // namespace marovia::cli
