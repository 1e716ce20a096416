// The one exception type of the library, and the kinds of failure it tells apart.
#pragma once

#include <stdexcept>
#include <string>

#include "marovia/export.h"

namespace marovia {

enum class Errc {
  kOverflow,         // a number left the range that the format gives it
  kIndex,            // two images differ in shape, or a position lies outside an image
  kInvalidArgument,  // a caller's choice makes no sense (levels, rate, region, method)
  kMalformed,        // the bytes are not a file of the kind they were read as
  kUnsupported,      // a file of a known kind, in a form that is not read
  kLimit,            // more pixels than the caller allows; nothing was allocated
  kIo,               // a file could not be read or written
};

// what() is one sentence that says what is wrong and names the number concerned. It does not name
// the file: whoever opened the file adds that.
class MAROVIA_API Error : public std::runtime_error {
 public:
  Error(Errc code, const std::string& what);

  [[nodiscard]] Errc Code() const noexcept { return code_; }

 private:
  Errc code_;
};

// Throws Error; out of line, so that hot code stays small.
[[noreturn]] MAROVIA_API void Fail(Errc code, const std::string& what);

}  // namespace marovia
