#include "cli/exit_status.h"

namespace marovia::cli {

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

}  // namespace marovia::cli
