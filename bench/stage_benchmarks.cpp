#include <benchmark/benchmark.h>
#include <cmath>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/benchmarks.h"
#include "codec/compression.h"
#include "codec/decompression.h"
#include "coding/arithmetic_symbols.h"
#include "format/file_header.h"
#include "passes/bit_planes.h"
#include "passes/run.h"
#include "wavelet/transform.h"

namespace marovia::bench {
namespace {

constexpr int kLevels = 4;  // what every wavelet bears at 512 x 512
constexpr double kRate = 0.5;

template <class Run>
auto* Register(const std::string& name, Run run) {
  return benchmark::RegisterBenchmark(("stage/" + name).c_str(), run)
      ->Unit(benchmark::kMillisecond)
      ->MeasureProcessCPUTime();
}

// Times use(prepare()) without the preparation.
template <class Prepare, class Use>
void RegisterPrepared(const std::string& name, Prepare prepare, Use use) {
  Register(name, [=](benchmark::State& state) {
    for (auto _ : state) {
      state.PauseTiming();
      auto prepared = prepare();
      state.ResumeTiming();
      use(prepared);
      // Clearing up is no part of the stage.
      state.PauseTiming();
      { auto gone = std::move(prepared); }
      state.ResumeTiming();
    }
  });
}

void RegisterTransform(const std::string& name, WaveletKind wavelet, const Source& source) {
  Register(name + " forward", [&source, wavelet](benchmark::State& state) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(TransformTheImage(source.image, wavelet, kLevels));
    }
  });
  RegisterPrepared(
      name + " inverse",
      [coefficients = TransformTheImage(source.image, wavelet, kLevels)] { return coefficients; },
      [wavelet](Grid<float>& coefficients) {
        benchmark::DoNotOptimize(InvertTheTransformQuant(coefficients, wavelet, kLevels));
      });
}

struct Coefficients {
  Grid<float> grid;
  BandGrid bands{};
  int exponent = 0;
};

void RegisterOrder(const std::string& name, OrderKind kind,
                   const std::shared_ptr<const Coefficients>& source) {
  const auto order = std::shared_ptr(MakeOrder(kind, source->bands));
  const auto homes = [=] { return order->Gather(source->grid.Samples(), 1); };
  Register(name + " order set up", [=](benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(MakeOrder(kind, source->bands));
  });
  Register(name + " gather", [=](benchmark::State& state) {
    for (auto _ : state) benchmark::DoNotOptimize(homes());
  });
  RegisterPrepared(
      name + " scatter", [=] { return std::pair(homes(), source->grid); },
      [=](auto& values) { order->Scatter(values.first, values.second.Samples(), 1); });
}

void RegisterPlanes(const std::shared_ptr<const Coefficients>& source) {
  Register("threshold", [=](benchmark::State& state) {
    for (auto _ : state) {
      benchmark::DoNotOptimize(GetThreshold(source->grid.Samples(), WaveletKind::kDaub97));
    }
  });
  const auto order = std::shared_ptr(MakeOrder(OrderKind::kAdaptive, source->bands));
  RegisterPrepared(
      "bit planes", [=] { return order->Gather(source->grid.Samples(), 1); },
      [=](auto& homes) {
        benchmark::DoNotOptimize(BitPlanes(std::move(homes), source->exponent, 1));
      });
}

// With what is found at the threshold that about half a bit per pixel ends at.
void RegisterRebuild(const std::shared_ptr<const Coefficients>& source) {
  constexpr float kThreshold = 16;
  const auto order = std::shared_ptr(MakeOrder(OrderKind::kAdaptive, source->bands));
  const auto values = order->Gather(source->grid.Samples(), 1);
  const auto found = std::make_shared<HomeSet>(values.size());
  for (std::size_t home = 0; home < values.size(); ++home) {
    if (std::abs(values[home]) >= kThreshold) found->Insert(static_cast<Home>(home));
  }
  Register("adaptive order rebuilt, every level", [=](benchmark::State& state) {
    for (auto _ : state) {
      order->Rebuild(*found);
      for (std::size_t i = 0; i < order->Stretches().size(); ++i) {
        if (order->Stretches()[i].ordered) benchmark::DoNotOptimize(order->OrderOf(i));
      }
    }
  });
}

