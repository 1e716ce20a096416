#pragma once

#include <gtest/gtest.h>

#include "marovia/error.h"

namespace marovia::test {

// The kind of failure that an action ends in.
template <class Action>
Errc CodeOf(Action action) {
  try {
    action();
  } catch (const Error& error) {
    return error.Code();
  }
  ADD_FAILURE() << "nothing was thrown";
  return Errc::kIo;
}

}  // namespace marovia::test
