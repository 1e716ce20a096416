#include <algorithm>
#include <bit>
#include <limits>
#include <string>
#include <type_traits>

#include "context/kernels.h"
#include "measures/region.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

constexpr int kDefaultLevels = 6;
constexpr int kDefaultIntegerLevels = 5;

void CheckOptions(const Image& image, const ContextOptions& options) {
  if (image.Empty()) Fail(Errc::kInvalidArgument, "The image is empty.");
  if (options.levels && *options.levels < 0) {
    Fail(Errc::kInvalidArgument, "Levels of " + std::to_string(*options.levels) + ".");
  }
  constexpr std::int64_t kLeast = kContextHeaderBytes;
  if (options.bytes != 0 && options.bytes < kLeast) {
    Fail(Errc::kInvalidArgument, "A file of " + std::to_string(options.bytes) +
                                     " bytes; the header alone has " + std::to_string(kLeast) +
                                     ".");
  }
  if (!options.region) return;
  CheckRegion(*options.region, image, Errc::kInvalidArgument);
  if (!(options.share >= 0 && options.share <= 1)) {
    Fail(Errc::kInvalidArgument, "The region's share is not between 0 and 1.");
  }
}

ContextHeader HeaderFor(const Image& image, const ContextOptions& options) {
  ContextHeader header{.wavelet = options.wavelet, .rows = image.Rows(), .cols = image.Cols()};
  const int levels =
      options.levels.value_or(IsInteger(options.wavelet) ? kDefaultIntegerLevels : kDefaultLevels);
  header.levels = std::min(levels, ContextLevelLimit(header.rows, header.cols));
  // An image that a file can just hold may not bear the padding of more.
  while (header.levels > 0 && header.Cells() > kMostContextCells) --header.levels;
  CheckContextSides(header);
  return header;
}

// The integer next to the mean of some values; a half goes up.
std::int32_t MeanOf(std::span<const std::int32_t> values) {
  std::int64_t sum = 0;
  for (const std::int32_t value : values) sum += value;
  const auto count = static_cast<std::int64_t>(values.size());
  const std::int64_t twice = 2 * sum + count;
  const std::int64_t rest = (twice % (2 * count) + 2 * count) % (2 * count);
  return static_cast<std::int32_t>((twice - rest) / (2 * count));
}

// The planes that 32 bits can have, so that any coefficient may be cut before it is refused.
constexpr int kRoom = 32;

// An image's transform as bit planes.
class Analysis {
 public:
  Analysis(const ContextKernels& kernels, const Image& image, ContextHeader& header)
      : field(header, kRoom), kernels_(kernels) {
    const ContextBand& low = field.Bands().front();
    low_ = Grid<std::int32_t>(low.rows, low.cols, Unfilled{});
    IsInteger(header.wavelet) ? Run<std::int32_t>(image, header) : Run<float>(image, header);
    header.mean = MeanOf(low_.Samples());
    for (std::int32_t& value : low_.Samples()) value -= header.mean;
    for (int r = 0; r < low_.Rows(); ++r) CutRow(0, r, std::span<const std::int32_t>(low_.Row(r)));
    header.planes = static_cast<int>(std::bit_width(magnitudes_));
    if (header.planes > kMostContextPlanes) {
      Fail(Errc::kOverflow, "Overflow: a coefficient has " + std::to_string(header.planes) +
                                " bits; a file can hold " + std::to_string(kMostContextPlanes) +
                                ".");
    }
  }

  ContextField field;

 private:
  template <class Sample>
  void Run(const Image& image, const ContextHeader& header) {
    constexpr int kUnits = std::is_same_v<Sample, float> ? 16 : 1;
    ForwardBands<Sample>(image, header, [&](std::size_t band, int r, std::span<const Sample> row) {
      if (band > 0) return CutRow(band, r, row);
      std::ranges::transform(row, low_.Row(r).begin(), [](Sample sample) {
        return static_cast<std::int32_t>(sample * kUnits);
      });
    });
  }

  void CutRow(std::size_t band, int r, std::span<const std::int32_t> row) {
    magnitudes_ |= kernels_.cutWhole(field, field.Bands()[band], r, row);
  }
  void CutRow(std::size_t band, int r, std::span<const float> row) {
    magnitudes_ |= kernels_.cutSingle(field, field.Bands()[band], r, row);
  }

  const ContextKernels& kernels_;
  Grid<std::int32_t> low_;
  std::uint32_t magnitudes_ = 0;
};

// Which cells of a block lie outside some columns, both included.
std::uint64_t Outside(int block, int col1, int col2) {
  const auto upTo = [block](int end) {
    const int bits = std::clamp(end - kBlock * block, 0, kBlock);
    return bits == kBlock ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
  };
  return ~(upTo(col2 + 1) & ~upTo(col1));
}

