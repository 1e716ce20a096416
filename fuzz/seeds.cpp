// Writes what the fuzzers begin with, good inputs of every target: fuzz_seeds DATA_FOLDER
// OUT_FOLDER gives OUT_FOLDER/TARGET/NAME.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "marovia/codec.h"

#include "tests/support/testing.h"

namespace fs = std::filesystem;

int main(int, char** argv) {
  using namespace marovia;
  const fs::path out(argv[2]);
  const auto write = [&](const std::string& target, const std::string& name, const Bytes& input) {
    fs::create_directories(out / target);
    std::ofstream file(out / target / name, std::ios::binary);
    for (const std::uint8_t byte : input) file.put(static_cast<char>(byte));
  };
  const auto kinds = AllKinds();
  for (std::size_t k = 0; k < kinds.size(); ++k) {
    const auto kind = static_cast<std::uint8_t>(k);
    const Image image = test::NamedImage("blobs", 16, 15);
    Bytes file = Compress(image, {kinds[k], WaveletKind::kInteger22, 2, 3}).file;
    file.insert(file.begin(), {kind, 0});
    for (const char* target : {"decode", "cut", "decode_plainly"})
      write(target, std::to_string(k), file);
    Bytes request{kind, 1, 3, 3, 0xE8, 3, 15, 14, 2, 3, 7, 6, 90};
    request.insert(request.end(), image.Samples().begin(), image.Samples().end());
    for (const char* target : {"round_trip", "encode_plainly"})
      write(target, std::to_string(k), request);
  }
  for (const auto& entry : fs::directory_iterator(fs::path(argv[1]) / "pictures")) {
    std::ifstream file(entry.path(), std::ios::binary);
    Bytes picture{std::istreambuf_iterator<char>(file), {}};
    picture.insert(picture.begin(), 0);
    write("read_pictures", entry.path().filename(), picture);
  }
  fs::create_directories(out / "read_images");
  for (const auto& entry : fs::directory_iterator(fs::path(argv[1]) / "images")) {
    fs::copy(entry.path(), out / "read_images", fs::copy_options::overwrite_existing);
  }
  return 0;
}
