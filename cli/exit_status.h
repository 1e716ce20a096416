// What the tool's exit status tells a script.
#pragma once

#include "marovia/error.h"

namespace marovia::cli {

enum class ExitStatus {
  kDone = 0,
  kFailed = 1,      // the work itself failed: shapes differ, verification failed, out of memory
  kUsage = 2,       // the command line makes no sense, alone or for this image
  kIncomplete = 3,  // done, but bits that were asked for are missing from a cut or damaged file
  kIo = 4,          // a file could not be read or written
  kNotOurs = 5,     // not a file that the tool reads, or in a form that it does not read
  kLimit = 6,       // over a limit on pixels or sides
};

ExitStatus StatusOf(Errc code);

}  // namespace marovia::cli
