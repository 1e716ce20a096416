// The library and the plain codec against the files and pictures that an independent program gave.
#include "tests/support/plain_codec.h"

namespace marovia {
namespace {

using Cells = std::map<std::string, std::string>;

// What a row of a table asks for.
struct Row {
  explicit Row(Cells& row)
      : image(test::NamedImage(row["image"], std::stoi(row["rows"]), std::stoi(row["cols"]))),
        bitsOfARow(image.Cols() * std::stod(row["rate"])) {
    options.kind = KindOfExtension(row["extension"]).value();
    options.wavelet = static_cast<WaveletKind>(std::stoi(row["wavelet"]));
    options.levels = std::stoi(row["levels"]);
    options.pad = false;
    // The budgets were made of as many whole bits for each row.
    options.rate = std::nearbyint(bitsOfARow) / image.Cols();
    if (row["roi"].size() < 2) return;
    std::istringstream sides(row["roi"]);
    Region& region = options.region.emplace();
    char comma = 0;
    sides >> region.row1 >> comma >> region.col1 >> comma >> region.row2 >> comma >> region.col2;
    options.share = std::stof(row["share"]);
  }

  Image image;
  double bitsOfARow;  // not yet rounded
  CompressOptions options;
};

// Calls check(cells, row) for every row.
void ForRows(const std::string& table, auto check) {
  for (Cells& cells : test::ReadTable(table)) {
    SCOPED_TRACE(testing::PrintToString(cells));
    check(cells, Row(cells));
  }
}

struct Codec {
  const char* name;
  plain::Coded (*compress)(const Image&, const CompressOptions&);
  Image (*decompress)(ByteView, FileKind, int bitsOfARow);
};

const Codec kCodecs[] = {
    {"TheLibrary",
     [](const Image& image, const CompressOptions& options) {
       const CompressResult result = Compress(image, options);
       return plain::Coded{result.file, result.passes};
     },
     [](ByteView file, FileKind kind, int bitsOfARow) {
       DecompressOptions options;
       options.rate = static_cast<double>(bitsOfARow) / Inspect(file, kind).cols;
       return Decompress(file, kind, options).image;
     }},
    {"ThePlainCodec", plain::Compress, [](ByteView file, FileKind kind, int bitsOfARow) {
       return plain::Decompress(file, kind, bitsOfARow * Inspect(file, kind).rows).image;
     }}};

class Golden : public testing::TestWithParam<Codec> {
 protected:
  static std::string PixelHash(const Row& row, ByteView file, double part) {
    const auto bits = static_cast<int>(std::nearbyint(row.bitsOfARow * part));
    return test::Sha256(GetParam().decompress(file, row.options.kind, bits).Samples());
  }
};

TEST_P(Golden, GivesTheRecordedFilesAndPictures) {
  ForRows("expected_results.tsv", [](Cells& cells, const Row& row) {
    const plain::Coded coded = GetParam().compress(row.image, row.options);
    EXPECT_EQ(test::Sha256(coded.file), cells["sha256_file"]);
    EXPECT_EQ(std::to_string(3 * coded.passes.size()), cells["report_lines"]);
    EXPECT_EQ(PixelHash(row, coded.file, 1), cells["sha256_pixels"]);
    if (cells["sha256_pixels_half_rate"] == "-") return;
    EXPECT_EQ(PixelHash(row, coded.file, 0.5), cells["sha256_pixels_half_rate"]);
  });
}

TEST_P(Golden, GivesTheRecordedPicturesOfCutFiles) {
  ForRows("cut_files.tsv", [](Cells& cells, const Row& row) {
    const Bytes file = GetParam().compress(row.image, row.options).file;
    const ByteView cut = ByteView(file).first(std::stoul(cells["bytes_kept"]));
    EXPECT_EQ(PixelHash(row, cut, 1), cells["sha256_pixels"]);
  });
}

INSTANTIATE_TEST_SUITE_P(, Golden, testing::ValuesIn(kCodecs),
                         [](const auto& codec) { return codec.param.name; });

}  // namespace
}  // namespace marovia
