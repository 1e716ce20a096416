// The image files under data/images, and what other programs say they hold.
#pragma once

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include "marovia/error.h"
#include "marovia/image.h"

namespace marovia {

inline Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

inline std::string ImageFile(const std::string& name) {
  return std::string(MAROVIA_TEST_DATA) + "/images/" + name;
}

inline Bytes FileBytes(const std::string& name) {
  std::ifstream file(ImageFile(name), std::ios::binary);
  EXPECT_TRUE(file) << name;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// The files that hold images, all of 13 x 7 pixels.
inline std::vector<std::string> AllImageFiles() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(ImageFile(""))) {
    const std::string extension = entry.path().extension().string();
    if (extension == ".bmp" || extension == ".pgm" || extension == ".ppm") {
      names.push_back(entry.path().filename().string());
    }
  }
  std::ranges::sort(names);
  return names;
}

// A plain PGM or PPM without comments, read by nothing but the stream's own conversion.
struct Plain {
  int rows = 0;
  int cols = 0;
  int maximum = 0;
  std::vector<int> samples;
};

inline Plain ReadPlain(const std::string& name) {
  std::ifstream file(ImageFile(name));
  std::string magic;
  Plain plain;
  file >> magic >> plain.cols >> plain.rows >> plain.maximum;
  EXPECT_TRUE(magic == "P2" || magic == "P3") << name;
  for (int sample = 0; file >> sample;) plain.samples.push_back(sample);
  EXPECT_EQ(plain.samples.size() % static_cast<std::size_t>(plain.rows * plain.cols), 0U);
  return plain;
}

// The code of the Error that reading throws, with a sentence that contains `part`.
template <class Read>
Errc CodeOf(Read read, std::string_view part) {
  try {
    read();
  } catch (const Error& error) {
    EXPECT_NE(std::string_view(error.what()).find(part), std::string_view::npos) << error.what();
    return error.Code();
  }
  ADD_FAILURE() << "nothing was thrown where '" << part << "' was expected";
  return Errc::kIo;
}

}  // namespace marovia
