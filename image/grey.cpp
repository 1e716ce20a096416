#include "image/grey.h"

namespace marovia {

std::string Alteration(bool coloured, std::uint32_t maximum) {
  std::string text = coloured ? "colour turned to grey" : "";
  if (maximum == 255) return text;
  if (coloured) text += ", ";
  return text + "values scaled from " + std::to_string(maximum) + " to 255";
}

}  // namespace marovia
