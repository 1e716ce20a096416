// Images there and back through the codec: what each coding costs in bytes, quality and time.
#include <CLI/CLI.hpp>
#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <exception>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "marovia/codec.h"
#include "marovia/error.h"
#include "marovia/measures.h"

#include "bench/source_image.h"
#include "bench/table_text.h"

namespace marovia::bench {
namespace {

constexpr std::size_t kNameColumns = 4;  // image, size, coder, wavelet

struct NamedWavelet {
  std::string_view name;
  WaveletKind kind;
};
constexpr std::array kWavelets = {NamedWavelet{"9/7", WaveletKind::kDaub97},
                                  NamedWavelet{"5/3", WaveletKind::kInteger53},
                                  NamedWavelet{"2+2,2", WaveletKind::kInteger22}};

struct Choices {
  std::vector<std::string> files;
  std::vector<double> rates = {0.25, 0.5, 1};
  std::vector<std::string> kinds = {"awh", "awg"};
  std::vector<std::string> wavelets = {"9/7", "5/3"};
  int repeat = 1;
  bool tabs = false;
  bool lossless = false;
};

double Milliseconds(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - start;
  return passed.count();
}

// The best of several runs: what disturbs a run only ever slows it.
double BestMilliseconds(int runs, const std::function<void()>& work) {
  double best = Milliseconds(work);
  for (int run = 1; run < runs; ++run) best = std::min(best, Milliseconds(work));
  return best;
}

std::string Fixed(double value, int decimals) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), "%.*f", decimals, value);
  return {text.data(), static_cast<std::size_t>(length)};
}

Row RowOf(const Source& source, const CompressOptions& options, const std::string& wavelet,
          int repeat) {
  CompressResult packed;
  DecompressResult back;
  const double there = BestMilliseconds(repeat, [&] { packed = Compress(source.image, options); });
  const double andBack =
      BestMilliseconds(repeat, [&] { back = Decompress(packed.file, options.kind); });
  const ErrorMeasures errors = Measure(source.image, back.image);
  const double rate =
      8.0 * static_cast<double>(packed.file.size()) / static_cast<double>(source.image.Size());
  return {source.name,
          std::to_string(source.image.Cols()) + "x" + std::to_string(source.image.Rows()),
          std::string(Extension(options.kind)),
          wavelet,
          Fixed(rate, 3),
          std::to_string(packed.file.size()),
          errors.psnr ? Fixed(*errors.psnr, 2) : "exact",
          Fixed(there, 1),
          Fixed(andBack, 1)};
}

void AddRows(const Source& source, FileKind kind, const NamedWavelet& wavelet,
             const Choices& choices, std::vector<Row>& rows) {
  CompressOptions options;
  options.kind = kind;
  options.wavelet = wavelet.kind;
  const std::string name(wavelet.name);
  options.lossless = choices.lossless;
  if (kind == FileKind::kAwg || choices.lossless) {
    if (wavelet.kind != WaveletKind::kDaub97)
      rows.push_back(RowOf(source, options, name, choices.repeat));
    return;
  }
  for (const double rate : choices.rates) {
    options.rate = rate;
    rows.push_back(RowOf(source, options, name, choices.repeat));
  }
}

std::vector<Row> TableOf(const Choices& choices) {
  std::vector<Row> rows = {
      {"image", "size", "coder", "wavelet", "bpp", "bytes", "PSNR", "there ms", "back ms"}};
  for (const std::string& file : choices.files) {
    const Source source = ReadSource(file);
    for (const std::string& kind : choices.kinds) {
      for (const std::string& name : choices.wavelets) {
        const auto* wavelet = std::ranges::find(kWavelets, name, &NamedWavelet::name);
        AddRows(source, KindOfExtension(kind).value(), *wavelet, choices, rows);
      }
    }
  }
  return rows;
}

void Describe(CLI::App& program, Choices& choices) {
  program.add_option("FILES", choices.files, "Images: PGM or BMP")->required();
  program.add_option("--rates", choices.rates, "Bits per pixel")->delimiter(',');
  program.add_option("--kinds", choices.kinds, "awb, awa, awc, awd, awf, awg, awh")
      ->delimiter(',')
      ->check(CLI::IsMember({"awb", "awa", "awc", "awd", "awf", "awg", "awh"}));
  program.add_flag("--lossless", choices.lossless, "Without loss: awg and awh");
  // One of the names holds a comma: each wants the option again.
  program.add_option("--wavelets", choices.wavelets, "9/7, 5/3 or 2+2,2")
      ->expected(1)
      ->take_all()
      ->check(CLI::IsMember({"9/7", "5/3", "2+2,2"}));
  program.add_option("--repeat", choices.repeat, "Runs, of which the fastest counts")
      ->check(CLI::PositiveNumber);
  program.add_flag("--tsv", choices.tabs, "Tabs between the columns");
}

void Print(const std::vector<Row>& rows, bool tabs) {
  std::string text;
  if (tabs) {
    for (const Row& row : rows) text += TabSeparated(row);
  } else {
    text = Aligned(rows, kNameColumns);
  }
  if (std::fputs(text.c_str(), stdout) < 0 || std::fflush(stdout) != 0)
    Fail(Errc::kIo, "standard output cannot be written");
}

}  // namespace
}  // namespace marovia::bench

int main(int argc, char** argv) {
  marovia::bench::Choices choices;
  CLI::App program("Images there and back through the codec, as a table.", "marovia_round_trip");
  marovia::bench::Describe(program, choices);
  CLI11_PARSE(program, argc, argv);
  try {
    marovia::bench::Print(marovia::bench::TableOf(choices), choices.tabs);
    return 0;
  } catch (const std::exception& error) {
    static_cast<void>(std::fprintf(stderr, "marovia_round_trip: %s\n", error.what()));
    return 1;
  }
}
