// What a file is, by its name and by its content.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marovia/codec.h"
#include "marovia/image.h"

#include "cli/console.h"
#include "pictures/picture.h"

namespace marovia::cli {

// What --format says, of each side where a name does not tell.
struct Formats {
  std::optional<FileKind> kind;
  const PictureWriter* image = nullptr;
};

// The extensions of all kinds and, of images too, of the images that are written.
std::vector<std::string> FormatNames(bool imagesToo);

// `what` and the formats of images that are read, for the help of a command.
std::string ReadFormatsText(const std::string& what);

// ".pgm, .bmp or .png": the extensions of the images that are written.
std::string WrittenExtensions();

// "awb" ... "awh" name a kind of compressed file, "pgm" and its like an image. Error
// kInvalidArgument for any other, and for an image where only kinds are of use.
Formats ParseFormats(const std::vector<std::string>& texts, bool imagesToo);

// The kind that the extension names, in either case; none for other extensions and for streams.
std::optional<FileKind> KindNamed(const std::string& name);

// The kind of the compressed file `name`: as told, else by its extension in either case. Error
// kInvalidArgument where the name has none, kUnsupported where it is not one of ours.
FileKind InputKind(const std::string& name, const std::optional<FileKind>& told);

// The kind of the file that begins so: as told, else as it says itself, else as InputKind has it.
FileKind KindOfInput(ByteView start, const std::string& name, const std::optional<FileKind>& told);

// The name under which a file of that kind is written: `name`, with the extension added where it
// has none. Error kInvalidArgument where it has another one, or is empty.
std::string OutputName(const std::string& name, FileKind kind);

// The name of what becomes of `input` in a folder: an extension that is read here gives way to
// another (or to none, where that is empty), any other stays. Error kInvalidArgument where the
// input has no name.
std::string NameIn(const std::string& folder, const std::string& input, std::string_view extension);

// What writes the image `name`: by its extension, else as told; a stream or a device gets a PGM.
// Error kInvalidArgument where neither tells, or where they differ.
const PictureWriter& WriterFor(const std::string& name, const PictureWriter* told);
// By the extension alone, null where it names none.
const PictureWriter* WriterNamed(const std::string& name);

// Whether a command takes the file where it finds it in a folder: by its name or by its content.
bool IsImageFile(const std::string& name);
bool IsCompressedFile(const std::string& name);

// `file` may be all of a compressed file or a start of it that holds its header. Throws Error where
// that cannot be a file of that kind and it is known what it is: kUnsupported for an image or
// another foreign file, kMalformed for a lossless file taken for a lossy one, or the reverse.
void CheckIsOfKind(ByteView file, FileKind kind, std::int64_t maxPixels);

// Error kUnsupported where a file that a command wants an image in is a compressed one, by its name
// and its header.
void CheckIsNoCompressedFile(ByteView file, const std::string& name, std::int64_t maxPixels);

// The image in the file of that name, or on standard input for "-". What else the file holds is
// noticed.
Picture LoadImage(const std::string& name, const PictureOptions& options, Console& console);

// The same; what was changed in reading it is noticed, too.
Picture ReadImageFile(const std::string& name, const PictureOptions& options, Console& console);

// Both, of one shape. Error kIndex where they differ in it, kInvalidArgument where both are to come
// from standard input. The page is that of the first.
struct ImagePair {
  Picture source;
  Picture other;
};
ImagePair ReadImagePair(const std::string& source, const std::string& other,
                        const PictureOptions& options, Console& console);

}  // namespace marovia::cli
