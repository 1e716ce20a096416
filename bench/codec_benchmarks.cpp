#include <benchmark/benchmark.h>
#include <memory>

#include "bench/benchmarks.h"
#include "bench/contestants.h"

namespace marovia::bench {
namespace {

template <class Work>
void Register(const std::string& name, Work work) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [work](benchmark::State& state) {
                                 for (auto _ : state) benchmark::DoNotOptimize(work());
                               })
      ->Unit(benchmark::kMillisecond)
      ->MeasureProcessCPUTime();
}

void RegisterBoth(const Contestant& contestant, const Source& source) {
  const std::string name = contestant.name + "/" + source.name;
  const auto file = std::make_shared<const Bytes>(contestant.compress(source.image));
  Register("compress/" + name, [run = contestant.compress, &source] { return run(source.image); });
  Register("decompress/" + name, [run = contestant.decompress, file] { return run(*file); });
}

void RegisterParts(FileKind kind, const Source& source) {
  struct Part {
    const char* name;
    double rate;
  };
  // The smallest rate still starts the passes.
  for (const Part part : {Part{"tenth", 0.1}, Part{"none", 0.001}}) {
    const auto file =
        std::make_shared<const Bytes>(Compress(source.image, {.kind = kind, .rate = 1}).file);
    Register(std::string(part.name) + "/" + std::string(Extension(kind)) + "/" + source.name,
             [=] { return Decompress(*file, kind, {.rate = part.rate}).image; });
  }
}

}  // namespace

void RegisterCodecs(const Source& source) {
  for (const Contestant& contestant : ContestantsFor(source.image)) {
    RegisterBoth(contestant, source);
  }
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwf}) RegisterParts(kind, source);
}

void RegisterLarge(const Source& source) {
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwf, FileKind::kAwg}) {
    CompressOptions options{.kind = kind};
    std::string name(Extension(kind));
    if (kind == FileKind::kAwg) {
      options.wavelet = WaveletKind::kInteger53;
    } else {
      name += "/0.5";
    }
    RegisterBoth(
        {name, options.rate, [=](const Image& image) { return Compress(image, options).file; },
         [=](ByteView file) { return Decompress(file, kind).image; }},
        source);
  }
}

}  // namespace marovia::bench
