#include "cli/values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

#include "marovia/error.h"

#include "base/number_text.h"
#include "cli/coder_names.h"

namespace marovia::cli {
namespace {

struct WaveletName {
  WaveletKind wavelet;
  std::string_view text;
};

constexpr std::array kWavelets = {WaveletName{WaveletKind::kDaub97, "9/7"},
                                  WaveletName{WaveletKind::kInteger53, "5/3"},
                                  WaveletName{WaveletKind::kInteger22, "2+2,2"}};

std::array<int, 4> FourNumbers(const std::string& text) {
  std::array<int, 4> numbers{};
  std::string_view rest = text;
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const bool last = i + 1 == numbers.size();
    const std::size_t end = last ? rest.size() : rest.find(',');
    const auto number = WholeNumber<int>(rest.substr(0, end));
    if (!number || *number < 0 || end == std::string_view::npos)
      RefuseValue("--region", text, "four numbers R1,C1,R2,C2 (rows and columns from 0)");
    numbers.at(i) = *number;
    rest.remove_prefix(last ? end : end + 1);
  }
  return numbers;
}

}  // namespace

void RefuseValue(const std::string& option, const std::string& text, const std::string& wanted) {
  Fail(Errc::kInvalidArgument, option + ": '" + text + "' is not " + wanted);
}

double ParsePositive(const std::string& option, const std::string& text,
                     const std::string& wanted) {
  const auto number = WholeNumber<double>(text);
  if (!number || !std::isfinite(*number) || *number <= 0) RefuseValue(option, text, wanted);
  return *number;
}

double ParseRate(const std::string& option, const std::string& text) {
  return ParsePositive(option, text, "a number of bits per pixel above 0, such as 0.5");
}

std::int64_t ParseCount(const std::string& option, const std::string& text) {
  const auto count = WholeNumber<std::int64_t>(text);
  if (!count || *count < 1) RefuseValue(option, text, "a whole number of 1 or more");
  return *count;
}

WaveletKind ParseWavelet(const std::string& text) {
  const auto* const named = std::ranges::find(kWavelets, text, &WaveletName::text);
  if (named == kWavelets.end()) RefuseValue("--wavelet", text, "9/7 or 5/3 or 2+2,2");
  return named->wavelet;
}

std::string_view NameOf(WaveletKind wavelet) {
  return std::ranges::find(kWavelets, wavelet, &WaveletName::wavelet)->text;
}

Region ParseRegion(const std::string& text) {
  auto [row1, col1, row2, col2] = FourNumbers(text);
  if (row1 > row2) std::swap(row1, row2);
  if (col1 > col2) std::swap(col1, col2);
  return {.row1 = row1, .col1 = col1, .row2 = row2, .col2 = col2};
}

void CheckRegion(const std::optional<Region>& region, int rows, int cols) {
  if (!region || (region->row2 < rows && region->col2 < cols)) return;
  Fail(Errc::kInvalidArgument, "the region ends at row " + std::to_string(region->row2) +
                                   ", column " + std::to_string(region->col2) +
                                   ", outside the image of " + SizeText(rows, cols) +
                                   " (counted from 0)");
}

std::string SizeText(int rows, int cols) {
  return std::to_string(rows) + " rows and " + std::to_string(cols) + " columns";
}

double JsonNumber(float value) {
  return LeadingNumber(TrimmedNumberText(value));
}

Json JsonOfAlteration(const Picture& picture) {
  return picture.alteration.empty() ? Json() : Json(picture.alteration);
}

Json JsonOf(FileKind kind) {
  return {{"kind", Extension(kind)},
          {"method", MethodOf(kind)},
          {"coding", CodingOf(kind)},
          {"lossless", IsLossless(kind)}};
}

Json JsonOf(const std::vector<PassReport>& passes) {
  Json list = Json::array();
  for (const PassReport& pass : passes) {
    list.push_back({{"pass", pass.pass},
                    {"threshold", JsonNumber(pass.threshold)},
                    {"significant", pass.significant},
                    {"bits", pass.bits}});
  }
  return list;
}

Json JsonOf(const FileInfo& info) {
  Json json = JsonOf(info.kind);
  // Only decoding tells how much of such a file is there.
  if (info.kind == FileKind::kAwh && info.wavelet != WaveletKind::kDaub97) json["lossless"] = {};
  json.update({{"wavelet", NameOf(info.wavelet)},
               {"levels", info.levels},
               {"rows", info.rows},
               {"columns", info.cols},
               {"codedRows", info.codedRows},
               {"codedColumns", info.codedCols},
               {"mean", JsonNumber(info.mean)},
               {"firstThreshold", std::ldexp(1.0, info.exponent)},
               {"budget", info.budget ? Json(*info.budget) : Json()},
               {"bitsPresent", info.bitsPresent},
               {"complete", info.fillsBudget}});
  return json;
}

}  // namespace marovia::cli
