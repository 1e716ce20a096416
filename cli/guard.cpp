#include "cli/guard.h"

#include <exception>
#include <new>

#include "marovia/error.h"

namespace marovia::cli {

ExitStatus StatusOfException(Console& console) {
  try {
    throw;
  } catch (const Error& error) {
    console.Complain(error.what());
    return StatusOf(error.Code());
  } catch (const std::bad_alloc&) {
    console.Complain("out of memory");
  } catch (const std::exception& error) {
    console.Complain(error.what());
  }
  return ExitStatus::kFailed;
}

}  // namespace marovia::cli
