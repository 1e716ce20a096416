// What the fuzzers begin with: good inputs of every target.
#pragma once

#include <string>
#include <vector>

#include "marovia/image.h"

namespace marovia::fuzz {

struct Seed {
  std::string target;
  std::string name;
  Bytes input;
};

// The codings of the recorded results, on smaller sides, and the image files of the tests.
std::vector<Seed> MakeSeeds(const std::string& dataFolder);

}  // namespace marovia::fuzz
