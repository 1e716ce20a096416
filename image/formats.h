// What a file holds by its first bytes: images that are read here, and what is often taken for one.
#pragma once

#include <cstddef>
#include <string_view>

#include "marovia/image.h"

namespace marovia {

struct Signature {
  std::string_view name;   // with its article: "a PNG image"; empty where the file is of none
  std::size_t length = 0;  // bytes that tell
  bool isRead = false;     // an image of a family that is read here

  [[nodiscard]] bool IsKnown() const { return length > 0; }
};

// Of images, read here or not, and of what is often taken for one.
Signature SignatureOf(ByteView file);

}  // namespace marovia
