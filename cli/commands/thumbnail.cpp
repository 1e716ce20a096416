#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <limits>
#include <string>
#include <string_view>
#include <utility>
#include <zlib.h>

#include "marovia/error.h"

#include "cli/arguments.h"
#include "cli/commands/commands.h"
#include "cli/console.h"
#include "cli/file_kinds.h"
#include "cli/values.h"
#include "files/input_file.h"
#include "files/output_file.h"
#include "image/sampling.h"

namespace marovia::cli {
namespace {

constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
constexpr std::uint8_t kUp = 2;  // each row as what it differs from the one above

void AppendBigEndian(Bytes& bytes, std::uint32_t value) {
  for (const int shift : {24, 16, 8, 0}) bytes.push_back(static_cast<std::uint8_t>(value >> shift));
}

// Length, name, content, and the checksum of the last two.
void AppendChunk(Bytes& file, std::string_view name, const Bytes& content) {
  AppendBigEndian(file, static_cast<std::uint32_t>(content.size()));
  const auto begin = static_cast<std::ptrdiff_t>(file.size());
  file.insert(file.end(), name.begin(), name.end());
  file.insert(file.end(), content.begin(), content.end());
  const auto length = static_cast<uInt>(name.size() + content.size());
  const auto sum = ::crc32(0, &*(file.begin() + begin), length);
  AppendBigEndian(file, static_cast<std::uint32_t>(sum));
}

Bytes HeaderOf(const Image& image) {
  constexpr std::array<std::uint8_t, 5> kEightBitGrey = {8, 0, 0, 0, 0};
  Bytes header;
  AppendBigEndian(header, static_cast<std::uint32_t>(image.Cols()));
  AppendBigEndian(header, static_cast<std::uint32_t>(image.Rows()));
  header.insert(header.end(), kEightBitGrey.begin(), kEightBitGrey.end());
  return header;
}

Bytes FilteredRows(const Image& image) {
  Bytes rows;
  Bytes above(static_cast<std::size_t>(image.Cols()));
  for (int r = 0; r < image.Rows(); ++r) {
    rows.push_back(kUp);
    const auto row = image.Row(r);
    for (std::size_t c = 0; c < row.size(); ++c)
      rows.push_back(static_cast<std::uint8_t>(row[c] - above[c]));
    above.assign(row.begin(), row.end());
  }
  return rows;
}

Bytes Deflated(const Bytes& bytes) {
  uLongf length = ::compressBound(bytes.size());
  Bytes deflated(length);
  if (::compress(deflated.data(), &length, bytes.data(), bytes.size()) != Z_OK)
    Fail(Errc::kOverflow, "the picture cannot be compressed");
  deflated.resize(length);
  return deflated;
}

Bytes WritePng(const Image& image) {
  Bytes file(kSignature.begin(), kSignature.end());
  AppendChunk(file, "IHDR", HeaderOf(image));
  AppendChunk(file, "IDAT", Deflated(FilteredRows(image)));
  AppendChunk(file, "IEND", {});
  return file;
}

constexpr const char* kExamples =
    "Examples:\n"
    "  marovia thumbnail photo.awf photo.png\n"
    "  marovia thumbnail photo.awf photo.png --size 512\n"
    "\n"
    "OUT is a PNG, whatever its name. Neither side is longer than N, and no picture is\n"
    "made larger. Only the start of IN is decoded. IN and OUT may be - for standard\n"
    "input and output.\n";

constexpr int kDefaultSize = 256;
constexpr int kMostSize = 4096;
// Bits for each pixel of the thumbnail. Edges take bits before the last of what is coarse has come;
// with so many a thumbnail is some 40 decibels from that of the whole image.
constexpr double kBitsPerPixel = 20;

struct ThumbnailArguments {
  CommonOptions common;
  std::string input;
  std::string output;
  bool force = false;
  int size = kDefaultSize;
  Formats formats;
};

// The rate at which the image gets what its thumbnail needs.
double RateFor(const FileInfo& info, int size) {
  const double longest = std::max(info.rows, info.cols);
  const double scale = std::min(1.0, size / longest);
  return kBitsPerPixel * scale * scale;
}

// The levels that can be left out of an image that becomes smaller anyway: what is left is still
// twice as long, so that pixels at its border that lie beyond the image count little.
int LevelsToSpare(const FileInfo& info, int size) {
  int levels = 0;
  while (std::max(info.rows, info.cols) >> (levels + 1) >= 2 * size) ++levels;
  return levels;
}

// As much of a file as is read at a rate.
std::int64_t BytesFor(FileInfo info, double rate) {
  const double bits = rate * info.rows * info.cols;
  info.budget = static_cast<std::int32_t>(
      std::min<double>(bits, info.budget.value_or(std::numeric_limits<std::int32_t>::max())));
  return UsefulBytes(info);
}

DecompressResult DecodeFor(const ThumbnailArguments& arguments, InputFile& input) {
  const std::int64_t maxPixels = arguments.common.maxPixels;
  Bytes file = input.Read(kMostHeaderBytes);
  const FileKind kind = KindOfInput(file, arguments.input, arguments.formats.kind);
  CheckIsOfKind(file, kind, maxPixels);
  const FileInfo info = InspectStart(file, std::ssize(file), kind, maxPixels);
  const double rate = RateFor(info, arguments.size);
  const Bytes stream = input.Read(BytesFor(info, rate));
  file.insert(file.end(), stream.begin(), stream.end());
  DecompressOptions options{
      .maxPixels = maxPixels, .threads = 0, .reduce = LevelsToSpare(info, arguments.size)};
  if (info.budget) {
    options.rate = rate;
    return Decompress(file, kind, options);
  }
  // A file without a rate of its own has one once it is cut.
  const TruncateResult start = Truncate(std::move(file), kind, {rate, {}, maxPixels});
  return Decompress(start.file, start.kind, options);
}

int ParseSize(const std::string& text) {
  const auto size = WholeNumber<int>(text);
  if (!size || *size < 1 || *size > kMostSize)
    RefuseValue("--size", text, "a number from 1 to 4096");
  return *size;
}

ExitStatus RunThumbnail(const ThumbnailArguments& arguments, Console& console) {
  console.SetOutput(arguments.output);
  const OutputFile output(arguments.output, arguments.force);
  CheckJsonHasRoom(arguments.common, output);
  console.SetInput(arguments.input);
  InputFile file(arguments.input, arguments.common.maxPixels);
  const DecompressResult decoded = DecodeFor(arguments, file);
  const Image picture =
      ReducedToFit(decoded.image, decoded.info.rows, decoded.info.cols, arguments.size);
  console.SetOutput(arguments.output);
  output.Put(WritePng(picture));
  if (arguments.common.json)
    console.Print(Json{{"input", arguments.input},
                       {"output", arguments.output},
                       {"rows", picture.Rows()},
                       {"columns", picture.Cols()}});
  return ExitStatus::kDone;
}

void AddSizeOption(CLI::App& command, ThumbnailArguments& arguments) {
  AddParsedOption(command, "--size", "N", "The longest that a side may be, 1 to 4096 (256)",
                  [&](const std::string& text) { arguments.size = ParseSize(text); })
      ->group("General");
}

}  // namespace

void AddThumbnail(CLI::App& tool, Action& action) {
  auto arguments = std::make_shared<ThumbnailArguments>();
  CLI::App& command = AddCommand(tool, "thumbnail", "Make a small PNG of a compressed file");
  AddFile(command, "IN", arguments->input, "The compressed file");
  AddFile(command, "OUT", arguments->output, "The picture, a PNG");
  AddSizeOption(command, *arguments);
  AddFormatOption(command, arguments->formats, false);
  AddForceOption(command, arguments->force);
  AddCommonOptions(command, arguments->common);
  command.footer(kExamples);
  SetAction<ThumbnailArguments>(command, action, arguments, &RunThumbnail);
}

}  // namespace marovia::cli
