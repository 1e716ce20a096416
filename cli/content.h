// Whether a file holds what its name, or the user, says that it does, as far as that can be known.
#pragma once

#include <optional>
#include <string>

#include "marovia/codec.h"
#include "marovia/image.h"

namespace marovia::cli {

// The kind of the file that begins so: as told, else as it says itself, else by its name as
// InputKind has it.
FileKind KindOfInput(ByteView start, const std::string& name, const std::optional<FileKind>& told);

// `file` may be all of a compressed file or a start of it that holds its header. Throws Error where
// that cannot be a file of that kind and it is known what it is: kUnsupported for an image or
// another foreign file, kMalformed for a lossless file taken for a lossy one, or the reverse.
void CheckIsOfKind(ByteView file, FileKind kind, std::int64_t maxPixels);

// Error kUnsupported where a file that a command wants an image in is a compressed one, by its name
// and its header.
void CheckIsNoCompressedFile(ByteView file, const std::string& name, std::int64_t maxPixels);

}  // namespace marovia::cli
