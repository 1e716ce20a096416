#include "image/grey.h"

namespace marovia {

std::string Alteration(bool coloured, std::uint32_t maximum, bool transparent) {
  std::string text;
  const auto add = [&text](const std::string& what) { text += (text.empty() ? "" : ", ") + what; };
  if (coloured) add("colour turned to grey");
  if (transparent) add("transparency dropped");
  if (maximum != 255) add("values scaled from " + std::to_string(maximum) + " to 255");
  return text;
}

}  // namespace marovia
