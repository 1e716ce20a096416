#include "tests/campaigns/hostile_files.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <random>
#include <utility>

#include "coding/file_header.h"
#include "context/context_header.h"
#include "tests/support/literal_symbols.h"
#include "wavelet/catalogue.h"

namespace marovia::test {
namespace {

constexpr int kManyPixels = 1 << 22;

// The distances between the finds of a pass.
class Distances {
 public:
  Distances(float share, bool scattered, std::mt19937& random)
      : share_(share), scattered_(scattered), random_(random) {}

  std::int64_t Next() {
    if (share_ >= 1) return 1;
    if (!scattered_) return static_cast<std::int64_t>(1 / share_);
    const double uniform = (static_cast<double>(random_() >> 1) + 1) / 2147483649.0;
    return 1 + static_cast<std::int64_t>(std::log(uniform) / std::log1p(-double{share_}));
  }

 private:
  float share_;
  bool scattered_;
  std::mt19937& random_;
};

// Written by the plain codec's writers, so that the engine decodes what others coded.
class Stream {
 public:
  explicit Stream(const Script& script)
      : script_(script),
        pending_(std::int64_t{script.rows} * script.cols),
        writer_(literal::MakeSymbolWriter(script.kind, bytes_, 0)) {}

  Bytes Write() {
    for (const float share : script_.finds) {
      const std::int64_t before = found_;
      Find(share);
      for (std::int64_t i = 0; i < before; ++i) writer_->Refinement(Bit());
    }
    writer_->Finish();
    return std::move(bytes_);
  }

 private:
  bool Bit() { return script_.randomBits && (random_() & 1) != 0; }

  void Find(float share) {
    std::int64_t left = pending_;
    if (share < 0 && left > 0) {
      Found(left);
      left = 0;
    } else if (share > 0) {
      Distances distances(share, script_.scattered, random_);
      for (std::int64_t run = distances.Next(); run <= left; run = distances.Next()) {
        Found(run);
        left -= run;
      }
    }
    writer_->Number(static_cast<std::int32_t>(left + 1));
  }

  void Found(std::int64_t run) {
    writer_->Number(static_cast<std::int32_t>(run));
    writer_->Sign(Bit());
    ++found_;
    --pending_;
  }

  const Script& script_;
  std::int64_t pending_;
  std::int64_t found_ = 0;
  std::mt19937 random_{1};
  Bytes bytes_;
  std::unique_ptr<literal::SymbolWriter> writer_;
};

std::array<float, kPasses> Finds(float first, float second, float others) {
  std::array<float, kPasses> finds{};
  finds.fill(others);
  finds[0] = first;
  finds[1] = second;
  return finds;
}

Bytes Noise(std::size_t size) {
  std::mt19937 random(7);
  Bytes bytes(size);
  for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
  return bytes;
}

Bytes BytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

// A BMP of one byte a pixel, run-length coded, with its palette.
Bytes RunLengthBmp(int rows, int cols, const Bytes& code) {
  Bytes file{'B', 'M'};
  const auto add = [&file](std::uint32_t value, int count) {
    for (int i = 0; i < count; ++i) file.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  };
  constexpr std::uint32_t kPixelsAt = 14 + 40 + 4 * 256;
  add(0, 8);
  add(kPixelsAt, 4);
  add(40, 4);
  add(static_cast<std::uint32_t>(cols), 4);
  add(static_cast<std::uint32_t>(rows), 4);
  add(1, 2);
  add(8, 2);
  add(1, 4);
  add(0, 20);
  for (std::uint32_t grey = 0; grey < 256; ++grey) add(grey * 0x010203, 4);
  file.insert(file.end(), code.begin(), code.end());
  return file;
}

std::vector<HostileFile> HostileContextFiles(int rows, int cols) {
  Bytes header;
  AppendContextHeader(header, {.levels = std::min(6, ContextLevelLimit(rows, cols)),
                               .planes = kMostContextPlanes,
                               .rows = rows,
                               .cols = cols});
  const auto size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols) / 2;
  std::vector<HostileFile> files;
  for (const auto& [name, stream] :
       {std::pair("header alone", Bytes()), std::pair("zeros", Bytes(size, 0)),
        std::pair("ones", Bytes(size, 0xFF)), std::pair("noise", Noise(size))}) {
    files.push_back({name, FileKind::kAwh, header, rows, cols});
    files.back().file.insert(files.back().file.end(), stream.begin(), stream.end());
  }
  return files;
}

}  // namespace

