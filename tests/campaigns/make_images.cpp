// Writes seeded images: make_images COUNT FOLDER, as FOLDER/0000.pgm and on.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <random>
#include <string>

#include "tests/support/test_images.h"

namespace marovia {
namespace {

std::string NameOf(int number) {
  const std::string digits = std::to_string(number);
  return std::string(4 - std::min<std::size_t>(4, digits.size()), '0') + digits + ".pgm";
}

void WriteImages(int count, const std::string& folder) {
  for (int i = 0; i < count; ++i) {
    std::mt19937 random(static_cast<std::uint32_t>(i));
    const int rows = 16 + test::RandomBelow(random, 240);
    const Bytes file =
        WritePgm(test::RandomImage(random, rows, 16 + test::RandomBelow(random, 240)));
    std::ofstream stream(folder + "/" + NameOf(i), std::ios::binary);
    stream.exceptions(std::ios::failbit | std::ios::badbit);
    stream.write(reinterpret_cast<const char*>(file.data()),
                 static_cast<std::streamsize>(file.size()));
  }
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  try {
    marovia::WriteImages(std::atoi(argv[1]), argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "make_images: %s\n", error.what());
    return 1;
  }
  return 0;
}
