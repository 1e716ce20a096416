// The library and the plain codec against the files and pictures that an independent program gave.
#include "tests/support/plain_codec.h"

namespace marovia {
namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

// A row of a table: its cells, and what its first say.
struct Row {
  std::string label;
  std::vector<std::string> cells;
  Image image;
  CompressOptions options;
  double bitsOfARow = 0;  // of the image, not yet rounded
};

Row ReadRow(const std::string& line) {
  Row row;
  row.cells = Split(line, '\t');
  for (int i = 0; i < 9; ++i) row.label += row.cells.at(i) + " ";
  row.image = test::NamedImage(row.cells[0], std::stoi(row.cells[1]), std::stoi(row.cells[2]));
  row.options.kind = KindOfExtension(row.cells[3]).value();
  row.options.wavelet = static_cast<WaveletKind>(std::stoi(row.cells[4]));
  row.options.levels = std::stoi(row.cells[5]);
  row.options.pad = false;
  // The budgets were made of as many whole bits for each row.
  row.bitsOfARow = row.image.Cols() * std::stod(row.cells[6]);
  row.options.rate = std::nearbyint(row.bitsOfARow) / row.image.Cols();
  return row;
}

std::vector<Row> ReadTable(const std::string& name) {
  std::ifstream file(std::string(MAROVIA_TEST_DATA "/") + name);
  std::vector<Row> rows;
  std::string line;
  std::getline(file, line);
  while (std::getline(file, line)) rows.push_back(ReadRow(line));
  EXPECT_FALSE(rows.empty()) << name;
  return rows;
}

void AddRegion(Row& row) {
  if (row.cells[7] == "-") return;
  const auto sides = Split(row.cells[7], ',');
  row.options.region = Region{std::stoi(sides.at(0)), std::stoi(sides.at(1)),
                              std::stoi(sides.at(2)), std::stoi(sides.at(3))};
  row.options.share = std::stof(row.cells[8]);
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
  for (Row& row : ReadTable("expected_results.tsv")) {
    SCOPED_TRACE(row.label);
    AddRegion(row);
    const plain::Coded coded = GetParam().compress(row.image, row.options);
    EXPECT_EQ(test::Sha256(coded.file), row.cells[10]);
    EXPECT_EQ(std::to_string(3 * coded.passes.size()), row.cells[15]);
    EXPECT_EQ(PixelHash(row, coded.file, 1), row.cells[11]);
    if (row.cells[12] == "-") continue;
    EXPECT_EQ(PixelHash(row, coded.file, 0.5), row.cells[12]);
  }
}

TEST_P(Golden, GivesTheRecordedPicturesOfCutFiles) {
  for (const Row& row : ReadTable("cut_files.tsv")) {
    SCOPED_TRACE(row.label);
    const Bytes file = GetParam().compress(row.image, row.options).file;
    const ByteView cut = ByteView(file).first(std::stoul(row.cells[7]));
    EXPECT_EQ(PixelHash(row, cut, 1), row.cells[8]);
  }
}

INSTANTIATE_TEST_SUITE_P(, Golden, testing::ValuesIn(kCodecs),
                         [](const auto& codec) { return codec.param.name; });

}  // namespace
}  // namespace marovia
