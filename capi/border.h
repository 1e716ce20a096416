// The border to C: nothing thrown behind it gets across, and structs that begin with the size their
// caller was compiled with may be older or newer than ours.
#pragma once

#include <cstddef>

// The header itself is free of attributes.
#pragma GCC visibility push(default)
#include "marovia/marovia.h"
#pragma GCC visibility pop

namespace marovia::capi {

// Thrown where the caller's listener ends a run.
struct Cancelled {};

// The status of the exception being handled, told in `error` too unless that is null.
marovia_status ReportException(marovia_error* error) noexcept;
marovia_status ReportSuccess(marovia_error* error) noexcept;

// What `work` does, with everything it throws turned into a status.
template <class Work>
marovia_status Guarded(marovia_error* error, const Work& work) noexcept {
  try {
    work();
  } catch (...) {
    return ReportException(error);
  }
  return ReportSuccess(error);
}

// Error kInvalidArgument that names what is missing where the pointer is null.
void Require(const void* pointer, const char* name);

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
