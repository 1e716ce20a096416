#include "capi/border.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
#include <span>
#include <string>
#include <string_view>

#include "marovia/error.h"

namespace marovia::capi {
namespace {

marovia_status StatusOf(Errc code) {
  switch (code) {
    case Errc::kOverflow:
      return MAROVIA_OVERFLOW;
    case Errc::kIndex:
      return MAROVIA_INDEX;
    case Errc::kInvalidArgument:
      return MAROVIA_INVALID_ARGUMENT;
    case Errc::kMalformed:
      return MAROVIA_MALFORMED;
    case Errc::kUnsupported:
      return MAROVIA_UNSUPPORTED;
    case Errc::kLimit:
      return MAROVIA_LIMIT;
    case Errc::kIo:
      return MAROVIA_IO;
  }
  return MAROVIA_INTERNAL;
}

// Allocates nothing: memory may just have run out. A longer message is cut.
marovia_status Tell(marovia_error* error, marovia_status status, std::string_view message) {
  if (error == nullptr) return status;
  *error = {};
  error->status = status;
  message = message.substr(0, sizeof error->message - 1);
  std::copy(message.begin(), message.end(), error->message);
  return status;
}

// More than any struct will grow to: a size that was never set is told by it.
constexpr std::size_t kMostSize = 4096;

void CheckSize(std::size_t size, const Layout& layout) {
  if (size >= layout.least && size <= kMostSize && size % layout.alignment == 0) return;
  Fail(Errc::kInvalidArgument,
       "A struct's size is given as " + std::to_string(size) + ", which is that of none.");
}

}  // namespace

marovia_status ReportSuccess(marovia_error* error) noexcept {
  return Tell(error, MAROVIA_OK, "");
}

marovia_status ReportException(marovia_error* error) noexcept {
  try {
    throw;
  } catch (const Error& failure) {
    return Tell(error, StatusOf(failure.Code()), failure.what());
  } catch (const Cancelled&) {
    return Tell(error, MAROVIA_CANCELLED, "The caller ended the run.");
  } catch (const std::bad_alloc&) {
    return Tell(error, MAROVIA_NO_MEMORY, "Out of memory.");
  } catch (const std::exception& failure) {
    return Tell(error, MAROVIA_INTERNAL, failure.what());
  } catch (...) {
    return Tell(error, MAROVIA_INTERNAL, "A failure of an unknown kind.");
  }
}

void Require(const void* pointer, const char* name) {
  if (pointer == nullptr) Fail(Errc::kInvalidArgument, std::string(name) + " is NULL.");
}

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
