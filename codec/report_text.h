// The words of the reports that every front shows while a coder runs.
#pragma once

#include <string>

#include "marovia/types.h"

namespace marovia {

// Three lines, each ended by CR LF: the pass and its threshold, the coefficients found so far, and
// the bits so far as bits per pixel of an image of rows x cols. `decoded` chooses the verb.
std::string PassReportText(const PassReport& report, int rows, int cols, bool decoded);

}  // namespace marovia
