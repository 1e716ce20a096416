// Compresses an image file in memory, brings it back and prints how good it is.
//
//   c++ -std=c++20 consumer.cpp $(pkg-config --cflags --libs marovia)
#include <fstream>
#include <iostream>
#include <iterator>

#include "marovia/codec.h"
#include "marovia/measures.h"

int main(int count, char** words) try {
  if (count != 2) return 2;
  std::ifstream in(words[1], std::ios::binary);
  const marovia::Bytes bytes(std::istreambuf_iterator<char>(in), {});
  const marovia::Image image = marovia::ReadImage(bytes).image;
  const marovia::CompressResult packed = marovia::Compress(image, {.rate = 0.5});
  const marovia::DecompressResult back = marovia::Decompress(packed.file, marovia::FileKind::kAwh);
  std::cout << packed.file.size() << " bytes, PSNR "
            << marovia::Measure(image, back.image).psnr.value_or(0) << '\n';
} catch (const marovia::Error& error) {
  std::cerr << words[0] << ": " << error.what() << '\n';
  return 1;
}
