// Measures what hostile files cost against what any file may: 2 microseconds a byte, 0.2 a pixel
// and 50 milliseconds; 64 MiB and 24 bytes a pixel beside the file itself.
//
//   bounds_campaign ROWS COLS TIMES     the dearest files known, as a table; exit status 1 where
//                                       one takes more than TIMES the time, or too much memory
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <iostream>
#include <malloc.h>
#include <new>

#include "codec/coders.h"
#include "context/context_header.h"
#include "format/file_header.h"
#include "tests/support/plain_symbols.h"
#include "wavelet/catalogue.h"

namespace {

// The memory that the program holds, counted where it is allocated.
std::int64_t held = 0;
std::int64_t mostHeld = 0;

}  // namespace

// The others of the standard library come down to these.
void* operator new(std::size_t size, std::align_val_t alignment) {
  void* memory = std::aligned_alloc(static_cast<std::size_t>(alignment), size);
  if (memory == nullptr) throw std::bad_alloc();
  held += static_cast<std::int64_t>(malloc_usable_size(memory));
  mostHeld = std::max(mostHeld, held);
  return memory;
}
void* operator new(std::size_t size) {
  return operator new (size, std::align_val_t{alignof(std::max_align_t)});
}
void operator delete(void* memory) noexcept {
  held -= static_cast<std::int64_t>(malloc_usable_size(memory));
  std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
  operator delete(memory);
}
void operator delete(void* memory, std::align_val_t) noexcept {
  operator delete(memory);
}

namespace marovia {
namespace {

struct Table {
  double rows = 0;
  double cols = 0;
  double times = 0;
  bool exceeded = false;

  // Time is that of the processor, so that a busy machine counts no more than an idle one. The row
  // tells it even of what is refused.
  void Add(const std::string& name, const Bytes& file, auto action) {
    const std::int64_t before = mostHeld = held;
    const std::clock_t start = std::clock();
    try {
      action(file);
    } catch (const Error&) {
      // Refused: that has its cost too.
    }
    const double seconds = static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
    const auto memory = static_cast<double>(mostHeld - before);
    const double time =
        seconds / (2e-6 * static_cast<double>(file.size()) + 2e-7 * rows * cols + 0.05);
    const double space = memory / (64 * 1048576.0 + 24 * rows * cols);
    std::printf("| %s | %zu | %.1f | %.0f %% | %.1f | %.0f %% |\n", name.c_str(), file.size(),
                1000 * seconds, 100 * time, memory / 1048576, 100 * space);
    exceeded = exceeded || time > times || space > 1;
  }
};

// A stream that finds such shares of what is pending in its passes, one in so many or, below 1, the
// very last alone, and refines all that was found before. Written by the plain codec's coder, so
// that the engine decodes what others coded; what it costs to decode follows from the numbers
// alone.
Bytes StreamOf(plain::Coding coding, std::int64_t pixels, int first, int second, int others) {
  plain::Symbols symbols(coding, {});
  std::int64_t found = 0;
  for (int pass = 0; pass < 32; ++pass) {
    const int oneIn = pass == 0 ? first : pass == 1 ? second : others;
    const std::int64_t before = found;
    std::int64_t left = pixels - found;
    const std::int64_t run = oneIn < 1 ? left : oneIn;
    for (; left >= run && left > 0; left -= run) {
      symbols.Number(static_cast<std::int32_t>(run));
      symbols.Sign(false);
      ++found;
    }
    symbols.Number(static_cast<std::int32_t>(left + 1));
    for (std::int64_t i = 0; i < before; ++i) symbols.Refinement(false);
  }
  return symbols.Finish();
}

Bytes Noise(std::size_t size) {
  std::mt19937 random(7);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
  Bytes noise(size);
  for (auto& byte : noise) byte = static_cast<std::uint8_t>(random());
  return noise;
}

void AddFiles(Table& table, FileKind kind, int rows, int cols) {
  constexpr int kNone = std::numeric_limits<int>::max();
  const std::int64_t pixels = std::int64_t{rows} * cols;
  const SymbolKind symbols = CoderOf(kind).symbols;
  const bool raw = symbols == SymbolKind::kBits;
  const plain::Coding coding = raw                           ? plain::Coding::kRaw
                               : symbols == SymbolKind::kWdr ? plain::Coding::kWdr
                                                             : plain::Coding::kAswdr;
  FileHeader fields{.levels = LevelLimit(rows, cols, WaveletKind::kDaub97),
                    .sides = {rows, cols},
                    .mean = 100,
                    .exponent = 14};
  if (CoderOf(kind).HasBudget()) fields.budget = std::numeric_limits<std::int32_t>::max();
  const Bytes header = WriteHeader(fields);
  const auto add = [&](const char* name, const Bytes& stream) {
    Bytes file = header;
    file.insert(file.end(), stream.begin(), stream.end());
    table.Add(std::string(Extension(kind)) + ": " + name, file,
              [&](ByteView view) { Decompress(view, kind); });
  };
  add("header alone", {});
  add("nothing found in 32 passes", StreamOf(coding, pixels, kNone, kNone, kNone));
  add("one found at the end of each pass", StreamOf(coding, pixels, 0, 0, 0));
  add("some found at once, then one at the end of each pass", StreamOf(coding, pixels, 14, 0, 0));
  add("half found at once, then one at the end of each pass", StreamOf(coding, pixels, 2, 0, 0));
  add("noise", Noise(static_cast<std::size_t>(pixels) / 2));
  // As raw bits, these would leave the 32 bits that count them.
  if (raw && pixels * 34 > kNone) return;
  add("all found at once and refined", StreamOf(coding, pixels, 1, kNone, kNone));
  add("all found in two passes and refined", StreamOf(coding, pixels, 2, 1, kNone));
}

void AddContextFiles(Table& table, int rows, int cols) {
  Bytes header;
  AppendContextHeader(header, {.levels = std::min(6, ContextLevelLimit(rows, cols)),
                               .planes = kMostContextPlanes,
                               .rows = rows,
                               .cols = cols});
  const std::size_t size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols) / 2;
  for (const auto& [name, stream] :
       {std::pair("header alone", Bytes()), std::pair("zeros", Bytes(size)),
        std::pair("ones", Bytes(size, 0xFF)), std::pair("noise", Noise(size))}) {
    Bytes file = header;
    file.insert(file.end(), stream.begin(), stream.end());
    table.Add(std::string("awh: ") + name, file,
              [](ByteView view) { Decompress(view, FileKind::kAwh); });
  }
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  if (argc < 4) {
    std::cerr << "usage: bounds_campaign ROWS COLS TIMES [KIND...]\n";
    return 2;
  }
  const int rows = std::stoi(argv[1]);
  const int cols = std::stoi(argv[2]);
  marovia::Table table{static_cast<double>(rows), static_cast<double>(cols), std::stod(argv[3])};
  std::cout << "| File | Bytes | ms | of the allowed | MiB | of the allowed "
               "|\n|---|---|---|---|---|---|\n"
            << std::flush;
  const std::vector<std::string_view> chosen(argv + 4, argv + argc);
  for (const marovia::FileKind kind : marovia::AllKinds()) {
    if (!chosen.empty() && std::ranges::count(chosen, marovia::Extension(kind)) == 0) continue;
    kind == marovia::FileKind::kAwh ? marovia::AddContextFiles(table, rows, cols)
                                    : marovia::AddFiles(table, kind, rows, cols);
  }
  return table.exceeded ? 1 : 0;
}
