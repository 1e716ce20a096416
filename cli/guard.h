// The one place where an error becomes a line and an exit status.
#pragma once

#include "cli/console.h"
#include "cli/exit_status.h"

namespace marovia::cli {

// Of the exception in hand, once it has been complained about with the name of the file in hand.
ExitStatus StatusOfException(Console& console);

// Runs the work, which returns an exit status; what it throws becomes one.
template <class Work>
ExitStatus RunGuarded(Console& console, const Work& work) {
  try {
    return work();
  } catch (...) {
    return StatusOfException(console);
  }
}

}  // namespace marovia::cli
