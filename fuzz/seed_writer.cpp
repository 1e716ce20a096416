// Writes the seeds of every target: fuzz_seeds DATA_FOLDER OUT_FOLDER gives OUT_FOLDER/TARGET/NAME.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>

#include "fuzz/seeds.h"

namespace {

void WriteSeeds(const char* dataFolder, const std::filesystem::path& out) {
  for (const marovia::fuzz::Seed& seed : marovia::fuzz::MakeSeeds(dataFolder)) {
    std::filesystem::create_directories(out / seed.target);
    std::ofstream file(out / seed.target / seed.name, std::ios::binary);
    file.exceptions(std::ios::failbit | std::ios::badbit);
    for (const std::uint8_t byte : seed.input) file.put(static_cast<char>(byte));
    file.close();
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("usage: fuzz_seeds DATA_FOLDER OUT_FOLDER\n", stderr);
    return 2;
  }
  try {
    WriteSeeds(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "fuzz_seeds: %s\n", error.what());
    return 1;
  }
  return 0;
}
