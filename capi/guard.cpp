#include "capi/guard.h"

#include <algorithm>
#include <cstring>
#include <exception>
#include <new>
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

}  // namespace marovia::capi
