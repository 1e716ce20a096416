#include <algorithm>

#include "fuzz/coding_request.h"
#include "fuzz/input.h"
#include "fuzz/targets.h"
#include "tests/support/differences.h"
#include "tests/support/plain_context.h"

namespace marovia::fuzz {
namespace {

// The plain codec is slow.
constexpr std::int64_t kMostPixels = 256;
constexpr int kMostSide = 16;

// The plain codec would go on for minutes at a huge size.
bool IsForPlainCodec(ByteView file, FileKind kind) {
  try {
    Inspect(file, kind, kMostPixels);
  } catch (const Error&) {
    return false;
  }
  return true;
}

bool IsWithin(const Region& region, const Image& image) {
  return region.row1 <= region.row2 && region.row2 < image.Rows() && region.col1 <= region.col2 &&
         region.col2 < image.Cols();
}

void PromiseNone(const std::string& difference) {
  Promise(difference.empty(), difference.c_str());
}

void CompareContext(ByteView file) {
  const ContextPicture expected = plain::DecodeContext(file);
  const ContextPicture found = DecodeContext(file);
  Promise(found.image == expected.image && found.complete == expected.complete,
          "A context-coded file decodes as the plain codec has it.");
}

void CompareContext(const CodingRequest& request) {
  const CompressOptions& options = request.options;
  const ContextOptions coding{.wavelet = *options.wavelet,
                              .levels = options.levels.value_or(5),
                              .bytes = 16 + static_cast<std::int64_t>(options.rate * 100),
                              .region = options.region,
                              .share = std::clamp(options.share, 0.0F, 1.0F)};
  Promise(EncodeContext(request.image, coding) == plain::EncodeContext(request.image, coding),
          "A context-coded file is that of the plain codec.");
}

}  // namespace

void DecodePlainly(ByteView input) {
  Input in(input);
  const FileKind kind = in.Kind();
  const double rate = in.Byte() / 16.0;
  if (!IsForPlainCodec(in.Rest(), kind)) return;
  if (kind == FileKind::kAwh) return CompareContext(in.Rest());
  PromiseNone(test::DecodingDifference(in.Rest(), kind, rate));
}

void EncodePlainly(ByteView input) {
  const CodingRequest request = TakeRequest(input, kMostSide);
  const CompressOptions& options = request.options;
  // Where a choice makes no sense the two need not agree.
  if (options.bytes || !(options.rate > 0 && options.rate < 100)) return;
  if (options.region && !IsWithin(*options.region, request.image)) return;
  if (options.kind == FileKind::kAwh) return CompareContext(request);
  if (options.lossless) return;
  const literal::Settings settings{options.kind, *options.wavelet, options.levels.value_or(1),
                                   options.rate, options.region,   options.share};
  PromiseNone(test::EncodingDifference(request.image, settings));
}

}  // namespace marovia::fuzz
