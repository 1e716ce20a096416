// Compression of grey images into embedded wavelet files, and back, on bytes in memory.
//
//   marovia::Image image = marovia::ReadImage(bytes).image;
//   marovia::CompressResult packed = marovia::Compress(image, {.rate = 0.5});
//   marovia::DecompressResult back = marovia::Decompress(packed.file, marovia::FileKind::kAwh);
//
// A file is embedded: decompressed at any lower rate, or cut short, it gives the picture that those
// bits hold. Every function may be called from several threads at once; nothing is shared.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <vector>

#include "marovia/error.h"
#include "marovia/export.h"
#include "marovia/image.h"
#include "marovia/types.h"

namespace marovia {

// kAwh where a file begins with the four bytes that name it; no other kind has any.
MAROVIA_API std::optional<FileKind> KindOfContent(ByteView start);

struct CompressOptions {
  FileKind kind = FileKind::kAwh;
  // Unset: 9/7, and 2+2,2 where lossless, which needs an integer one.
  std::optional<WaveletKind> wavelet = {};
  // Levels of the transform, held to what the sides allow. Unset: as many as help (up to 6) as long
  // as padding the sides to multiples of 2^levels adds at most 6 % of the pixels, else 3; of kAwh 6
  // with the 9/7 wavelet and 5 with the others.
  std::optional<int> levels = {};
  // Bits per pixel of the image (unpadded), the header included: the budget is the whole number of
  // bits nearest to that, and the last group of symbols may exceed it by its own length; of kAwh
  // the whole bytes in it, or the 16 of a header where it has fewer. Ignored where lossless.
  double rate = 0.5;
  // The most bytes that the file may have, in place of the rate; never exceeded. Ignored by kAwg,
  // refused with `lossless` of kAwh.
  std::optional<std::int64_t> bytes = {};
  // Spend the last `share` of the bits on this part of the image; below 0 it counts as 0.01, above
  // 0.99 as 0.99. A lossless kAwh, which has all of it, refuses one.
  std::optional<Region> region = {};
  float share = 0.9F;
  // Repeat the last row and column up to multiples of 2^levels; the file tells the true size.
  // Without it such sides are coded as they are, and do not come back faithfully. kAwh always pads.
  bool pad = true;
  PassListener onPass = {};
  // Called all the while that a search (by bytes, PSNR or wavelet) tries what it may drop, of which
  // onPass hears nothing; perhaps from two threads at once. What either of them throws ends the
  // run.
  std::function<void()> onTry = {};
  // In place of the rate and the bytes: the least PSNR, in decibels, that the file may decode to,
  // in about the fewest bytes. Takes a search that decodes some dozen times; not with a region.
  // Ignored by kAwg, refused with `lossless` of kAwh.
  std::optional<double> psnr = {};
  // Of lossless coding alone, in place of a wavelet: code with both integer wavelets, at once on
  // two threads, and keep the shorter file.
  bool bestWavelet = false;
  // Every pixel, in place of a rate: of kAwh, and of kAwg, which is so in any case.
  bool lossless = false;
  // On as many threads as help, at most so many; 0: as many as the machine has processors. The file
  // is the same on any number.
  int threads = 1;
};

struct CompressResult {
  Bytes file;
  WaveletKind wavelet = WaveletKind::kDaub97;  // as used
  int levels = 0;                              // as used
  float mean = 0;                              // of the low band; subtracted before coding
  int exponent = 0;
  std::vector<PassReport> passes;  // one a pass, then one more of the end
};

// Throws Error: kInvalidArgument (a rate or a number of bytes that is none, levels below 1,
// lossless with the 9/7 wavelet and padding on, a region outside the image, a PSNR out of reach),
// kLimit (a padded side above kMostSide), kOverflow (more than 2^31 bits).
MAROVIA_API CompressResult Compress(const Image& image, const CompressOptions& options = {});

// What a compressed file says of itself, read without decoding.
struct FileInfo {
  FileKind kind = FileKind::kAwf;
  WaveletKind wavelet = WaveletKind::kDaub97;
  int levels = 0;
  int rows = 0;  // of the image that comes out
  int cols = 0;
  int codedRows = 0;  // of the coded image, larger where the sides were padded
  int codedCols = 0;
  float mean = 0;
  int exponent = 0;                    // the first threshold is 2^exponent
  std::optional<std::int32_t> budget;  // bits that the compressor might spend; none in kAwg, kAwh
  std::int64_t bitsPresent = 0;        // of the stream, behind the header
  // Whether the stream is as long as the budget. A shorter one was cut, or its coder had nothing
  // more to send; a file without a budget cannot tell.
  bool fillsBudget = false;
};

// Throws Error: kMalformed (shorter than a header, or with a header that no compressor writes),
// kLimit (more than maxPixels pixels).
MAROVIA_API FileInfo Inspect(ByteView file, FileKind kind,
                             std::int64_t maxPixels = kDefaultMaxPixels);

// The same of a file of `fileBytes` bytes of which only the start is at hand: the header suffices.
inline constexpr std::size_t kMostHeaderBytes = 16;
MAROVIA_API FileInfo InspectStart(ByteView start, std::int64_t fileBytes, FileKind kind,
                                  std::int64_t maxPixels = kDefaultMaxPixels);

// The bytes of a file, header included, behind which nothing is read: by its budget, or, of one
// without, more than any image of its size needs. What follows them changes no picture.
MAROVIA_API std::int64_t UsefulBytes(const FileInfo& info);

struct DecompressOptions {
  // Bits per pixel to decode, held to what the file was made with, or of kAwh to what there is;
  // unset: all. Ignored by kAwg.
  std::optional<double> rate = {};
  std::int64_t maxPixels = kDefaultMaxPixels;
  PassListener onPass = {};
  // As in CompressOptions.
  int threads = 1;
  // A picture whose sides are 2^reduce smaller, rounded up, in less time and memory:
  // the low band of that many levels. Held to the levels of the file; the info tells the full size.
  int reduce = 0;
};

struct DecompressResult {
  Image image;
  FileInfo info;
  std::vector<PassReport> passes;  // one a pass, then one more of the end
  bool rateHeld = false;           // the rate asked for was above the file's own
  // Bits that were asked for are missing; the picture is what was there. A kAwh without a rate asks
  // for what there is: any length of it is a file.
  bool truncated = false;
};

// Throws Error as Inspect, and kMalformed or kOverflow where a damaged stream holds numbers that no
// image can have.
MAROVIA_API DecompressResult Decompress(ByteView file, FileKind kind,
                                        const DecompressOptions& options = {});

struct TruncateOptions {
  // Just one of the two: bits per pixel to keep, or the most bytes that the result may have.
  std::optional<double> rate;
  std::optional<std::int64_t> bytes;
  std::int64_t maxPixels = kDefaultMaxPixels;
};

struct TruncateResult {
  Bytes file;
  FileKind kind = FileKind::kAwf;  // that of the file, but kAwf for a kAwg that was cut
  // The file holds no more than that, and is as it was, but for bytes behind its stream that there
  // was no room for.
  bool rateHeld = false;
};

// A shorter file that decodes just as the long one does at that rate, without coding again. A
// lossless file becomes a lossy one of its kind (kAwg to kAwf); no budget is ever raised. That of a
// kAwh is its first bytes.
// Throws Error as Inspect, and kInvalidArgument (no target or two, a rate or a number of bytes that
// is not above 0, fewer bytes than a header).
MAROVIA_API TruncateResult Truncate(ByteView file, FileKind kind, const TruncateOptions& options);
// The same in place, without a second copy of a large file.
MAROVIA_API TruncateResult Truncate(Bytes&& file, FileKind kind, const TruncateOptions& options);

// How the quality of an image grows: the PSNR that each of the rates is worth, in bits per pixel;
// none where the picture is the image. It is coded once, at the highest of them, whatever rate,
// bytes or PSNR the options name; each lower one is a start of that file. Throws Error as Compress,
// and kInvalidArgument for lossless coding, where no rate counts, and for a region.
MAROVIA_API std::vector<std::optional<float>> MeasureCurve(const Image& image,
                                                           const CompressOptions& options,
                                                           std::span<const double> rates);

}  // namespace marovia
