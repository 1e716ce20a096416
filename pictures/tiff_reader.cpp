#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "marovia/error.h"

#include "image/raster.h"
#include "pictures/formats.h"
#include "pictures/grey_rows.h"
#include "pictures/orientation.h"
#include "pictures/tiff_memory.h"

namespace marovia {
namespace {

// What the pieces of a file may take that are decoded at once. A piece that says it is larger than
// all of the picture is refused.
constexpr std::int64_t kBytesPerPixel = 16;
constexpr std::int64_t kTableBytes = std::int64_t{64} << 20;

[[noreturn]] void Refuse(const std::string& what) {
  Fail(Errc::kUnsupported, "The TIFF has " + what + ".");
}

template <class T>
T Field(TIFF* tiff, std::uint32_t tag, T otherwise) {
  T value{};
  return TIFFGetFieldDefaulted(tiff, tag, &value) == 1 ? value : otherwise;
}

// How one picture of the file is stored.
struct Storage {
  Shape shape;
  int bits = 1;
  std::size_t samples = 1;  // of a pixel
  bool separate = false;    // each of these in a piece of its own
  bool tiled = false;
  std::uint32_t pieceRows = 0;
  std::uint32_t pieceCols = 0;
};

void CheckSamples(TIFF* tiff, int bits) {
  const auto format = Field<std::uint16_t>(tiff, TIFFTAG_SAMPLEFORMAT, SAMPLEFORMAT_UINT);
  if (format != SAMPLEFORMAT_UINT && format != SAMPLEFORMAT_VOID)
    Refuse(format == SAMPLEFORMAT_INT ? "samples with a sign"
                                      : "samples that are no whole numbers");
  constexpr std::array kRead = {1, 2, 4, 8, 16};
  if (std::ranges::find(kRead, bits) == kRead.end())
    Refuse("samples of " + std::to_string(bits) + " bits; 1, 2, 4, 8 and 16 are read");
}

Storage StorageOf(TIFF* tiff, std::int64_t maxPixels) {
  Storage storage;
  storage.shape = CheckedShape(Field<std::uint32_t>(tiff, TIFFTAG_IMAGELENGTH, 0),
                               Field<std::uint32_t>(tiff, TIFFTAG_IMAGEWIDTH, 0), maxPixels);
  storage.bits = Field<std::uint16_t>(tiff, TIFFTAG_BITSPERSAMPLE, 1);
  CheckSamples(tiff, storage.bits);
  storage.samples = Field<std::uint16_t>(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
  storage.separate = storage.samples > 1 &&
                     Field<std::uint16_t>(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) ==
                         PLANARCONFIG_SEPARATE;
  storage.tiled = TIFFIsTiled(tiff) != 0;
  const auto rows = static_cast<std::uint32_t>(storage.shape.rows);
  const auto cols = static_cast<std::uint32_t>(storage.shape.cols);
  if (storage.tiled) {
    storage.pieceRows = Field<std::uint32_t>(tiff, TIFFTAG_TILELENGTH, 0);
    storage.pieceCols = Field<std::uint32_t>(tiff, TIFFTAG_TILEWIDTH, 0);
  } else {
    storage.pieceRows = std::min(rows, Field<std::uint32_t>(tiff, TIFFTAG_ROWSPERSTRIP, rows));
    storage.pieceCols = cols;
  }
  if (storage.pieceRows == 0 || storage.pieceCols == 0)
    Fail(Errc::kMalformed, "The TIFF has tiles or strips of 0 rows or columns.");
  return storage;
}

// Without a field that tells, one sample is grey and three are colours.
std::uint16_t Photometric(TIFF* tiff, std::size_t samples) {
  std::uint16_t photometric = samples < 3 ? PHOTOMETRIC_MINISBLACK : PHOTOMETRIC_RGB;
  TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric);
  return photometric;
}

// Components have 16 bits, of which some programs fill the low 8 alone.
std::vector<Rgb> Palette(TIFF* tiff, int bits) {
  std::uint16_t* red = nullptr;
  std::uint16_t* green = nullptr;
  std::uint16_t* blue = nullptr;
  if (bits > 8 || TIFFGetField(tiff, TIFFTAG_COLORMAP, &red, &green, &blue) != 1)
    Refuse("a palette that is not there");
  std::vector<Rgb> palette;
  const std::size_t count = std::size_t{1} << static_cast<unsigned>(bits);
  std::uint32_t highest = 0;
  for (std::size_t i = 0; i < count; ++i) {
    palette.push_back({red[i], green[i], blue[i]});
    highest = std::max({highest, palette[i].red, palette[i].green, palette[i].blue});
  }
  const std::uint32_t maximum = highest > 255 ? 65535 : 255;
  for (Rgb& colour : palette)
    colour = {ScaledToByte(colour.red, maximum), ScaledToByte(colour.green, maximum),
              ScaledToByte(colour.blue, maximum)};
  return palette;
}

void SetAlpha(TIFF* tiff, std::size_t first, SampleMeaning& meaning) {
  std::uint16_t count = 0;
  std::uint16_t* kinds = nullptr;
  if (TIFFGetField(tiff, TIFFTAG_EXTRASAMPLES, &count, &kinds) != 1) return;
  const std::span extras(kinds, count);
  const auto alpha = std::ranges::find_if(extras, [](std::uint16_t kind) {
    return kind == EXTRASAMPLE_ASSOCALPHA || kind == EXTRASAMPLE_UNASSALPHA;
  });
  if (alpha == extras.end()) return;
  const std::size_t sample = first + static_cast<std::size_t>(alpha - extras.begin());
  if (sample >= meaning.channels) return;
  meaning.alpha = sample;
  meaning.premultiplied = *alpha == EXTRASAMPLE_ASSOCALPHA;
}

// Samples that hold brightness and colour become red, green and blue only where the library that
// decodes them turns them.
bool TurnedToColours(TIFF* tiff) {
  return Field<std::uint16_t>(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE) == COMPRESSION_JPEG &&
         TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB) == 1;
}

SampleMeaning MeaningOf(TIFF* tiff, const Storage& storage) {
  SampleMeaning meaning;
  meaning.channels = storage.samples;
  meaning.maximum = (1U << static_cast<unsigned>(storage.bits)) - 1;
  const std::uint16_t photometric = Photometric(tiff, storage.samples);
  switch (photometric) {
    case PHOTOMETRIC_MINISWHITE:
      meaning.whiteIsZero = true;
      break;
    case PHOTOMETRIC_MINISBLACK:
      break;
    case PHOTOMETRIC_PALETTE:
      meaning.palette = Palette(tiff, storage.bits);
      meaning.maximum = 255;
      return meaning;
    case PHOTOMETRIC_YCBCR:
      if (!TurnedToColours(tiff)) Refuse("luma and chroma without JPEG compression");
      [[fallthrough]];
    case PHOTOMETRIC_RGB:
      meaning.colour = true;
      if (storage.samples < 3) Refuse("fewer than three samples for a colour");
      break;
    case PHOTOMETRIC_SEPARATED:
      Refuse("the colours of inks; grey, RGB and palettes are read");
    default:
      Refuse("the photometric interpretation " + std::to_string(photometric) +
             "; grey, RGB and palettes are read");
  }
  SetAlpha(tiff, meaning.colour ? 3 : 1, meaning);
  return meaning;
}

class TiffReader {
 public:
  TiffReader(const TiffMemory& memory, std::int64_t maxPixels)
      : memory_(memory),
        storage_(StorageOf(memory.Get(), maxPixels)),
        rows_(MeaningOf(memory.Get(), storage_)),
        rowBytes_(RowBytes()) {
    // Of planes only those with a meaning are read.
    const SampleMeaning& meaning = rows_.Meaning();
    planes_.resize(
        storage_.separate ? std::max<std::size_t>(meaning.colour ? 3 : 1, meaning.alpha + 1) : 1);
    CheckPieces();
  }

