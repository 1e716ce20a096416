// A compression as the steps of a run, each of which settles fields of the file's header.
#pragma once

#include <memory>

#include "codec/coders.h"
#include "format/file_header.h"
#include "passes/run.h"

namespace marovia {

// Called in the order of their declaration, the steps make a whole file; SetRegion may be left out.
// Nothing is written before the last of them.
class Compression {
 public:
  // The image must outlive the compression. With `pad`, sides that are no multiples of 2^levels are
  // padded. Error kInvalidArgument where the image is empty, kLimit where a side exceeds kMostSide.
  Compression(const Coder& coder, const Image& image, WaveletKind wavelet, bool pad);

  // 0: as many as the machine has processors. 1 unless set; the file is the same on any number.
  void SetThreads(int threads) { threads_ = threads; }
  // Not for a lossless coder. The budget may be 0 or negative.
  void SetBudget(std::int32_t bits) { header_.budget = bits; }
  // Levels within the limit. Error kLimit where a padded side exceeds kMostSide.
  void SetLevels(int levels);
  // The coefficients, scaled, before their mean is taken off.
  const Grid<float>& Transform();
  void SubtractMean();
  void ChooseThreshold();
  // From here on the coefficients are ordered. Only those that the region needs are found once all
  // but a `share` of the budget is spent (of 8 bits a pixel without one); a share below 0 counts as
  // 0.01, one above 0.99 as 0.99. Returns the mask, 1 inside and 0 outside.
  Grid<std::uint8_t> SetRegion(const Region& region, float share);
  // The header and all passes. Returns the closing report.
  PassReport WritePasses(const PassListener& onPass);

  [[nodiscard]] const Bytes& File() const { return file_; }
  Bytes TakeFile() { return std::move(file_); }
  [[nodiscard]] const FileHeader& Header() const { return header_; }

 private:
  template <template <class> class Encoder, class Symbols, class Order>
  PassReport WriteWith(Order& order, const PassListener& onPass);

  const Coder& coder_;
  const Image& image_;
  bool pad_;
  int threads_ = 1;
  FileHeader header_;
  Bytes file_;
  Grid<float> coefficients_;
  std::optional<Region> region_;
  Grid<std::uint8_t> mask_;
  std::int64_t switchPoint_ = kNoLimit;
};

// A region's share as the compressors hold it.
float HeldShare(float share);

}  // namespace marovia
