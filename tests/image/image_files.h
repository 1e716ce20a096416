// The image files under data/images, and how reading them fails.
#pragma once

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>

#include "marovia/error.h"
#include "marovia/image.h"

namespace marovia {

inline Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

inline Bytes FileBytes(const std::string& name) {
  std::ifstream file(MAROVIA_TEST_DATA "/images/" + name, std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The code of the Error that reading throws, with a sentence that contains `part`.
template <class Read>
Errc CodeOf(Read read, std::string_view part) {
  try {
    read();
  } catch (const Error& error) {
    EXPECT_NE(std::string_view(error.what()).find(part), std::string_view::npos) << error.what();
    return error.Code();
  }
  ADD_FAILURE() << "nothing was thrown where '" << part << "' was expected";
  return Errc::kIo;
}

}  // namespace marovia
