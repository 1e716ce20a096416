#include "tests/support/golden_table.h"

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "base/number_text.h"

namespace marovia::test {
namespace {

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

// The rows below the heading, each of `columns` columns.
std::vector<std::vector<std::string>> ReadTable(const std::string& path, std::size_t columns) {
  std::ifstream file(path);
  std::vector<std::vector<std::string>> table;
  for (std::string line; std::getline(file, line);) {
    table.push_back(Split(line, '\t'));
    if (table.back().size() != columns) throw std::runtime_error("odd row: " + line);
  }
  if (table.size() < 2) throw std::runtime_error(path + ": no rows");
  table.erase(table.begin());
  return table;
}

FileKind ReadKind(const std::string& extension) {
  const std::string last = "abcdfg";  // of awa, awb, awc, awd, awf, awg
  constexpr FileKind kKinds[] = {FileKind::kAwa, FileKind::kAwb, FileKind::kAwc,
                                 FileKind::kAwd, FileKind::kAwf, FileKind::kAwg};
  return kKinds[last.find(extension.at(2))];
}

std::optional<Region> ReadRegion(const std::string& text) {
  if (text == "-") return {};
  const std::vector<std::string> sides = Split(text, ',');
  return Region{std::stoi(sides.at(0)), std::stoi(sides.at(1)), std::stoi(sides.at(2)),
                std::stoi(sides.at(3))};
}

// The columns that both tables begin with: image, rows, cols, extension, wavelet, levels, rate.
template <class Row>
Row ReadCoding(const std::vector<std::string>& cells) {
  Row row;
  row.label = cells[0];
  for (std::size_t i = 1; i <= 7; ++i) row.label.append(" ").append(cells[i]);
  row.image = cells[0];
  row.rows = std::stoi(cells[1]);
  row.cols = std::stoi(cells[2]);
  row.settings.kind = ReadKind(cells[3]);
  row.settings.wavelet = static_cast<WaveletKind>(std::stoi(cells[4]));
  row.settings.levels = std::stoi(cells[5]);
  row.settings.rate = LeadingNumber(cells[6]);
  return row;
}

GoldenRow ReadGoldenRow(const std::vector<std::string>& cells) {
  auto row = ReadCoding<GoldenRow>(cells);
  row.settings.region = ReadRegion(cells[7]);
  if (row.settings.region) row.settings.share = static_cast<float>(LeadingNumber(cells[8]));
  row.bytes = std::stoul(cells[9]);
  row.fileHash = cells[10];
  row.pixelHash = cells[11];
  row.halfRatePixelHash = cells[12];
  row.psnr = cells[13];
  row.halfRatePsnr = cells[14];
  row.reportLines = std::stoul(cells[15]);
  row.levelsUsed = std::stoi(cells[16]);
  row.exponent = std::stoi(cells[17]);
  return row;
}

CutRow ReadCutRow(const std::vector<std::string>& cells) {
  auto row = ReadCoding<CutRow>(cells);
  row.bytesKept = std::stoul(cells[7]);
  row.pixelHash = cells[8];
  row.psnr = cells[9];
  return row;
}

}  // namespace

std::vector<GoldenRow> ReadGoldenRows(const std::string& path) {
  std::vector<GoldenRow> rows;
  for (const auto& cells : ReadTable(path, 19)) rows.push_back(ReadGoldenRow(cells));
  return rows;
}

std::vector<CutRow> ReadCutRows(const std::string& path) {
  std::vector<CutRow> rows;
  for (const auto& cells : ReadTable(path, 10)) rows.push_back(ReadCutRow(cells));
  return rows;
}

}  // namespace marovia::test
