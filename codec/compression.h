// A compression as the steps of a run, each of which writes its fields of the file.
#pragma once

#include <memory>

#include "codec/coders.h"
#include "codec/geometry.h"
#include "coding/pass_plan.h"

namespace marovia {

// Called in the order of their declaration, the steps write a whole file; SetRegion may be left
// out. Between them File() holds just what has been written, so a run that is given up after a step
// leaves the file that it must.
class Compression {
 public:
  // The image must outlive the compression. With `pad`, sides that are no multiples of 2^levels are
  // padded and the true size noted. Error kInvalidArgument where the image is empty, kLimit where a
  // side exceeds 32767.
  Compression(const Coder& coder, const Image& image, WaveletKind wavelet, bool pad);

  // Not for a lossless coder. The rate refers to the image, unpadded; it may be 0 or negative.
  void WriteBudget(double rate);
  // The same with the budget itself.
  void WriteBudgetBits(std::int32_t bits);
  // Levels within the limit. Writes the sides too. Error kLimit where a padded one exceeds 32767.
  void WriteLevels(int levels);
  // The coefficients, scaled, before their mean is taken off.
  const Grid<float>& Transform();
  void WriteMean();
  void WriteThreshold();
  // From here on the coefficients are ordered. Only those that the region needs are found once all
  // but a `share` of the budget is spent (of 8 bits a pixel without one); a share below 0 counts as
  // 0.01, one above 0.99 as 0.99. Returns the mask, 1 inside and 0 outside.
  Grid<std::uint8_t> SetRegion(const Region& region, float share);
  // All passes and the end of the file. Returns the closing report.
  PassReport WritePasses(const PassListener& onPass);

  [[nodiscard]] const Bytes& File() const { return file_; }
  Bytes TakeFile() { return std::move(file_); }
  [[nodiscard]] float Mean() const { return mean_; }
  [[nodiscard]] int Exponent() const { return exponent_; }

 private:
  template <template <class> class Encoder, class Symbols, class Order>
  PassReport WriteWith(Order& order, const PassListener& onPass);

  const Coder& coder_;
  const Image& image_;
  WaveletKind wavelet_;
  bool pad_;
  Bytes file_;
  std::int64_t budget_ = kNoLimit;
  int levels_ = 0;
  Sides coded_{};
  Grid<float> coefficients_;
  float mean_ = 0;
  int exponent_ = 0;
  std::optional<Region> region_;
  Grid<std::uint8_t> mask_;
  std::int64_t switchPoint_ = kNoLimit;
};

// A region's share as the compressors hold it.
float HeldShare(float share);

}  // namespace marovia
