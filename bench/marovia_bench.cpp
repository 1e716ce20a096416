// Times and quality of the codec, next to others.
#include <CLI/CLI.hpp>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <exception>
#include <fstream>
#include <iostream>
#include <limits>
#include <malloc.h>

#include "marovia/error.h"

#include "bench/benchmarks.h"
#include "bench/figures.h"
#include "bench/quality.h"

namespace marovia::bench {
namespace {

constexpr int kMiddleSide = 2048;
constexpr int kLargeSide = 4096;

struct Choices {
  std::vector<std::string> files;
  std::string figures;
  bool quality = false;
};

// Shows what Google Benchmark shows, and keeps the medians.
class MedianReporter : public benchmark::ConsoleReporter {
 public:
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type != Run::RT_Aggregate || run.aggregate_name != "median") continue;
      medians_[run.run_name.function_name] =
          run.GetAdjustedCPUTime() / benchmark::GetTimeUnitMultiplier(run.time_unit);
    }
    ConsoleReporter::ReportRuns(runs);
  }
  [[nodiscard]] const Medians& Times() const { return medians_; }

 private:
  Medians medians_;
};

void PrintQuality(const Choices& choices) {
  for (const std::string& file : choices.files) {
    for (const Row& row : QualityRows(ReadSource(file))) std::cout << TabSeparated(row);
  }
}

// Else the large arrays of every run would be pages new to the process, which the system clears
// first: with images of this size that takes as long as a codec's own work.
void KeepFreedMemory() {
  // NOLINTBEGIN(concurrency-mt-unsafe): this process has one thread.
  mallopt(M_MMAP_MAX, 0);
  mallopt(M_TRIM_THRESHOLD, std::numeric_limits<int>::max());
  // NOLINTEND(concurrency-mt-unsafe)
}

void RunBenchmarks(const Choices& choices) {
  // Before this process holds much itself.
  const std::string memory =
      choices.figures.empty() ? "" : MemoryTable(choices.files.front(), kLargeSide);
  KeepFreedMemory();
  std::vector<Source> sources;
  std::vector<std::string> names;
  for (const std::string& file : choices.files) {
    sources.push_back(ReadSource(file));
    names.push_back(sources.back().name);
  }
  for (const Source& source : sources) RegisterCodecs(source);
  const Source middle = Repeated(sources.front(), kMiddleSide);
  const Source large = Repeated(sources.front(), kLargeSide);
  RegisterLarge(sources.front(), middle);
  RegisterLarge(sources.front(), large);
  RegisterStages(sources.front());
  MedianReporter reporter;
  benchmark::RunSpecifiedBenchmarks(&reporter);
  if (choices.figures.empty()) return;

  std::ofstream out(choices.figures);
  out << "Goals:\n\n"
      << GoalTable(reporter.Times(), names, large.name) << "\nPeak memory in bytes a pixel at "
      << kLargeSide << " x " << kLargeSide << ", beyond the image or file given:\n\n"
      << memory << "\nCodecs:\n\n"
      << CodecTable(reporter.Times()) << "\nStages, " << names.front() << ":\n\n"
      << StageTable(reporter.Times());
  if (!out.flush()) Fail(Errc::kIo, choices.figures + " cannot be written.");
}

}  // namespace
}  // namespace marovia::bench

int main(int argc, char** argv) {
  marovia::bench::Choices choices;
  CLI::App program("Times of the codec and its peers. Options of Google Benchmark work too.",
                   "marovia_bench");
  program.add_option("FILES", choices.files, "Images: PGM or BMP; the first one is also enlarged")
      ->required();
  program.add_option("--figures", choices.figures, "File for the tables in Markdown");
  program.add_flag("--quality", choices.quality, "Print quality at equal bytes instead, with tabs");
  // Takes its own options out of the arguments.
  benchmark::Initialize(&argc, argv);
  CLI11_PARSE(program, argc, argv);
  try {
    if (choices.quality) {
      marovia::bench::PrintQuality(choices);
    } else {
      marovia::bench::RunBenchmarks(choices);
    }
    return 0;
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "marovia_bench: %s\n", error.what()));
    return 1;
  }
}
