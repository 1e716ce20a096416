// Structs that begin with the size their caller was compiled with, which may be older or newer.
#pragma once

#include <cstddef>

namespace marovia::capi {

// Copies what both sides know from a caller's struct over ours, which has the defaults. Error
// kInvalidArgument where the size is no such struct's, or a field is set that we do not know.
void TakeKnown(const void* theirs, void* ours, std::size_t ourSize);

// Copies as much of ours as fits theirs, whose own size stays; what we do not know becomes 0.
void GiveKnown(const void* ours, std::size_t ourSize, void* theirs, std::size_t theirSize);

template <class Struct>
Struct Known(const Struct& theirs, Struct defaults) {
  TakeKnown(&theirs, &defaults, sizeof defaults);
  return defaults;
}

template <class Struct>
void Give(const Struct& ours, Struct& theirs) {
  GiveKnown(&ours, sizeof ours, &theirs, theirs.size);
}

}  // namespace marovia::capi
