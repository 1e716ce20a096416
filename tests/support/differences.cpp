#include "codec/coders.h"
#include "tests/support/plain_codec.h"

namespace marovia::test {
namespace {

// What the action gives; nothing where it throws Error.
auto Attempt(auto action) -> std::optional<decltype(action())> {
  try {
    return action();
  } catch (const Error&) {
    return {};
  }
}

// One line a report.
std::string TextOf(const std::vector<PassReport>& passes) {
  std::ostringstream text;
  for (const PassReport& p : passes) {
    text << p.pass << ": threshold " << p.threshold << ", " << p.significant << " found, " << p.bits
         << " bits\n";
  }
  return text.str();
}

std::string ReportDifference(const std::string& ours, const std::string& plain) {
  return ours == plain ? "" : "the reports differ:\n" + ours + "against\n" + plain;
}

// An arithmetic decoder reads ahead, so that the last bits it asks for may lie behind a whole file.
bool TruncatedAlike(const DecompressResult& decoded, bool missingBits) {
  if (!CoderOf(decoded.info.kind).IsArithmetic()) return decoded.truncated == missingBits;
  return decoded.truncated || !missingBits || decoded.info.fillsBudget;
}

}  // namespace

std::string EncodingDifference(const Image& image, const CompressOptions& options) {
  const CompressResult result = Compress(image, options);
  const plain::Coded expected = plain::Compress(image, options);
  if (result.file != expected.file) return "the files differ";
  return ReportDifference(TextOf(result.passes), TextOf(expected.passes));
}

std::string DecodingDifference(ByteView file, FileKind kind, std::optional<int> bitsOfARow) {
  const auto info = Attempt([&] { return Inspect(file, kind); });
  if (!info) return Attempt([&] { return Decompress(file, kind); }) ? "only Inspect fails" : "";
  DecompressOptions options;
  std::optional<std::int32_t> budget;
  if (bitsOfARow) {
    options.rate = static_cast<double>(*bitsOfARow) / info->cols;
    budget = *bitsOfARow * info->rows;
  }
  const auto decoded = Attempt([&] { return Decompress(file, kind, options); });
  const auto expected = Attempt([&] { return plain::Decompress(file, kind, budget); });
  if (decoded.has_value() != expected.has_value()) return "only one of the two fails";
  if (!decoded) return "";
  if (decoded->image != expected->image) return "the pictures differ";
  if (!TruncatedAlike(*decoded, expected->missingBits)) return "only one finds the file cut";
  return ReportDifference(TextOf(decoded->passes), TextOf(expected->passes));
}

}  // namespace marovia::test
