#include "wavelet/catalogue.h"

#include <algorithm>
#include <cmath>

#include "marovia/error.h"

#include "base/checked.h"
#include "base/number_text.h"

namespace marovia {
namespace {

// The file holds ten times the levels plus the wavelet in one byte.
constexpr int kMostLevelsInAFile = 25;
constexpr int kMostIntegerLevels = 4;

int SideLimit(int side) {
  return static_cast<int>(RoundHalfEven(std::log(side) / std::log(2.0))) - 2;
}

LevelChoice Refused(std::string_view message) {
  return {.message = message};
}

}  // namespace

std::string_view WaveletLabel(WaveletKind wavelet) {
  switch (wavelet) {
    case WaveletKind::kDaub97:
      return "Daub 9/7";
    case WaveletKind::kInteger53:
      return "DD 5/3 Integer";
    case WaveletKind::kInteger22:
      return "DD 2+2,2 Integer";
  }
  return "";
}

std::optional<WaveletKind> WaveletOfLabel(std::string_view label) {
  for (const WaveletKind wavelet : kWaveletsAsListed) {
    if (WaveletLabel(wavelet) == label) return wavelet;
  }
  return std::nullopt;
}

std::optional<WaveletKind> WaveletOfNumber(int number) {
  if (number < 1 || number > 3) return std::nullopt;
  return static_cast<WaveletKind>(number);
}

int SupportOfWavelet(WaveletKind wavelet) {
  return wavelet == WaveletKind::kInteger22 ? 6 : 5;
}

int LevelLimit(int rows, int cols, WaveletKind wavelet) {
  const int limit = std::min(SideLimit(rows), SideLimit(cols));
  return IsInteger(wavelet) ? std::min(limit, kMostIntegerLevels) : limit;
}

LevelChoice SetNumberOfLevels(std::string_view text, int rows, int cols, WaveletKind wavelet) {
  LevelChoice choice;
  try {
    choice.levels = ToInt16(LeadingNumber(text));
  } catch (const Error&) {
    return Refused("Invalid number of levels.");
  }
  if (choice.levels < 1) return Refused("Number of levels must be a positive integer.");
  const int limit = LevelLimit(rows, cols, wavelet);
  choice.held = choice.levels > limit;
  choice.levels = std::min(choice.levels, limit);
  if (choice.levels > kMostLevelsInAFile) return Refused("Number of levels too large.");
  return choice;
}

LevelChoice SetNumberOfLevelsLossless(std::string_view text, int rows, int cols,
                                      WaveletKind wavelet) {
  return SetNumberOfLevels(text, rows, cols, wavelet);
}

}  // namespace marovia
