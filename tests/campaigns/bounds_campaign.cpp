// Measures what hostile files cost against what any file may: 2 microseconds a byte, 0.2 a pixel
// and 50 milliseconds; 64 MiB and 24 bytes a pixel beside the file itself.
//
//   bounds_campaign table ROWS COLS TIMES       the dear files, as a table; exit status 1 where one
//                                               takes more than TIMES the time, or too much memory
//   bounds_campaign search SIDE SECONDS SEED    climbs towards the dearest file of its size
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <random>
#include <span>
#include <string>
#include <string_view>

#include "marovia/codec.h"

#include "tests/campaigns/campaign.h"
#include "tests/campaigns/counted_memory.h"
#include "tests/campaigns/hostile_files.h"
#include "tests/support/test_images.h"

namespace marovia {
namespace {

using test::HostileFile;
using test::NumberOf;
using test::ProcessorMilliseconds;
using test::RandomBelow;
using test::Script;

struct Cost {
  double milliseconds = 0;
  double mebibytes = 0;
};

// That of an action, however it ends.
template <class Action>
Cost CostOf(Action action) {
  test::CountAnew();
  const std::int64_t held = test::HeldBytes();
  const double start = ProcessorMilliseconds();
  try {
    action();
  } catch (const Error&) {
    // Refused: that has its cost too.
  }
  constexpr double kMebibyte = 1 << 20;
  return {ProcessorMilliseconds() - start,
          static_cast<double>(test::MostHeldBytes() - held) / kMebibyte};
}

Cost Allowed(std::size_t bytes, double pixels) {
  return {0.002 * static_cast<double>(bytes) + 0.0002 * pixels + 50, 64 + 24 * pixels / (1 << 20)};
}

class Table {
 public:
  explicit Table(double times) : times_(times) {
    std::puts("| File | Bytes | Pixels | ms | of the allowed | MiB | of the allowed |");
    std::puts("|---|---|---|---|---|---|---|");
  }

  template <class Action>
  void Add(const std::string& name, const HostileFile& hostile, Action action) {
    const double pixels = static_cast<double>(hostile.rows) * hostile.cols;
    const Cost cost = CostOf(action);
    const Cost allowed = Allowed(hostile.file.size(), pixels);
    std::printf("| %s | %zu | %.0f | %.1f | %.0f %% | %.1f | %.0f %% |\n", name.c_str(),
                hostile.file.size(), pixels, cost.milliseconds,
                100 * cost.milliseconds / allowed.milliseconds, cost.mebibytes,
                100 * cost.mebibytes / allowed.mebibytes);
    std::fflush(stdout);
    exceeded_ = exceeded_ || cost.milliseconds > times_ * allowed.milliseconds ||
                cost.mebibytes > allowed.mebibytes;
  }

  [[nodiscard]] bool Exceeded() const { return exceeded_; }

 private:
  double times_;
  bool exceeded_ = false;
};

int PrintTable(int rows, int cols, double times) {
  Table table(times);
  for (int kind = 0; kind < 7; ++kind) {
    for (const HostileFile& hostile : test::HostileFiles(rows, cols, static_cast<FileKind>(kind))) {
      table.Add(std::string(Extension(hostile.kind)) + ": " + hostile.name, hostile,
                [&] { Decompress(hostile.file, hostile.kind); });
    }
  }
  for (const HostileFile& hostile : test::HostileImages(rows, cols)) {
    table.Add(hostile.name, hostile, [&] { ReadImage(hostile.file); });
  }
  return table.Exceeded() ? 1 : 0;
}

float RandomShare(std::mt19937& random) {
  constexpr float kShares[] = {-1, 0, 0, 0.0001F, 0.001F, 0.01F, 0.05F, 0.1F, 0.25F, 0.5F, 0.9F, 1};
  return kShares[RandomBelow(random, static_cast<int>(std::size(kShares)))];
}

void Change(Script& script, std::mt19937& random) {
  const int pixels = script.rows * script.cols;
  switch (RandomBelow(random, 12)) {
    case 0:
      script.kind = static_cast<FileKind>(RandomBelow(random, 6));
      break;
    case 1:
      script.wavelet = static_cast<WaveletKind>(1 + RandomBelow(random, 3));
      break;
    case 2:
      script.levels = RandomBelow(random, 10);
      break;
    case 3:
      script.exponent = RandomBelow(random, 32);
      break;
    case 4:
      script.scattered = !script.scattered;
      break;
    case 5:
      script.randomBits = !script.randomBits;
      break;
    case 6:
      // No side may exceed 32767.
      script.rows = std::clamp(8 << RandomBelow(random, 12), pixels / 16384, pixels / 8);
      script.cols = pixels / script.rows;
      break;
    default:
      script.finds[static_cast<std::size_t>(RandomBelow(random, test::kPasses))] =
          RandomShare(random);
  }
}

// Without the 50 ms, which would hide the rest at the sizes that a search can afford.
double ShareOfAllowed(const Script& script) {
  const Bytes file = FileOf(script);
  const double allowed =
      Allowed(file.size(), static_cast<double>(script.rows) * script.cols).milliseconds - 50;
  double least = 1e9;
  for (int i = 0; i < 3; ++i) {
    least = std::min(least, CostOf([&] { Decompress(file, script.kind); }).milliseconds);
  }
  return least / allowed;
}

void Print(const Script& script, double share) {
  std::printf("%.0f %%: %s, wavelet %d, %d x %d, levels %d, exponent %d,%s%s finds", 100 * share,
              std::string(Extension(script.kind)).c_str(), static_cast<int>(script.wavelet),
              script.rows, script.cols, script.levels, script.exponent,
              script.scattered ? " scattered," : "", script.randomBits ? " random bits," : "");
  for (const float finds : script.finds) std::printf(" %g", static_cast<double>(finds));
  std::puts("");
  std::fflush(stdout);
}

int Search(int side, int seconds, int seed) {
  std::mt19937 random(static_cast<std::uint32_t>(seed));
  Script best{.rows = side, .cols = side};
  for (float& share : best.finds) share = RandomShare(random);
  double dearest = ShareOfAllowed(best);
  int tried = 0;
  const double end = ProcessorMilliseconds() + 1000.0 * seconds;
  for (; ProcessorMilliseconds() < end; ++tried) {
    Script next = best;
    for (int i = RandomBelow(random, 4); i >= 0; --i) Change(next, random);
    const double share = ShareOfAllowed(next);
    if (share <= dearest) continue;
    dearest = share;
    best = next;
    Print(best, dearest);
  }
  std::printf("%d files tried\n", tried);
  return dearest > 1 ? 1 : 0;
}

int Run(std::span<char*> arguments) {
  const std::string_view what = arguments.size() == 5 ? arguments[1] : "";
  if (what != "table" && what != "search") {
    std::fputs(
        "usage: bounds_campaign table ROWS COLS TIMES\n"
        "       bounds_campaign search SIDE SECONDS SEED\n",
        stderr);
    return 2;
  }
  const int first = NumberOf(arguments[2]);
  const int second = NumberOf(arguments[3]);
  const int third = NumberOf(arguments[4]);
  return what == "table" ? PrintTable(first, second, third) : Search(first, second, third);
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  try {
    return marovia::Run({argv, static_cast<std::size_t>(argc)});
  } catch (const std::exception& error) {
    std::fprintf(stderr, "bounds_campaign: %s\n", error.what());
    return 1;
  }
}