Bytes FileOf(const Script& script, const Bytes& stream) {
  const int limit = LevelLimit(script.rows, script.cols, script.wavelet);
  FileHeader header{.levels = std::clamp(script.levels, 0, std::max(limit, 0)),
                    .wavelet = script.wavelet,
                    .sides = {script.rows, script.cols},
                    .mean = 100,
                    .exponent = script.exponent};
  if (script.kind != FileKind::kAwg) header.budget = std::numeric_limits<std::int32_t>::max();
  Bytes file = WriteHeader(header);
  file.insert(file.end(), stream.begin(), stream.end());
  return file;
}

Bytes FileOf(const Script& script) {
  return FileOf(script, Stream(script).Write());
}

std::vector<HostileFile> HostileFiles(int rows, int cols, FileKind kind) {
  if (kind == FileKind::kAwh) return HostileContextFiles(rows, cols);
  Script script{.kind = kind, .rows = rows, .cols = cols};
  std::vector<HostileFile> files;
  const auto add = [&](const std::string& name, Bytes file) {
    files.push_back({name, kind, std::move(file), rows, cols});
  };
  // As raw bits, a run that refines everything would leave the 32 bits that count them.
  const bool raw = kind == FileKind::kAwb || kind == FileKind::kAwd || kind == FileKind::kAwc;
  const bool isLong = raw && std::int64_t{rows} * cols * 34 > std::numeric_limits<int>::max();
  const auto addFinds = [&](const std::string& name, float first, float second, float others) {
    if (isLong && (first > 0.1F || others > 0.01F)) return;
    script.finds = Finds(first, second, others);
    add(name, FileOf(script));
  };
  add("header alone", FileOf(script, {}));
  addFinds("nothing found in 32 passes", 0, 0, 0);
  addFinds("one found at the end of each pass", -1, -1, -1);
  addFinds("all found at once and refined", 1, 0, 0);
  script.scattered = true;
  addFinds("all found in two passes and refined", 0.5, 1, 0);
  addFinds("some found at once, then one at the end of each pass", 0.07F, -1, -1);
  // The rest is cheaper, and takes long to write.
  if (rows * cols <= kManyPixels) {
    addFinds("a hundredth found in each pass", 0.01F, 0.01F, 0.01F);
    script.randomBits = true;
    addFinds("a tenth found in each pass, noise", 0.1F, 0.1F, 0.1F);
  }
  script.exponent = 31;
  const auto size = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols) / 2;
  add("zeros", FileOf(script, Bytes(size, 0)));
  add("ones", FileOf(script, Bytes(size, 0xFF)));
  add("noise", FileOf(script, Noise(size)));
  return files;
}

std::vector<HostileFile> HostileImages(int rows, int cols) {
  const std::string sides = std::to_string(cols) + " " + std::to_string(rows);
  const auto pixels = static_cast<std::size_t>(rows) * static_cast<std::size_t>(cols);
  Bytes plain = BytesOf("P3 " + sides + " 1\n");
  for (std::size_t i = 0; i < 3 * pixels; ++i) plain.insert(plain.end(), {'1', ' '});
  Bytes wide = BytesOf("P6 " + sides + " 65535\n");
  wide.resize(wide.size() + 6 * pixels, 0x5A);
  Bytes jumps;
  for (int r = 0; r < rows; ++r) jumps.insert(jumps.end(), {0, 2, 0, 1});
  Bytes comment = BytesOf("P5 #");
  comment.resize(pixels, '#');
  const FileKind none{};
  return {{"PPM of digits", none, plain, rows, cols},
          {"PPM of 16 bits", none, wide, rows, cols},
          {"BMP of empty rows", none, RunLengthBmp(rows, cols, jumps), rows, cols},
          {"BMP without a row", none, RunLengthBmp(rows, cols, {0, 1}), rows, cols},
          {"PGM that is a comment", none, comment, rows, cols}};
}

}  // namespace marovia::test
