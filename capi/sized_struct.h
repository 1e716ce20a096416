// Structs that begin with the size their caller was compiled with, which may be older or newer.
#pragma once

#include <cstddef>

#include "capi/public.h"

namespace marovia::capi {

// What is known of a struct: its size here, the least that it ever had, and its alignment, of which
// every size is a multiple.
struct Layout {
  std::size_t size;
  std::size_t least;
  std::size_t alignment;
};

// A struct that has not grown: its first size is the one that it has.
template <class Struct>
inline constexpr Layout kLayout = {sizeof(Struct), sizeof(Struct), alignof(Struct)};

template <>
inline constexpr Layout kLayout<marovia_compress_options> = {
    sizeof(marovia_compress_options), offsetof(marovia_compress_options, lossless),
    alignof(marovia_compress_options)};

template <>
inline constexpr Layout kLayout<marovia_decompress_options> = {
    sizeof(marovia_decompress_options), offsetof(marovia_decompress_options, listener),
    alignof(marovia_decompress_options)};

// Copies what both sides know from a caller's struct over ours, which has the defaults. Error
// kInvalidArgument where the size is no such struct's, or a field is set that we do not know.
void TakeKnown(const void* theirs, void* ours, const Layout& layout);

// Copies as much of ours as fits theirs, whose own size stays; what we do not know becomes 0. Error
// kInvalidArgument where the size is no such struct's.
void GiveKnown(const void* ours, void* theirs, std::size_t theirSize, const Layout& layout);

template <class Struct>
Struct Known(const Struct& theirs, Struct defaults) {
  TakeKnown(&theirs, &defaults, kLayout<Struct>);
  return defaults;
}

template <class Struct>
void Give(const Struct& ours, Struct& theirs) {
  GiveKnown(&ours, &theirs, theirs.size, kLayout<Struct>);
}

}  // namespace marovia::capi
