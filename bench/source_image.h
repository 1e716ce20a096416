// The images that are measured.
#pragma once

#include <string>

#include "marovia/image.h"

namespace marovia::bench {

struct Source {
  std::string name;
  Image image;
};

// Named after its file, without folder and extension.
Source ReadSource(const std::string& file);

// The image repeated to side x side pixels. Every other copy is mirrored, so that it goes on
// smoothly at the seams; named "camera-4096".
Source Repeated(const Source& source, int side);

}  // namespace marovia::bench
