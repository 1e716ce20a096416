#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "bench/benchmarks.h"
#include "bench/contestants.h"

namespace marovia::bench {
namespace {

// Times what make() returns.
template <class Make>
void Register(const std::string& name, Make make) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [make](benchmark::State& state) {
                                 const auto work = make();
                                 for (auto _ : state) benchmark::DoNotOptimize(work());
                               })
      ->Unit(benchmark::kMillisecond)
      ->MeasureProcessCPUTime();
}

using Compressor = std::function<Bytes(const Image&)>;
using Decompressor = std::function<Image(ByteView)>;

void RegisterCompression(const std::string& name, const Compressor& compress,
                         const Source& source) {
  Register(name, [=, &source] { return [=, &source] { return compress(source.image); }; });
}

// The file is made when it is first asked for: most runs filter most benchmarks out.
void RegisterDecompression(const std::string& name, const Compressor& compress,
                           const Decompressor& decompress, const Source& source) {
  Register(name, [=, &source, file = std::make_shared<Bytes>()] {
    if (file->empty()) *file = compress(source.image);
    return [=] { return decompress(*file); };
  });
}

void RegisterBoth(const Contestant& contestant, const Source& source) {
  const std::string name = contestant.name + "/" + source.name;
  RegisterCompression("compress/" + name, contestant.compress, source);
  RegisterDecompression("decompress/" + name, contestant.compress, contestant.decompress, source);
}

// The least part still starts the passes.
void RegisterParts(FileKind kind, const Source& source) {
  const auto compress = [=](const Image& image) {
    return Compress(image, {.kind = kind, .rate = 1}).file;
  };
  const std::string name = std::string(Extension(kind)) + "/" + source.name;
  for (const auto& [part, rate] : {std::pair("tenth/", 0.1), std::pair("none/", 0.001)}) {
    RegisterDecompression(
        part + name, compress,
        [kind, rate = rate](ByteView file) { return Decompress(file, kind, {.rate = rate}).image; },
        source);
  }
}

}  // namespace

void RegisterCodecs(const Source& source) {
  for (const Contestant& contestant : ContestantsFor(source.image)) {
    RegisterBoth(contestant, source);
  }
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwf}) RegisterParts(kind, source);
}

void RegisterLarge(const Source& tile, const Source& large) {
  constexpr std::array<std::string_view, 8> kNames = {"awb/0.5",      "awf/0.5",          "awg",
                                                      "awc/0.5",      "awh/0.5",          "awh",
                                                      "openjpeg/0.5", "openjpeg/lossless"};
  for (const Contestant& contestant : ContestantsFor(tile.image)) {
    if (std::ranges::find(kNames, contestant.name) != kNames.end()) RegisterBoth(contestant, large);
  }
}

}  // namespace marovia::bench
