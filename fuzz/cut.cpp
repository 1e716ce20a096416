#include "fuzz/input.h"
#include "fuzz/targets.h"

namespace marovia::fuzz {
namespace {

constexpr std::int64_t kMostPixels = 1024;

std::optional<Image> Picture(ByteView file, FileKind kind, std::optional<double> rate) {
  try {
    return Decompress(file, kind, {rate, kMostPixels, {}}).image;
  } catch (const Error&) {
    return std::nullopt;
  }
}

void CheckBytes(ByteView file, FileKind kind, std::int64_t bytes) {
  const TruncateResult cut = Truncate(file, kind, {{}, bytes, kMostPixels});
  Promise(static_cast<std::int64_t>(cut.file.size()) <= bytes, "The bytes asked for are kept to.");
  const FileInfo before = Inspect(file, kind, kMostPixels);
  const FileInfo after = Inspect(cut.file, cut.kind, kMostPixels);
  Promise(!before.budget || *after.budget <= *before.budget, "No budget is raised.");
}

void CheckRate(ByteView file, FileKind kind, double rate) {
  const TruncateResult cut = Truncate(file, kind, {rate, {}, kMostPixels});
  if (kind == FileKind::kAwg) return;
  Promise(Picture(cut.file, cut.kind, {}) == Picture(file, kind, rate),
          "A cut file decodes as the long one does at its rate.");
}

}  // namespace

void Cut(ByteView input) {
  Input in(input);
  const FileKind kind = in.Kind();
  const int part = in.Byte();
  const ByteView file = in.Rest();
  try {
    if (part % 2 == 0) {
      CheckRate(file, kind, part / 32.0);
    } else {
      const auto size = static_cast<std::int64_t>(file.size());
      CheckBytes(file, kind, part < 16 ? size - part : size * part / 256);
    }
  } catch (const Error&) {
    return;
  }
}

}  // namespace marovia::fuzz
