// What a file says of itself before it is decoded.
#pragma once

#include "marovia/codec.h"

#include "coding/file_header.h"

namespace marovia {

// The header at the start of a file, with sides that allow the levels and no more pixels than
// maxPixels. Errors as Inspect.
FileHeader CheckedHeader(ByteView file, FileKind kind, std::int64_t maxPixels);

FileInfo InfoOf(const FileHeader& header, FileKind kind, std::int64_t streamBytes);

}  // namespace marovia
