#include "cli/json_text.h"

#include <cmath>

#include "base/number_text.h"
#include "cli/values.h"

namespace marovia::cli {

double JsonNumber(float value) {
  return LeadingNumber(TrimmedNumberText(value));
}

Json JsonOfAlteration(const LoadedImage& image) {
  return image.alteration.empty() ? Json() : Json(image.alteration);
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

namespace {

// Only decoding tells how much of such a file is there.
Json JsonOfLossless(const FileInfo& info) {
  if (info.kind == FileKind::kAwh && info.wavelet != WaveletKind::kDaub97) return {};
  return info.kind == FileKind::kAwg;
}

}  // namespace

Json JsonOf(const FileInfo& info) {
  return {{"kind", Extension(info.kind)},
          {"method", NameOf(MethodOf(info.kind))},
          {"coding", NameOf(CodingOf(info.kind))},
          {"lossless", JsonOfLossless(info)},
          {"wavelet", NameOf(info.wavelet)},
          {"levels", info.levels},
          {"rows", info.rows},
          {"columns", info.cols},
          {"codedRows", info.codedRows},
          {"codedColumns", info.codedCols},
          {"mean", JsonNumber(info.mean)},
          {"firstThreshold", std::ldexp(1.0, info.exponent)},
          {"budget", info.budget ? Json(*info.budget) : Json()},
          {"bitsPresent", info.bitsPresent},
          {"complete", info.fillsBudget}};
}

std::string JsonText(const Json& json) {
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string JsonLine(const Json& json) {
  return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace marovia::cli
