// A loaded form on a fake desktop, a folder of its own, and the hands of a user.
#pragma once

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>

#include "marovia/codec.h"
#include "marovia/image.h"

#include "app/frm_main.h"
#include "codec/coders.h"
#include "tests/app/fake_desktop.h"

namespace marovia::test {

// A part of a photograph, 0 to 255 everywhere.
Image Photograph(int rows, int cols);

Bytes FileBytes(const std::filesystem::path& file);
void WriteFile(const std::filesystem::path& file, ByteView bytes);

constexpr std::int16_t kLeft = 1;
constexpr std::int16_t kRight = 2;

class FormTest : public testing::Test {
 protected:
  FormTest();
  ~FormTest() override;

  [[nodiscard]] std::filesystem::path Path(const std::string& name) const { return folder / name; }

  // Writes the image as a BMP and loads it through the menu.
  void Load(const Image& image);
  void LoadFile(const std::filesystem::path& file);
  void Save(const std::string& name);
  // Method and coding of a kind, and the rate's text.
  void Choose(const Coder& coder, std::string rate);
  // Go under the answer `name`.
  void Go(const std::string& name);
  void Compress(FileKind kind, const std::string& rate, const std::string& name);
  void Decompress(FileKind kind, const std::string& rate, const std::string& name);
  // What a measure says.
  std::string Compute(std::size_t measure);
  void Drag(float x1, float y1, float x2, float y2);
  // What the library makes of the loaded image with the settings of the start, unpadded.
  [[nodiscard]] CompressResult Expected(FileKind kind, double rate,
                                        const std::optional<Region>& region = {}) const;
  [[nodiscard]] bool InForce() const { return form.state.region.IsInForce(); }

  std::filesystem::path folder;
  FakeDesktop desktop;
  frmMain form{desktop};
};

}  // namespace marovia::test
