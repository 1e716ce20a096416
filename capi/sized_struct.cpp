#include "capi/sized_struct.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <string>

#include "marovia/error.h"

namespace marovia::capi {
namespace {

// More than any struct will grow to: a size that was never set is told by it.
constexpr std::size_t kMostSize = 4096;

void CheckSize(std::size_t size, const Layout& layout) {
  if (size >= layout.least && size <= kMostSize && size % layout.alignment == 0) return;
  Fail(Errc::kInvalidArgument,
       "A struct's size is given as " + std::to_string(size) + ", which is that of none.");
}

}  // namespace

void TakeKnown(const void* theirs, void* ours, const Layout& layout) {
  std::size_t theirSize = 0;
  std::memcpy(&theirSize, theirs, sizeof theirSize);
  CheckSize(theirSize, layout);
  const std::size_t known = std::min(theirSize, layout.size);
  const std::span bytes(static_cast<const std::byte*>(theirs), theirSize);
  if (std::ranges::any_of(bytes.subspan(known), [](std::byte b) { return b != std::byte{0}; }))
    Fail(Errc::kInvalidArgument, "A struct of " + std::to_string(theirSize) +
                                     " bytes sets a field that this version does not know.");
  std::memcpy(ours, theirs, known);
}

void GiveKnown(const void* ours, void* theirs, std::size_t theirSize, const Layout& layout) {
  CheckSize(theirSize, layout);
  std::memset(theirs, 0, theirSize);
  std::memcpy(theirs, ours, std::min(layout.size, theirSize));
  std::memcpy(theirs, &theirSize, sizeof theirSize);
}

}  // namespace marovia::capi
