#include "cli/content.h"

#include <algorithm>
#include <optional>

#include "marovia/error.h"

#include "cli/file_names.h"
#include "cli/values.h"
#include "image/signatures.h"

namespace marovia::cli {
namespace {

constexpr int kMostPlausibleRate = 16;  // bits a pixel, twice those of the image
constexpr std::size_t kTellingBytes = 4;
constexpr int kMostSideWithoutLevels = 5;

std::optional<FileInfo> InfoAs(ByteView file, FileKind kind, std::int64_t maxPixels) {
  try {
    return Inspect(file, kind, maxPixels);
  } catch (const Error&) {
    return std::nullopt;
  }
}

// A header that some compressor may write, but for a file of that size hardly does.
bool IsOdd(const FileInfo& info) {
  return info.levels == 0 && std::min(info.rows, info.cols) > kMostSideWithoutLevels;
}

bool HasPlausibleBudget(const FileInfo& info) {
  return info.budget && *info.budget / kMostPlausibleRate <= std::int64_t{info.rows} * info.cols;
}

std::string FileOf(FileKind kind) {
  return "an ." + std::string(Extension(kind)) + " file";
}

// Any four bytes may begin a file of ours, as its budget, but hardly those of another kind with a
// size that makes sense of them.
bool IsForeign(const Signature& signature, const std::optional<FileInfo>& info) {
  if (!signature.IsKnown()) return false;
  return !info || (signature.length >= kTellingBytes && !HasPlausibleBudget(*info));
}

}  // namespace

FileKind KindOfInput(ByteView start, const std::string& name, const std::optional<FileKind>& told) {
  const auto found = told ? told : KindOfContent(start);
  return found ? *found : InputKind(name, told);
}

void CheckIsOfKind(ByteView file, FileKind kind, std::int64_t maxPixels) {
  const std::optional<FileInfo> info = InfoAs(file, kind, maxPixels);
  const Signature signature = SignatureOf(file);
  if (IsForeign(signature, info))
    Fail(Errc::kUnsupported, "holds " + std::string(signature.name) + ", not " + FileOf(kind));
  if (kind == FileKind::kAwh || (info && !IsOdd(*info))) return;
  // A header with a budget and one without differ in length.
  const FileKind other = kind == FileKind::kAwg ? FileKind::kAwf : FileKind::kAwg;
  const std::optional<FileInfo> otherInfo = InfoAs(file, other, maxPixels);
  if (!otherInfo || IsOdd(*otherInfo)) return;
  Fail(Errc::kMalformed, "cannot be " + FileOf(kind) + "; its header reads as that of " +
                             FileOf(other) + " of " + SizeText(otherInfo->rows, otherInfo->cols));
}

void CheckIsNoCompressedFile(ByteView file, const std::string& name, std::int64_t maxPixels) {
  const auto content = KindOfContent(file);
  const auto kind = content ? content : KindNamed(name);
  if (!kind || SignatureOf(file).IsKnown() || !InfoAs(file, *kind, maxPixels)) return;
  Fail(Errc::kUnsupported,
       "holds a compressed file, not an image (marovia decompress makes one of it)");
}

}  // namespace marovia::cli
