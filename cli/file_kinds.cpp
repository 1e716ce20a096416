#include "cli/file_kinds.h"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include "marovia/error.h"

#include "cli/coder_names.h"
#include "cli/values.h"
#include "files/input_file.h"
#include "files/output_file.h"
#include "image/formats.h"

namespace marovia::cli {
namespace {

char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// In lower case, without the point.
std::string ExtensionOf(const std::string& name) {
  std::string extension = std::filesystem::path(name).extension().string();
  std::ranges::transform(extension, extension.begin(), LowerCase);
  return extension.empty() ? extension : extension.substr(1);
}

const PictureWriter* WriterOfExtension(const std::string& extension) {
  for (const PictureWriter& writer : PictureWriters())
    if (!extension.empty() && (extension == writer.extension || extension == writer.otherExtension))
      return &writer;
  return nullptr;
}

bool IsRead(const std::string& extension) {
  const auto images = ReadExtensions();
  return std::ranges::find(images, extension) != images.end() ||
         KindOfExtension(extension).has_value();
}

std::string KindNames() {
  return Listed(ExtensionsOf(AllKinds()), "or");
}

bool IsStream(const std::string& name) {
  return name == kStandardStream || IsDeviceOrPipe(name);
}

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

// A header with a budget and one without differ in length. The likeliest kind with the other one.
FileKind KindOfOtherHeader(FileKind kind) {
  const bool lossless = !IsLossless(kind);
  if (const auto same = KindWith(MethodOf(kind), CodingOf(kind), lossless)) return *same;
  return *std::ranges::find(AllKinds(), lossless, IsLossless);
}

// As much as tells what it holds; empty where it cannot be read.
Bytes StartOf(const std::string& name) {
  constexpr std::int64_t kStartBytes = 64;
  try {
    return InputFile(name, kDefaultMaxPixels).Read(kStartBytes);
  } catch (const Error&) {
    return {};
  }
}

// Any four bytes may begin a file of ours, as its budget, but hardly those of another kind with a
// size that makes sense of them.
bool IsForeign(const Signature& signature, const std::optional<FileInfo>& info) {
  if (!signature.IsKnown()) return false;
  return !info || (signature.length >= kTellingBytes && !HasPlausibleBudget(*info));
}

}  // namespace

std::string ReadFormatsText(const std::string& what) {
  return what + ": " + ReadFormatNames("or");
}

std::string WrittenExtensions() {
  std::vector<std::string> extensions;
  for (const PictureWriter& writer : PictureWriters())
    extensions.push_back("." + std::string(writer.extension));
  return Listed(extensions, "or");
}

std::vector<std::string> FormatNames(bool imagesToo) {
  std::vector<std::string> names = ExtensionsOf(AllKinds());
  if (!imagesToo) return names;
  for (const PictureWriter& writer : PictureWriters()) names.emplace_back(writer.extension);
  return names;
}

Formats ParseFormats(const std::vector<std::string>& texts, bool imagesToo) {
  Formats formats;
  for (const std::string& text : texts) {
    const auto kind = KindOfExtension(text);
    const PictureWriter* const image = imagesToo ? WriterOfExtension(text) : nullptr;
    if (!kind && image == nullptr)
      RefuseValue("--format", text, Listed(FormatNames(imagesToo), "or"));
    if (kind) formats.kind = kind;
    if (image != nullptr) formats.image = image;
  }
  return formats;
}

std::optional<FileKind> KindNamed(const std::string& name) {
  return KindOfExtension(ExtensionOf(name));
}

FileKind InputKind(const std::string& name, const std::optional<FileKind>& told) {
  if (told) return *told;
  const std::string extension = name == kStandardStream ? "" : ExtensionOf(name);
  if (const auto kind = KindOfExtension(extension)) return *kind;
  const std::string remedy = "; tell it by --format " + KindNames();
  if (extension.empty())
    Fail(Errc::kInvalidArgument, "the name does not tell the kind of file" + remedy);
  Fail(Errc::kUnsupported, "no compressed file has the extension ." + extension + remedy);
}

FileKind KindOfInput(ByteView start, const std::string& name, const std::optional<FileKind>& told) {
  const auto found = told ? told : KindOfContent(start);
  return found ? *found : InputKind(name, told);
}

std::string OutputName(const std::string& name, FileKind kind) {
  if (name.empty()) Fail(Errc::kInvalidArgument, "the name of what is written is empty");
  if (IsStream(name)) return name;
  const std::string wanted(Extension(kind));
  const std::string extension = ExtensionOf(name);
  std::error_code unknown;  // then opening it tells what is wrong
  if (extension.empty() && !std::filesystem::is_directory(name, unknown))
    return name + "." + wanted;
  if (!extension.empty() && extension != wanted)
    Fail(Errc::kInvalidArgument, "the extension is ." + extension + ", but what is written is ." +
                                     wanted + ": name it so, or leave the extension out");
  return name;
}

std::string NameIn(const std::string& folder, const std::string& input,
                   std::string_view extension) {
  std::filesystem::path name = std::filesystem::path(input).filename();
  if (input == kStandardStream || name.empty() || name == "." || name == "..")
    Fail(Errc::kInvalidArgument, "has no name that an output in a folder could be named after");
  if (IsRead(ExtensionOf(name))) name = name.stem();
  const std::string end = extension.empty() ? "" : "." + std::string(extension);
  return (std::filesystem::path(folder) / name).string() + end;
}

const PictureWriter& WriterFor(const std::string& name, const PictureWriter* told) {
  const PictureWriter* const named = WriterNamed(name);
  if (named != nullptr && told != nullptr && named != told)
    Fail(Errc::kInvalidArgument, "the extension and --format name different image formats");
  if (named != nullptr) return *named;
  if (told != nullptr) return *told;
  if (IsStream(name)) return PictureWriters().front();
  Fail(Errc::kInvalidArgument, "the name of the image must end in " + WrittenExtensions());
}

const PictureWriter* WriterNamed(const std::string& name) {
  return WriterOfExtension(ExtensionOf(name));
}

bool IsImageFile(const std::string& name) {
  const auto images = ReadExtensions();
  return std::ranges::find(images, ExtensionOf(name)) != images.end() || IsPicture(StartOf(name));
}

bool IsCompressedFile(const std::string& name) {
  return KindNamed(name).has_value() || KindOfContent(StartOf(name)).has_value();
}

void CheckIsOfKind(ByteView file, FileKind kind, std::int64_t maxPixels) {
  const std::optional<FileInfo> info = InfoAs(file, kind, maxPixels);
  const Signature signature = SignatureOf(file);
  if (IsForeign(signature, info))
    Fail(Errc::kUnsupported, "holds " + std::string(signature.name) + ", not " + FileOf(kind));
  if (kind == FileKind::kAwh || (info && !IsOdd(*info))) return;
  const FileKind other = KindOfOtherHeader(kind);
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

Picture LoadImage(const std::string& name, const PictureOptions& options, Console& console) {
  console.SetInput(name);
  const Bytes file = ReadInput(name, options.maxPixels);
  CheckIsNoCompressedFile(file, name, options.maxPixels);
  Picture picture = ReadPicture(file, options);
  for (const std::string& notice : picture.notices) console.Notice(notice);
  return picture;
}

Picture ReadImageFile(const std::string& name, const PictureOptions& options, Console& console) {
  Picture picture = LoadImage(name, options, console);
  if (!picture.alteration.empty()) console.Notice(picture.alteration);
  return picture;
}

ImagePair ReadImagePair(const std::string& source, const std::string& other,
                        const PictureOptions& options, Console& console) {
  if (source == kStandardStream && other == kStandardStream)
    Fail(Errc::kInvalidArgument, "only one of the two images can come from standard input");
  ImagePair pair{ReadImageFile(source, options, console),
                 ReadImageFile(other, {.maxPixels = options.maxPixels}, console)};
  const Image& first = pair.source.image;
  const Image& second = pair.other.image;
  if (second.SameShape(first)) return pair;
  Fail(Errc::kIndex, SizeText(second.Rows(), second.Cols()) + ", but " + source + " has " +
                         SizeText(first.Rows(), first.Cols()));
}

}  // namespace marovia::cli