// A run up to its passes.
std::shared_ptr<Compression> BeforePasses(const Source& source, FileKind kind) {
  const Coder& coder = CoderOf(kind);
  const auto wavelet = coder.lossless ? WaveletKind::kInteger53 : WaveletKind::kDaub97;
  auto run = std::make_shared<Compression>(coder, source.image, wavelet, true);
  if (coder.HasBudget())
    run->SetBudget(BitBudget(kRate, {source.image.Rows(), source.image.Cols()}));
  run->SetLevels(kLevels);
  run->Transform();
  run->SubtractMean();
  run->ChooseThreshold();
  return run;
}

void RegisterPasses(FileKind kind, const Source& source) {
  const std::string name = std::string(Extension(kind)) + " passes";
  RegisterPrepared(
      name + " written", [kind, &source] { return BeforePasses(source, kind); },
      [](auto& run) { run->WritePasses({}); });
  const auto whole = BeforePasses(source, kind);
  whole->WritePasses({});
  const auto file = std::make_shared<const Bytes>(whole->TakeFile());
  RegisterPrepared(
      name + " read",
      [=] { return std::make_shared<Decompression>(*file, kind, kDefaultMaxPixels); },
      [](auto& run) { run->ReadPasses({}); });
}

// Characters 0 to most - 1, the lower the likelier, from a generator that is the same everywhere.
std::vector<std::uint8_t> SkewedCharacters(unsigned most) {
  constexpr std::size_t kCount = 1U << 16;
  std::vector<std::uint8_t> characters(kCount);
  std::uint32_t state = 1;
  for (std::uint8_t& character : characters) {
    state = state * 1664525 + 1013904223;
    const unsigned draw = state >> 24;
    character = static_cast<std::uint8_t>(draw < 140 ? 0 : draw < 210 ? 1 : most - 1);
  }
  return characters;
}

// Times are for one symbol.
template <class Setup, class Context>
void RegisterCoder(const std::string& name, unsigned characterCount) {
  const auto characters = SkewedCharacters(characterCount);
  const auto encode = [characters] {
    Bytes bytes;
    ArithmeticEncoder<Setup> encoder(bytes);
    Context context;
    for (const std::uint8_t character : characters) encoder.Encode(context, character);
    encoder.DoneEncoding();
    return bytes;
  };
  const auto count = static_cast<benchmark::IterationCount>(characters.size());
  Register(name + " encoded", [=](benchmark::State& state) {
    while (state.KeepRunningBatch(count)) benchmark::DoNotOptimize(encode());
  })->Unit(benchmark::kNanosecond);
  Register(name + " decoded", [=, stream = encode()](benchmark::State& state) {
    while (state.KeepRunningBatch(count)) {
      ArithmeticDecoder<Setup> decoder(stream);
      Context context;
      for (std::size_t i = 0; i < characters.size(); ++i) {
        benchmark::DoNotOptimize(decoder.Decode(context));
      }
    }
  })->Unit(benchmark::kNanosecond);
}

}  // namespace

void RegisterStages(const Source& source) {
  RegisterTransform("9/7", WaveletKind::kDaub97, source);
  RegisterTransform("5/3", WaveletKind::kInteger53, source);
  RegisterTransform("2+2,2", WaveletKind::kInteger22, source);
  auto coefficients = std::make_shared<Coefficients>();
  coefficients->grid = TransformTheImage(source.image, WaveletKind::kDaub97, kLevels);
  coefficients->bands = {source.image.Rows(), source.image.Cols(), kLevels};
  coefficients->exponent = GetThreshold(coefficients->grid.Samples(), WaveletKind::kDaub97);
  RegisterOrder("fixed", OrderKind::kFixed, coefficients);
  RegisterOrder("adaptive", OrderKind::kAdaptive, coefficients);
  RegisterPlanes(coefficients);
  RegisterRebuild(coefficients);
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                              FileKind::kAwg, FileKind::kAwc}) {
    RegisterPasses(kind, source);
  }
  RegisterCoder<FirstSetup, TernaryContext<FirstSetup>>("symbol of three, 11 bits:", 3);
  RegisterCoder<SecondSetup, TernaryContext<SecondSetup>>("symbol of three, 9 bits:", 3);
  RegisterCoder<SecondSetup, BinaryContexts>("symbol of two, 9 bits:", 2);
}

}  // namespace marovia::bench
