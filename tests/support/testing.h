// What every test includes, compiled once for all: the test library, the standard one, the public
// headers; files, folders, images, failures, and what the library does otherwise than the plain
// codec.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "marovia/codec.h"
#include "marovia/measures.h"

namespace marovia::test {

namespace fs = std::filesystem;

inline Bytes BytesOf(std::string_view text) {
  return {text.begin(), text.end()};
}

inline Bytes FileBytes(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  EXPECT_TRUE(stream) << file;
  return {std::istreambuf_iterator<char>(stream), {}};
}

// Of the image files that other programs made.
inline Bytes SampleFile(const std::string& name) {
  return FileBytes(MAROVIA_TEST_DATA "/images/" + name);
}

// The rows of a table of the test data, each by the headings of its columns.
inline std::vector<std::map<std::string, std::string>> ReadTable(const std::string& name) {
  std::ifstream file(MAROVIA_TEST_DATA "/" + name);
  const auto cellsOf = [](const std::string& line) {
    std::vector<std::string> cells;
    std::istringstream in(line);
    for (std::string cell; std::getline(in, cell, '\t');) cells.push_back(cell);
    return cells;
  };
  std::string line;
  std::getline(file, line);
  const auto headings = cellsOf(line);
  std::vector<std::map<std::string, std::string>> rows;
  while (std::getline(file, line)) {
    const auto cells = cellsOf(line);
    rows.emplace_back();
    for (std::size_t i = 0; i < headings.size(); ++i) rows.back()[headings[i]] = cells.at(i);
  }
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

inline void WriteFile(const fs::path& file, ByteView bytes) {
  std::ofstream(file, std::ios::binary)
      .write(reinterpret_cast<const char*>(bytes.data()),
             static_cast<std::streamsize>(bytes.size()));
}

// Empty at first, and gone at the end.
class TemporaryFolder {
 public:
  TemporaryFolder() {
    std::string pattern = testing::TempDir() + "marovia-XXXXXX";
    path_ = ::mkdtemp(pattern.data());
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    fs::remove_all(path_, ignored);
  }

  [[nodiscard]] const fs::path& Path() const { return path_; }
  [[nodiscard]] std::string Path(const std::string& name) const { return path_ / name; }
  void Write(const std::string& name, const std::string& content) const {
    WriteFile(Path(name), BytesOf(content));
  }
  [[nodiscard]] std::string Read(const std::string& name) const {
    const Bytes bytes = FileBytes(Path(name));
    return {bytes.begin(), bytes.end()};
  }
  // Sorted.
  [[nodiscard]] std::vector<std::string> Names(const std::string& folder = ".") const {
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(path_ / folder))
      names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
  }

 private:
  fs::path path_;
};

// From inside of the sample photograph, which is repeated where it ends.
inline Image Photograph(int rows, int cols) {
  static const Image whole = ReadImage(FileBytes(MAROVIA_ROOT "/Images/camera.pgm")).image;
  Image part(rows, cols);
  for (int r = 0; r < rows; ++r)
    for (int c = 0; c < cols; ++c) part(r, c) = whole((r + 90) % 512, (c + 200) % 512);
  return part;
}

// gradient, checker, lcgnoise, rings, halves, black, flat or blobs: the images of the recorded
// results. Every division of their formulas truncates.
Image NamedImage(std::string_view name, int rows, int cols);

// A flat page, slopes, checks with hard edges, noise, and mixtures of them with a few dots.
Image RandomImage(std::mt19937& random, int rows, int cols);

// 0 to below - 1; not a distribution of the standard library, which differ between machines.
int RandomBelow(std::mt19937& random, int below);

// The SHA-256 of the bytes, as 64 hexadecimal digits in lower case.
std::string Sha256(ByteView bytes);

// What the library does otherwise than the plain codec, or nothing.
std::string EncodingDifference(const Image& image, const CompressOptions& options);

// So many bits for each row of the image are decoded, or all.
std::string DecodingDifference(ByteView file, FileKind kind, std::optional<int> bitsOfARow = {});

// The code of the Error in which an action ends, with a sentence that contains `part`.
template <class Action>
Errc CodeOf(Action action, std::string_view part = "") {
  try {
    action();
  } catch (const Error& error) {
    EXPECT_NE(std::string_view(error.what()).find(part), std::string_view::npos) << error.what();
    return error.Code();
  }
  ADD_FAILURE() << "nothing was thrown" << (part.empty() ? "" : " that says ") << part;
  return Errc::kIo;
}

}  // namespace marovia::test
