#include "cli/file_names.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>

#include "marovia/error.h"

#include "files/input_file.h"
#include "files/output_file.h"

namespace marovia::cli {
namespace {

constexpr const char* kKindNames = "awb, awa, awc, awd, awf, awg or awh";

char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// In lower case, without the point.
std::string ExtensionOf(const std::string& name) {
  std::string extension = std::filesystem::path(name).extension().string();
  std::ranges::transform(extension, extension.begin(), LowerCase);
  return extension.empty() ? extension : extension.substr(1);
}

std::optional<ImageFormat> FormatOfExtension(const std::string& extension) {
  for (const ImageFormat format : {ImageFormat::kPgm, ImageFormat::kBmp})
    if (extension == NameOf(format)) return format;
  return std::nullopt;
}

bool IsRead(const std::string& extension) {
  constexpr std::array<std::string_view, 5> kImages = {"pgm", "ppm", "pnm", "bmp", "dib"};
  return std::ranges::find(kImages, extension) != kImages.end() ||
         KindOfExtension(extension).has_value();
}

bool IsStream(const std::string& name) {
  return name == kStandardStream || IsDeviceOrPipe(name);
}

}  // namespace

std::string_view NameOf(ImageFormat format) {
  return format == ImageFormat::kPgm ? "pgm" : "bmp";
}

Formats ParseFormats(const std::vector<std::string>& texts, bool imagesToo) {
  Formats formats;
  for (const std::string& text : texts) {
    const auto kind = KindOfExtension(text);
    const auto image = imagesToo ? FormatOfExtension(text) : std::nullopt;
    if (!kind && !image)
      Fail(Errc::kInvalidArgument,
           "--format: '" + text + "' is not " + (imagesToo ? "pgm, bmp, " : "") + kKindNames);
    if (kind) formats.kind = kind;
    if (image) formats.image = image;
  }
  return formats;
}

std::optional<FileKind> KindNamed(const std::string& name) {
  return IsStream(name) ? std::nullopt : KindOfExtension(ExtensionOf(name));
}

FileKind InputKind(const std::string& name, const std::optional<FileKind>& told) {
  if (told) return *told;
  const std::string extension = name == kStandardStream ? "" : ExtensionOf(name);
  if (const auto kind = KindOfExtension(extension)) return *kind;
  const std::string remedy = std::string("; tell it by --format ") + kKindNames;
  if (extension.empty())
    Fail(Errc::kInvalidArgument, "the name does not tell the kind of file" + remedy);
  Fail(Errc::kUnsupported, "no compressed file has the extension ." + extension + remedy);
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
  return (std::filesystem::path(folder) / name).string() + "." + std::string(extension);
}

ImageFormat OutputFormat(const std::string& name, const std::optional<ImageFormat>& told) {
  const auto named = IsStream(name) ? std::nullopt : FormatOfExtension(ExtensionOf(name));
  if (named && told && *named != *told)
    Fail(Errc::kInvalidArgument, "the extension and --format name different image formats");
  if (named) return *named;
  if (told) return *told;
  if (IsStream(name)) return ImageFormat::kPgm;
  Fail(Errc::kInvalidArgument, "the name of the image must end in .pgm or .bmp");
}

}  // namespace marovia::cli
