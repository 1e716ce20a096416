#include <algorithm>

#include "fuzz/coding_request.h"
#include "fuzz/targets.h"

namespace marovia::fuzz {
namespace {

constexpr int kMostSide = 32;

bool Fits(int side, int levels) {
  return side >= 3 && side % (1 << levels) == 0;
}

// A region leaves the rest of the image incomplete, and sides that do not fit come back permuted.
bool MustBeExact(const CodingRequest& request, int levels) {
  const CompressOptions& options = request.options;
  if (options.kind == FileKind::kAwh) return options.lossless;
  if (options.kind != FileKind::kAwg || options.region) return false;
  if (options.wavelet == WaveletKind::kDaub97) return false;
  return options.pad || (Fits(request.image.Rows(), levels) && Fits(request.image.Cols(), levels));
}

void CheckLength(const CodingRequest& request, const Bytes& file) {
  if (request.options.kind == FileKind::kAwg || request.options.lossless) return;
  const auto size = static_cast<double>(file.size());
  // A last group of symbols may exceed the budget, and a header may exceed all of it.
  constexpr double kBeyond = 48;
  const double budget = request.options.rate * static_cast<double>(request.image.Size()) / 8;
  if (request.options.bytes) {
    Promise(size <= static_cast<double>(*request.options.bytes), "The bytes are kept to.");
  } else {
    Promise(size <= budget + kBeyond, "The rate is kept to.");
  }
}

void CheckBack(const CodingRequest& request, const CompressResult& coded) {
  const DecompressResult back = Decompress(coded.file, request.options.kind);
  Promise(back.image.SameShape(request.image), "The size comes back.");
  Promise(!back.truncated, "A whole file is not taken for a cut one.");
  Promise(!MustBeExact(request, coded.levels) || back.image == request.image,
          "Lossless is lossless.");
}

std::optional<CompressResult> Coded(const CodingRequest& request) {
  try {
    return Compress(request.image, request.options);
  } catch (const Error& error) {
    constexpr Errc kNamed[] = {Errc::kInvalidArgument, Errc::kLimit, Errc::kOverflow};
    Promise(std::ranges::find(kNamed, error.Code()) != std::end(kNamed),
            "Compress fails as its header says.");
    return std::nullopt;
  }
}

}  // namespace

void RoundTrip(ByteView input) {
  const CodingRequest request = TakeRequest(input, kMostSide);
  const std::optional<CompressResult> coded = Coded(request);
  if (!coded) return;
  CheckLength(request, coded->file);
  CheckBack(request, *coded);
}

}  // namespace marovia::fuzz
