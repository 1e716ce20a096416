#include "cli/value_lists.h"

#include <algorithm>
#include <cmath>

#include "marovia/error.h"

#include "cli/values.h"

namespace marovia::cli {
namespace {

constexpr int kSteps = 32;

std::vector<std::string> Split(const std::string& text) {
  std::vector<std::string> parts;
  for (std::size_t begin = 0; begin <= text.size();) {
    const std::size_t end = std::min(text.find(',', begin), text.size());
    parts.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  return parts;
}

std::vector<double> RatesBetween(double from, double to) {
  if (from >= to) Fail(Errc::kInvalidArgument, "--rates: the first rate must be below the last");
  std::vector<double> rates;
  rates.reserve(kSteps + 1);
  for (int n = 0; n < kSteps; ++n) rates.push_back(from * std::pow(to / from, n / double{kSteps}));
  rates.push_back(to);
  return rates;
}

}  // namespace

std::vector<double> ParseRates(const std::string& text) {
  const std::size_t colon = text.find(':');
  if (colon != std::string::npos)
    return RatesBetween(ParseRate("--rates", text.substr(0, colon)),
                        ParseRate("--rates", text.substr(colon + 1)));
  std::vector<double> rates;
  for (const std::string& part : Split(text)) rates.push_back(ParseRate("--rates", part));
  std::ranges::sort(rates);
  return rates;
}

std::vector<FileKind> ParseCoders(const std::string& text) {
  std::vector<FileKind> kinds;
  for (const std::string& part : Split(text)) {
    const auto kind = KindOfExtension(part);
    if (!kind || *kind == FileKind::kAwg)
      Fail(Errc::kInvalidArgument,
           "--coders: '" + part + "' is not awb, awa, awc, awd, awf or awh");
    kinds.push_back(*kind);
  }
  return kinds;
}

std::vector<WaveletKind> ParseWavelets(const std::string& text) {
  std::vector<WaveletKind> wavelets;
  const std::vector<std::string> parts = Split(text);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    const bool isHalf = parts[i] == "2+2" && i + 1 < parts.size();
    wavelets.push_back(ParseWavelet(isHalf ? parts[i] + "," + parts[i + 1] : parts[i]));
    if (isHalf) ++i;
  }
  return wavelets;
}

}  // namespace marovia::cli
