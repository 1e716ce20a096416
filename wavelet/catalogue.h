// The three wavelets, and how many levels of them an image can bear.
#pragma once

#include <array>
#include <optional>
#include <string_view>

#include "marovia/types.h"

namespace marovia {

// In the order in which a user is offered them, which is not that of their numbers.
inline constexpr std::array kWaveletsAsListed = {WaveletKind::kInteger53, WaveletKind::kInteger22,
                                                 WaveletKind::kDaub97};

std::string_view WaveletLabel(WaveletKind wavelet);
std::optional<WaveletKind> WaveletOfLabel(std::string_view label);

// The wavelet of a number in a file, if it is one.
std::optional<WaveletKind> WaveletOfNumber(int number);

// The two whose coefficients of an 8-bit image are whole numbers.
constexpr bool IsInteger(WaveletKind wavelet) {
  return wavelet != WaveletKind::kDaub97;
}

// Half the reach of the synthesis filters, in samples: 5, 5 and 6. A region is widened by twice
// this when it is carried into the transform.
int SupportOfWavelet(WaveletKind wavelet);

// The most levels that an image of these sides can bear: two fewer than the rounded binary
// logarithm of the smaller side, and not more than 4 with an integer wavelet. 0 or less for sides
// below 6.
int LevelLimit(int rows, int cols, WaveletKind wavelet);

struct LevelChoice {
  int levels = -1;           // -1: refused, as `message` says
  bool held = false;         // the limit took the place of what was asked for
  std::string_view message;  // empty unless refused
};

// The number of levels that a text asks for, rounded to even ("2.5" is 2) and silently held to the
// limit of the sides, which may be 0 or less.
LevelChoice SetNumberOfLevels(std::string_view text, int rows, int cols, WaveletKind wavelet);

// The rule of the lossless coders, the same.
LevelChoice SetNumberOfLevelsLossless(std::string_view text, int rows, int cols,
                                      WaveletKind wavelet);

}  // namespace marovia
