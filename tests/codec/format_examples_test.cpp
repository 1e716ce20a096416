// The worked example of docs/file_format.md: the files that it lists are those of its image.
#include "tests/support/plain_codec.h"

namespace marovia {
namespace {

std::string Document() {
  std::ifstream file(MAROVIA_TEST_DATA "/../../docs/file_format.md");
  return {std::istreambuf_iterator<char>(file), {}};
}

// That which is listed behind some words.
Image ExampleImage(const std::string& words = "This image of 8 x 8") {
  const std::string text = Document();
  std::istringstream rows(text.substr(text.find("```\n", text.find(words)) + 4));
  Image image(8, 8);
  for (std::uint8_t& pixel : image.Samples()) {
    int value = 0;
    rows >> value;
    pixel = static_cast<std::uint8_t>(value);
  }
  return image;
}

std::string Listing(ByteView bytes) {
  std::string text;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    if (i > 0) text += i % 16 == 0 ? '\n' : ' ';
    for (const int digit : {bytes[i] / 16, bytes[i] % 16}) text += "0123456789ABCDEF"[digit];
  }
  return text;
}

TEST(FileFormat, ListsTheFilesOfItsImage) {
  for (const FileKind kind : plain::Kinds()) {
    const Bytes file = Compress(ExampleImage(), {kind, WaveletKind::kInteger53, 1, 4}).file;
    EXPECT_NE(Document().find("```\n" + Listing(file) + "\n```\n"), std::string::npos)
        << "missing: " << Listing(file);
    EXPECT_EQ(Decompress(file, kind).image, ExampleImage()) << Extension(kind);
  }
}

TEST(FileFormat, ListsAContextFile) {
  const Image image = ExampleImage("The image of 8 x 8");
  CompressOptions options{.kind = FileKind::kAwh, .wavelet = WaveletKind::kInteger53, .levels = 1};
  options.lossless = true;
  const Bytes file = Compress(image, options).file;
  EXPECT_EQ(file.size(), 48U);
  EXPECT_NE(Document().find("```\n" + Listing(file) + "\n```\n"), std::string::npos);
}

TEST(FileFormat, ListsAMarkedHeader) {
  const CompressOptions options{FileKind::kAwg, WaveletKind::kInteger53, 4};
  const Bytes file = Compress(Image(300, 517, 100), options).file;
  EXPECT_NE(Document().find(Listing(ByteView(file).first(5))), std::string::npos);
}

}  // namespace
}  // namespace marovia
