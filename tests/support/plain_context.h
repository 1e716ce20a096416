// The context-coded file read and written one decision at a time, over plain arrays, to hold the
// library's engine against. Header, bands and transform are the library's.
#pragma once

#include "context/context_codec.h"

namespace marovia::plain {

Bytes EncodeContext(const Image& image, const ContextOptions& options);
ContextPicture DecodeContext(ByteView file);

}  // namespace marovia::plain
