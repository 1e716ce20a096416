// The recorded context-coded files and the pictures of whole and cut ones.
#include "context/kernels.h"
#include "tests/support/plain_context.h"
#include "tests/support/testing.h"

namespace marovia {
namespace {

using Cells = std::map<std::string, std::string>;
using test::ReadTable;

Image ImageOf(const Cells& row) {
  const std::string& name = row.at("image");
  if (!name.ends_with(".pgm")) {
    return test::NamedImage(name, std::stoi(row.at("rows")), std::stoi(row.at("cols")));
  }
  return ReadImage(test::FileBytes(MAROVIA_ROOT "/Images/" + name)).image;
}

// "20,30,60,90 share 0.5" or "-".
void ReadRegion(const std::string& text, ContextOptions& options) {
  if (text == "-") return;
  std::istringstream in(text);
  Region region;
  char comma = 0;
  std::string share;
  in >> region.row1 >> comma >> region.col1 >> comma >> region.row2 >> comma >> region.col2 >>
      share >> options.share;
  options.region = region;
}

ContextOptions OptionsOf(const Cells& row) {
  ContextOptions options{.wavelet = static_cast<WaveletKind>(std::stoi(row.at("wavelet"))),
                         .levels = std::stoi(row.at("levels")),
                         .bytes = std::stol(row.at("bytes_asked"))};
  if (row.contains("region")) ReadRegion(row.at("region"), options);
  return options;
}

std::string LabelOf(const Cells& row) {
  std::string label;
  for (const char* heading : {"image", "rows", "cols", "wavelet", "levels", "bytes_asked"}) {
    label += row.at(heading) + " ";
  }
  return label;
}

struct Codec {
  std::string name;
  std::function<Bytes(const Image&, const ContextOptions&)> encode;
  std::function<ContextPicture(ByteView)> decode;
};

// With the loops for any processor, or with those that this one is best at.
Codec Engine(const std::string& name, const ContextKernels& kernels) {
  return {name,
          [&kernels](const Image& image, const ContextOptions& options) {
            return EncodeContextWith(kernels, image, options);
          },
          [&kernels](ByteView file) { return DecodeContextWith(kernels, file, {}); }};
}

class ContextGolden : public testing::TestWithParam<Codec> {};

TEST_P(ContextGolden, GivesTheRecordedFilesAndPictures) {
  for (const Cells& row : ReadTable("context_files.tsv")) {
    SCOPED_TRACE(LabelOf(row));
    const Image image = ImageOf(row);
    const Bytes file = GetParam().encode(image, OptionsOf(row));
    EXPECT_EQ(test::Sha256(file), row.at("sha256_file"))
        << file.size() << " for " << row.at("bytes");
    const ContextPicture picture = GetParam().decode(file);
    EXPECT_EQ(picture.header.levels, std::stoi(row.at("levels_used")));
    EXPECT_EQ(picture.header.planes, std::stoi(row.at("planes")));
    EXPECT_EQ(picture.complete, row.at("complete") == "1");
    EXPECT_EQ(test::Sha256(picture.image.Samples()), row.at("sha256_pixels"));
  }
}

TEST_P(ContextGolden, GivesTheRecordedPicturesOfCutFiles) {
  std::map<std::string, Bytes> files;  // most rows cut the file of the row before
  for (const Cells& row : ReadTable("context_cut_files.tsv")) {
    SCOPED_TRACE(LabelOf(row) + "cut to " + row.at("bytes_kept"));
    Bytes& file = files[LabelOf(row)];
    if (file.empty()) file = GetParam().encode(ImageOf(row), OptionsOf(row));
    const ByteView kept = ByteView(file).first(std::stoul(row.at("bytes_kept")));
    const ContextPicture picture = GetParam().decode(kept);
    EXPECT_EQ(test::Sha256(picture.image.Samples()), row.at("sha256_pixels"));
  }
}

INSTANTIATE_TEST_SUITE_P(
    , ContextGolden,
    testing::Values(Codec{"PlainWalk", plain::EncodeContext, plain::DecodeContext},
                    Engine("PlainKernels", PlainKernels()), Engine("BestKernels", BestKernels())),
    [](const auto& codec) { return codec.param.name; });

}  // namespace
}  // namespace marovia
