// The context-coded file read and written one coefficient after another, over plain arrays, to hold
// the library's engine against. Transform, counters and range coder are the library's: the recorded
// files hold those.
#pragma once

#include "context/context_codec.h"

namespace marovia::plain {

Bytes EncodeContext(const Image& image, const ContextOptions& options);
ContextPicture DecodeContext(ByteView file);

}  // namespace marovia::plain
