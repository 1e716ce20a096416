// An embedded file and what each of its lengths is worth.
//
//   Explorer explorer(source, {.kind = FileKind::kAwh});
//   explorer.Code(kWholeRate, {});
//   Look look = *explorer.LookAt(8192, {});   those bytes, and the picture that they decode to
//   explorer.Measure(look);                   how far that is from the source
//
// The image is coded once; every answer comes from a start of that master, and is what the library
// gives for the same question: Truncate, Decompress, Measure. With a region, which decides where
// bits go by how many there are, each length is coded anew.
#pragma once

#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "marovia/codec.h"
#include "marovia/measures.h"

#include "explore/rate_scale.h"

namespace marovia {

using SharedImage = std::shared_ptr<const Image>;

// Told how much of the work is done, from 0 to 1; false ends it without a result.
using Watch = std::function<bool(double part)>;

// How a source is coded; unset, as the library thinks best.
struct Recipe {
  FileKind kind = FileKind::kAwh;
  std::optional<WaveletKind> wavelet = {};
  std::optional<int> levels = {};
  std::optional<Region> region = {};
  float share = 0.9F;

  [[nodiscard]] bool SameMaster(const Recipe& other) const {
    return kind == other.kind && wavelet == other.wavelet && levels == other.levels;
  }
};

// Bits a pixel of a lossy master: as many as the pixels themselves have.
inline constexpr double kWholeRate = 8;

// A length of the file, what it decodes to, and how far that is from the source.
struct Look {
  TruncateResult file;  // of at most as many bytes as were asked for
  SharedImage picture;
  // Unset before they are measured, and without a source.
  std::optional<ErrorMeasures> measures = {};
  std::optional<double> similarity = {};
  std::optional<ErrorMeasures> inRegion = {};
};

struct CurvePoint {
  std::int64_t bytes = 0;
  std::optional<float> psnr;  // none where the picture is the source
};

// To be used by one thread at a time. Errors as the library's.
class Explorer {
 public:
  // There is nothing to ask before Code.
  Explorer(SharedImage source, const Recipe& recipe);
  // A compressed file as it stands, beside an image of its size, if there is one.
  Explorer(Bytes file, FileKind kind, SharedImage source);

  // Codes the source at so many bits a pixel, where the kind has any; what comes after a first
  // quick master of few bits answers alike. False where the watch ended it.
  bool Code(double rate, const Watch& watch);

  // Of a source, whose master stays as it is.
  void SetRegion(const std::optional<Region>& region, float share);

  // The bytes that may be asked for, and of what.
  [[nodiscard]] const RateScale& Scale() const { return scale_; }
  [[nodiscard]] const FileInfo& Info() const { return info_; }
  [[nodiscard]] const SharedImage& Source() const { return source_; }
  // Lengths at which a pass ends, and the whole, rising: where the curve has its points.
  [[nodiscard]] const std::vector<std::int64_t>& Stops() const { return stops_; }

  // A file of at most so many bytes.
  TruncateResult FileOf(std::int64_t bytes);
  // Not yet measured. Nothing where the watch ended it.
  std::optional<Look> LookAt(std::int64_t bytes, const Watch& watch);
  void Measure(Look& look) const;
  // Only of a source.
  std::optional<CurvePoint> PointAt(std::int64_t bytes, const Watch& watch);
  // The fewest bytes whose picture is that good, or the most there are. Only of a source.
  std::optional<std::int64_t> BytesForPsnr(double psnr, const Watch& watch);

 private:
  void TakeMaster(const std::vector<PassReport>& passes);
  [[nodiscard]] TruncateResult CodedWithRegion(std::int64_t bytes) const;
  void Keep(std::int64_t asked, const Look& look);

  SharedImage source_;
  Recipe recipe_;
  Bytes master_;
  FileKind kind_;  // of the master
  FileInfo info_;
  RateScale scale_;
  std::vector<std::int64_t> stops_;

  struct Kept {
    std::int64_t asked;
    Look look;
  };
  std::deque<Kept> kept_;  // the latest first
};

}  // namespace marovia