  Picture Read();

 private:
  [[nodiscard]] std::size_t RowBytes() const;
  void CheckPieces() const;
  void ReadPiece(std::uint32_t row, std::uint32_t col, std::size_t plane);
  void ConvertPiece(std::uint32_t row, std::uint32_t col, Image& image);
  void TakeSamples(std::size_t row, std::span<std::uint16_t> samples);

  const TiffMemory& memory_;
  Storage storage_;
  GreyRows rows_;
  std::size_t rowBytes_;  // of a piece
  std::vector<Bytes> planes_;
};

std::size_t TiffReader::RowBytes() const {
  TIFF* tiff = memory_.Get();
  return storage_.tiled ? TIFFTileRowSize64(tiff) : TIFFScanlineSize64(tiff);
}

void TiffReader::CheckPieces() const {
  const auto most =
      static_cast<std::uint64_t>(kTableBytes + kBytesPerPixel * storage_.shape.Pixels());
  const std::uint64_t channels = storage_.separate ? 1 : storage_.samples;
  const std::uint64_t needed =
      (storage_.pieceCols * channels * static_cast<unsigned>(storage_.bits) + 7) / 8;
  if (rowBytes_ < needed) memory_.FailAsTold();
  if (rowBytes_ > most / storage_.pieceRows / planes_.size())
    Fail(Errc::kLimit, "The TIFF has pieces of " + std::to_string(storage_.pieceCols) + " x " +
                           std::to_string(storage_.pieceRows) +
                           " pixels, which take more memory than the image may.");
}

void TiffReader::ReadPiece(std::uint32_t row, std::uint32_t col, std::size_t plane) {
  TIFF* tiff = memory_.Get();
  const auto sample = static_cast<std::uint16_t>(plane);
  const std::uint32_t left = static_cast<std::uint32_t>(storage_.shape.rows) - row;
  const std::size_t rows = storage_.tiled ? storage_.pieceRows : std::min(left, storage_.pieceRows);
  Bytes& bytes = planes_[plane];
  bytes.assign(rows * rowBytes_, 0);
  const auto size = static_cast<tmsize_t>(bytes.size());
  const tmsize_t read =
      storage_.tiled
          ? TIFFReadEncodedTile(tiff, TIFFComputeTile(tiff, col, row, 0, sample), bytes.data(),
                                size)
          : TIFFReadEncodedStrip(tiff, TIFFComputeStrip(tiff, row, sample), bytes.data(), size);
  if (read < size) memory_.FailAsTold();
}

// Samples of planes come together here.
void TiffReader::TakeSamples(std::size_t row, std::span<std::uint16_t> samples) {
  const auto bytesOf = [&](const Bytes& plane) {
    return ByteView(plane).subspan(row * rowBytes_, rowBytes_);
  };
  if (!storage_.separate) return WidenSamples(bytesOf(planes_[0]), storage_.bits, samples);
  std::vector<std::uint16_t> line(samples.size() / storage_.samples);
  for (std::size_t plane = 0; plane < planes_.size(); ++plane) {
    WidenSamples(bytesOf(planes_[plane]), storage_.bits, line);
    for (std::size_t i = 0; i < line.size(); ++i) samples[i * storage_.samples + plane] = line[i];
  }
}

void TiffReader::ConvertPiece(std::uint32_t row, std::uint32_t col, Image& image) {
  for (std::size_t plane = 0; plane < planes_.size(); ++plane) ReadPiece(row, col, plane);
  const std::size_t cols =
      std::min(static_cast<std::uint32_t>(image.Cols()) - col, storage_.pieceCols);
  const std::uint32_t rows =
      std::min(static_cast<std::uint32_t>(image.Rows()) - row, storage_.pieceRows);
  std::vector<std::uint16_t> samples(cols * storage_.samples);
  for (std::uint32_t r = 0; r < rows; ++r) {
    TakeSamples(r, samples);
    rows_.Convert(samples, image.Row(static_cast<int>(row + r)).subspan(col, cols));
  }
}

Picture TiffReader::Read() {
  Image image(storage_.shape.rows, storage_.shape.cols, Unfilled{});
  const auto rows = static_cast<std::uint32_t>(image.Rows());
  const auto cols = static_cast<std::uint32_t>(image.Cols());
  for (std::uint32_t row = 0; row < rows; row += std::min(storage_.pieceRows, rows - row))
    for (std::uint32_t col = 0; col < cols; col += std::min(storage_.pieceCols, cols - col))
      ConvertPiece(row, col, image);
  const int orientation =
      Field<std::uint16_t>(memory_.Get(), TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  return {Upright(std::move(image), orientation), rows_.AlterationSoFar(), {}};
}

}  // namespace

Picture ReadTiff(ByteView file, const PictureOptions& options) {
  constexpr std::int64_t kMostPixels = std::int64_t{1} << 56;
  const TiffMemory memory(file,
                          kTableBytes + kBytesPerPixel * std::min(options.maxPixels, kMostPixels));
  const std::int64_t pages = TIFFNumberOfDirectories(memory.Get());
  CheckPage(options.page, pages);
  if (TIFFSetDirectory(memory.Get(), static_cast<tdir_t>(options.page - 1)) != 1)
    memory.FailAsTold();
  Picture picture = TiffReader(memory, options.maxPixels).Read();
  if (pages > 1)
    picture.notices.push_back("page " + std::to_string(options.page) + " of " +
                              std::to_string(pages));
  if (!memory.Warning().empty())
    picture.notices.push_back("the TIFF library says: " + memory.Warning());
  return picture;
}

}  // namespace marovia