// From here on the coefficients outside the region are what a reader would take them for now: what
// is not found stays so, and refinements say what is already assumed.
class Freezing {
 public:
  Freezing(ContextField& field, int plane) : field_(field), plane_(plane) {}

  void OutsideOf(const Region& region) {
    for (const BandField& band : field_.Bands()) {
      if (plane_ < band.shift) continue;
      const Region needed = RegionOfBand(region, band);
      for (int r = 0; r < band.rows; ++r) {
        const bool rowInside = r >= needed.row1 && r <= needed.row2;
        for (int block = 0; block < band.blocks; ++block) {
          Freeze(band, r, block,
                 rowInside ? Outside(block, needed.col1, needed.col2) : ~std::uint64_t{0});
        }
      }
    }
  }

 private:
  // The cells of a block by what a reader adds to them.
  using Classes = std::array<std::uint64_t, 4>;

  Classes ClassesOf(const BandField& band, int r, int block) const {
    Classes classes{};
    const std::size_t word = band.Word(r, block);
    for (std::uint64_t rest = field_.found[word]; rest != 0; rest &= rest - 1) {
      const int i = std::countr_zero(rest);
      const bool old = (field_.old[word] >> i & 1) != 0;
      const std::size_t precision = PrecisionOf(old, band.known[band.Cell(r, block) + i]);
      classes[precision] |= rest & (0 - rest);
    }
    return classes;
  }

  void Freeze(const BandField& band, int r, int block, std::uint64_t outside) {
    if (outside == 0) return;
    const Classes classes = ClassesOf(band, r, block);
    const auto guesses = AddedByPrecision(plane_);
    const std::size_t word = band.Word(r, block);
    const std::uint64_t settled = field_.found[word] & ~field_.old[word];
    for (int plane = plane_; plane >= 0; --plane) {
      std::uint64_t guess = 0;
      for (std::size_t i = 0; i < classes.size(); ++i) {
        if ((guesses[i] >> plane & 1) != 0) guess |= classes[i];
      }
      // What the plane has of those that it visited is known.
      const std::uint64_t changed = plane == plane_ ? outside & ~settled : outside;
      std::uint64_t& bits = field_.Plane(plane)[word];
      bits = (bits & ~changed) | (guess & changed);
    }
  }

  ContextField& field_;
  int plane_;
};

class Encoding {
 public:
  Encoding(const ContextKernels& kernels, const ContextOptions& options, Analysis& analysis,
           const ContextHeader& header)
      : kernels_(kernels), options_(options), field_(analysis.field), planes_(header.planes) {
    AppendContextHeader(file_, header);
  }

  Bytes Run() && {
    RangeOutput output(file_, Limit());
    RangeWriter coder(output);
    for (int plane = planes_ - 1; plane >= 0 && !coder.Done(); --plane) {
      kernels_.begin(field_, plane);
      for (const Pass pass : kPasses) {
        FreezeIfDue(plane, output);
        kernels_.write(field_, plane, pass, counters_, coder);
      }
      if (options_.onPlane) options_.onPlane({plane, field_.FoundCount(), Length(output)});
    }
    if (planes_ > 0 && !coder.Done()) coder.Finish();
    file_.resize(static_cast<std::size_t>(Length(output)));
    return std::move(file_);
  }

 private:
  [[nodiscard]] std::int64_t Limit() const {
    return options_.bytes == 0 ? std::numeric_limits<std::int64_t>::max() : options_.bytes;
  }
  [[nodiscard]] std::int64_t Length(const RangeOutput& output) const {
    return std::min(output.Settled(), Limit());
  }

  void FreezeIfDue(int plane, const RangeOutput& output) {
    if (frozen_ || !options_.region || options_.bytes == 0) return;
    constexpr std::int64_t kHeader = kContextHeaderBytes;
    const double due =
        (1.0 - double{options_.share}) * static_cast<double>(options_.bytes - kHeader);
    if (static_cast<double>(output.Settled() - kHeader) < due) return;
    Freezing(field_, plane).OutsideOf(*options_.region);
    frozen_ = true;
  }

  const ContextKernels& kernels_;
  const ContextOptions& options_;
  ContextField& field_;
  int planes_;
  Counters counters_;
  Bytes file_;
  bool frozen_ = false;
};

}  // namespace

Bytes EncodeContextWith(const ContextKernels& kernels, const Image& image,
                        const ContextOptions& options) {
  CheckOptions(image, options);
  ContextHeader header = HeaderFor(image, options);
  Analysis analysis(kernels, image, header);
  return Encoding(kernels, options, analysis, header).Run();
}

Bytes EncodeContext(const Image& image, const ContextOptions& options) {
  return EncodeContextWith(BestKernels(), image, options);
}

}  // namespace marovia
