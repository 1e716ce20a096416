// The kernels that are made of some lanes.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <type_traits>

#include "context/kernels.h"
#include "context/pass_walk.h"

namespace marovia {

template <class Lanes>
class KernelsOf {
 public:
  static constexpr ContextKernels Table() {
    return {Begin,      Code<RangeWriter>,  Code<RangeReader>, Cut<std::int32_t>,
            Cut<float>, Join<std::int32_t>, Join<float>};
  }

 private:
  template <class Sample>
  static constexpr int kUnits = std::is_same_v<Sample, float> ? 16 : 1;

  using Block = std::array<std::int32_t, kBlock>;

  static void Begin(ContextField& field, int plane) { BeginPlane<Lanes>(field, plane); }

  template <class Coder>
  static void Code(ContextField& field, int plane, Pass pass, Counters& counters, Coder& coder) {
    PassWalk<Lanes, Coder>(field, plane, counters, coder).Run(pass);
  }

  // Calls action(block, its first sample, their number) along a row.
  template <class Sample, class Action>
  static void EachBlock(std::span<Sample> row, Action action) {
    int block = 0;
    for (std::size_t first = 0; first < row.size(); first += kBlock, ++block) {
      action(block, row.data() + first, std::min<std::size_t>(kBlock, row.size() - first));
    }
  }

  template <class Sample>
  static std::uint32_t Cut(ContextField& field, const BandField& band, int r,
                           std::span<const Sample> row) {
    std::uint32_t magnitudes = 0;
    EachBlock(row, [&](int block, const Sample* samples, std::size_t count) {
      alignas(64) Block values;
      for (std::size_t i = 0; i < count; ++i) {
        values[i] = static_cast<std::int32_t>(samples[i] * kUnits<Sample>);
      }
      std::fill(values.begin() + static_cast<std::ptrdiff_t>(count), values.end(), 0);
      const std::size_t word = band.Word(r, block);
      magnitudes |= Lanes::Cut(values.data(), band.shift, field.Plane(0) + word, field.Words(),
                               field.negative[word]);
    });
    return magnitudes;
  }

  template <class Sample>
  static void Join(const ContextField& field, const BandField& band, int r,
                   const Reconstruction& how, std::span<Sample> row) {
    EachBlock(row, [&](int block, Sample* samples, std::size_t count) {
      const std::size_t word = band.Word(r, block);
      if (field.found[word] == 0) {
        std::fill_n(samples, count, static_cast<Sample>(how.mean) / kUnits<Sample>);
        return;
      }
      const std::ptrdiff_t cell = band.Cell(r, block);
      alignas(64) Block values;
      Lanes::Join({field.Plane(0) + word, field.Words(), field.old[word], band.known + cell,
                   band.sign + cell},
                  how, values.data());
      for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<Sample>(values[i] + how.mean) / kUnits<Sample>;
      }
    });
  }
};

}  // namespace marovia
