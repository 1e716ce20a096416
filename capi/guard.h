// The border to C: nothing thrown behind it gets across.
#pragma once

#include "capi/public.h"

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

}  // namespace marovia::capi
