// Prints the SHA-256 of the files that the images named on the command line give, and of the
// pictures that come out of these, for every kind and wavelet.
#include <cstdio>
#include <exception>
#include <fstream>
#include <iterator>
#include <string>

#include "marovia/codec.h"
#include "marovia/image.h"

#include "tests/support/sha256.h"

namespace marovia {
namespace {

void PrintHashes(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  const Image image = ReadImage(Bytes(std::istreambuf_iterator<char>(stream), {})).image;
  const std::string name = path.substr(path.rfind('/') + 1);
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                              FileKind::kAwg, FileKind::kAwc, FileKind::kAwh}) {
    for (const WaveletKind wavelet :
         {WaveletKind::kDaub97, WaveletKind::kInteger53, WaveletKind::kInteger22}) {
      if (kind == FileKind::kAwg && wavelet == WaveletKind::kDaub97) continue;
      CompressOptions options;
      options.kind = kind;
      options.wavelet = wavelet;
      options.rate = 1;
      const Bytes file = Compress(image, options).file;
      const Image back = Decompress(file, kind).image;
      const auto samples = back.Samples();
      std::printf("%s %d %s %s %s\n", name.c_str(), static_cast<int>(wavelet),
                  std::string(Extension(kind)).c_str(), test::Sha256(file).c_str(),
                  test::Sha256(samples).c_str());
    }
  }
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  try {
    for (int i = 1; i < argc; ++i) marovia::PrintHashes(argv[i]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
  return 0;
}
