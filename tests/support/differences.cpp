#include "tests/support/differences.h"

#include <algorithm>
#include <optional>
#include <sstream>

#include "marovia/codec.h"

#include "tests/support/library_options.h"

namespace marovia::test {
namespace {

// What the action gives; nothing where it throws Error.
template <class Action>
auto Attempt(Action action) -> std::optional<decltype(action())> {
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

bool IsSame(const PassReport& a, const PassReport& b) {
  return a.pass == b.pass && a.threshold == b.threshold && a.significant == b.significant &&
         a.bits == b.bits;
}

std::string ReportDifference(const std::vector<PassReport>& ours,
                             const std::vector<PassReport>& plain) {
  if (std::ranges::equal(ours, plain, IsSame)) return "";
  return "the reports differ:\n" + TextOf(ours) + "against\n" + TextOf(plain);
}

std::string DifferenceOfFailure(bool succeeds) {
  return succeeds ? "only the plain codec fails" : "only the library fails";
}

// An arithmetic decoder reads ahead, so that the last bits it asks for may lie behind a whole file.
bool TruncatedAlike(const DecompressResult& decoded, const literal::Decoded& expected) {
  const FileKind kind = decoded.info.kind;
  if (kind == FileKind::kAwb || kind == FileKind::kAwd) {
    return decoded.truncated == expected.missingBits;
  }
  return decoded.truncated || !expected.missingBits || decoded.info.fillsBudget;
}

}  // namespace

std::string EncodingDifference(const Image& image, const literal::Settings& settings) {
  const auto expected = Attempt([&] { return literal::Compress(image, settings); });
  const auto result = Attempt([&] { return Compress(image, UnpaddedOptions(settings, image)); });
  if (result.has_value() != expected.has_value()) return DifferenceOfFailure(result.has_value());
  if (!result) return "";
  if (result->file != expected->file) return "the files differ";
  const bool sameHead = result->levels == expected->levels && result->mean == expected->mean &&
                        result->exponent == expected->exponent;
  if (!sameHead) return "levels, mean or exponent differ";
  return ReportDifference(result->passes, expected->passes);
}

std::string DecodingDifference(ByteView file, FileKind kind, double rate) {
  const auto expected = Attempt([&] { return literal::Decompress(file, kind, rate); });
  const auto decoded =
      Attempt([&] { return Decompress(file, kind, OptionsOfRowRate(rate, file, kind)); });
  if (decoded.has_value() != expected.has_value()) return DifferenceOfFailure(decoded.has_value());
  if (!decoded) return "";
  if (decoded->image != expected->image) return "the pictures differ";
  if (!TruncatedAlike(*decoded, *expected)) return "only one of the two takes the file for cut";
  return ReportDifference(decoded->passes, expected->passes);
}

}  // namespace marovia::test
