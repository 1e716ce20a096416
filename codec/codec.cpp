#include "marovia/codec.h"

#include <cmath>
#include <string>

#include "base/number_text.h"
#include "codec/coders.h"
#include "codec/context_kind.h"
#include "codec/one_run.h"
#include "codec/targets.h"
#include "format/file_header.h"
#include "measures/region.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

void CheckPsnr(const CompressOptions& options) {
  if (!(std::isfinite(*options.psnr) && *options.psnr > 0)) {
    Fail(Errc::kInvalidArgument,
         "The PSNR is " + TrimmedNumberText(*options.psnr) + " decibels; it must be above 0.");
  }
  // Where the bits of a region begin depends on the budget: a start of such a file is none.
  if (options.region || options.bytes) {
    Fail(Errc::kInvalidArgument, "A PSNR goes with neither a region nor a number of bytes.");
  }
}

void CheckLossless(const CompressOptions& options) {
  if (!options.lossless || CoderOf(options.kind).lossless || options.kind == FileKind::kAwh) return;
  Fail(Errc::kInvalidArgument, "A file of the kind " + std::string(Extension(options.kind)) +
                                   " cannot be lossless; awg and awh can.");
}

void CheckWavelet(const CompressOptions& options) {
  const bool lossless = IsLossless(options);
  const bool padded = options.pad || options.kind == FileKind::kAwh;
  if (lossless && padded && !IsInteger(WaveletOf(options))) {
    Fail(Errc::kInvalidArgument,
         "The 9/7 wavelet is not lossless; 5/3 and 2+2,2, the integer wavelets, are.");
  }
  if (options.bestWavelet && (options.wavelet || !lossless)) {
    Fail(Errc::kInvalidArgument,
         "The best wavelet is chosen in lossless coding, and where none is named.");
  }
}

void CheckThreads(int threads) {
  if (threads < 0) {
    Fail(Errc::kInvalidArgument,
         "The number of threads is " + std::to_string(threads) + "; it must be 0 or more.");
  }
}

void CheckOptions(const Image& image, const CompressOptions& options) {
  CheckThreads(options.threads);
  const bool hasBudget = CoderOf(options.kind).HasBudget();
  if (options.levels && *options.levels < 1) {
    Fail(Errc::kInvalidArgument,
         "The number of levels is " + std::to_string(*options.levels) + "; it must be 1 or more.");
  }
  CheckLossless(options);
  CheckWavelet(options);
  if (hasBudget && options.bytes && *options.bytes < 1) {
    Fail(Errc::kInvalidArgument, "The file is to have " + std::to_string(*options.bytes) +
                                     " bytes; that must be 1 or more.");
  }
  if (hasBudget && !options.bytes && !(std::isfinite(options.rate) && options.rate > 0)) {
    Fail(Errc::kInvalidArgument,
         "The rate is " + TrimmedNumberText(options.rate) + " bits per pixel; it must be above 0.");
  }
  if (options.region) CheckRegion(*options.region, image, Errc::kInvalidArgument);
  if (hasBudget && options.psnr) CheckPsnr(options);
}

}  // namespace

CompressResult Compress(const Image& image, const CompressOptions& options) {
  CheckOptions(image, options);
  if (options.bestWavelet) return CompressToTheShorter(image, options);
  if (options.kind == FileKind::kAwh) return CompressContext(image, options, WaveletOf(options));
  if (!CoderOf(options.kind).HasBudget()) return CompressOnce(image, options, 0);
  if (options.psnr) return CompressToPsnr(image, options);
  if (options.bytes) return CompressToBytes(image, options);
  return CompressOnce(image, options, BitBudget(options.rate, {image.Rows(), image.Cols()}));
}

DecompressResult Decompress(ByteView file, FileKind kind, const DecompressOptions& options) {
  CheckThreads(options.threads);
  if (options.reduce < 0) {
    Fail(Errc::kInvalidArgument, "The levels to leave out are " + std::to_string(options.reduce) +
                                     "; they must be 0 or more.");
  }
  if (kind == FileKind::kAwh) return DecompressContext(file, options);
  return DecompressOnce(file, kind, options);
}

}  // namespace marovia
