// Lists of values as users write them, with commas between.
#pragma once

#include <string>
#include <vector>

#include "marovia/codec.h"

namespace marovia::cli {

// "FROM:TO" gives rates from the one to the other, each some part more than the one before;
// anything else is a list of rates, which are put in order. Errors kInvalidArgument.
std::vector<double> ParseRates(const std::string& text);

std::vector<FileKind> ParseCoders(const std::string& text);

// "2+2,2" has a comma of its own.
std::vector<WaveletKind> ParseWavelets(const std::string& text);

}  // namespace marovia::cli
