#include "fuzz/input.h"
#include "fuzz/targets.h"

namespace marovia::fuzz {
namespace {

// Small pictures make for many runs.
constexpr std::int64_t kMostPixels = 1024;
constexpr std::size_t kMostReports = 33;

void CheckReports(const DecompressResult& result) {
  Promise(result.passes.size() <= kMostReports, "A run makes at most 32 passes.");
  std::int32_t significant = 0;
  for (const PassReport& report : result.passes) {
    Promise(report.significant >= significant, "What is found stays found.");
    significant = report.significant;
  }
  Promise(significant <= result.info.codedRows * result.info.codedCols,
          "No more is found than there is.");
}

void CheckDecoding(ByteView file, FileKind kind, std::optional<double> rate) {
  const DecompressResult result = Decompress(file, kind, {rate, kMostPixels, {}});
  Promise(result.image.Rows() == result.info.rows && result.image.Cols() == result.info.cols,
          "The picture has the size that the file tells.");
  Promise(result.image.Size() <= static_cast<std::size_t>(kMostPixels), "The limit holds.");
  CheckReports(result);
}

}  // namespace

void Decode(ByteView input) {
  Input in(input);
  const FileKind kind = in.Kind();
  const int part = in.Byte();
  const ByteView file = in.Rest();
  try {
    if (part == 0) {
      CheckDecoding(file, kind, std::nullopt);
    } else if (part % 2 == 0) {
      CheckDecoding(file, kind, part / 32.0);
    } else {
      CheckDecoding(file.first(file.size() * static_cast<std::size_t>(part) / 256), kind, {});
    }
  } catch (const Error&) {
    return;
  }
}

}  // namespace marovia::fuzz
