#include "marovia/error.h"

namespace marovia {

Error::Error(Errc code, const std::string& what) : std::runtime_error(what), code_(code) {}

void Fail(Errc code, const std::string& what) {
  throw Error(code, what);
}

}  // namespace marovia
