#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include "marovia/error.h"
#include "marovia/image.h"

#include "image/formats.h"
#include "image/netpbm.h"
#include "image/raster.h"

namespace marovia {
namespace {

// Numbers are set apart by white space. A comment runs from '#' to the end of its line and counts
// as that line end, also right behind a number: after "255#full range\n" the samples begin.
class PnmTokens {
 public:
  explicit PnmTokens(ByteView bytes) : bytes_(bytes) {}

  // The next number, taken together with the one white space behind it. Error kMalformed where
  // something else stands there, or a number above 10^15.
  std::int64_t Number();

  // The next digit, 0 or 1; white space may stand before it.
  std::int64_t Bit();

  [[nodiscard]] ByteView Rest() const { return bytes_.subspan(at_); }

 private:
  int Next();
  [[noreturn]] static void FailAt(int byte);

  ByteView bytes_;
  std::size_t at_ = 0;
};

constexpr int kEnd = -1;
constexpr std::int64_t kLargest = 1'000'000'000'000'000;

bool IsDigit(int byte) {
  return byte >= '0' && byte <= '9';
}

bool IsBlank(int byte) {
  return byte == ' ' || (byte >= '\t' && byte <= '\r');
}

bool EndsLine(int byte) {
  return byte == '\n' || byte == '\r' || byte == kEnd;
}

std::int64_t PnmTokens::Number() {
  int byte = Next();
  while (IsBlank(byte)) byte = Next();
  if (!IsDigit(byte)) FailAt(byte);

  std::int64_t number = 0;
  for (; IsDigit(byte); byte = Next()) {
    number = number * 10 + (byte - '0');
    if (number > kLargest) {
      Fail(Errc::kMalformed, "A number in the file exceeds " + std::to_string(kLargest) + ".");
    }
  }
  if (byte != kEnd && !IsBlank(byte)) FailAt(byte);
  return number;
}

std::int64_t PnmTokens::Bit() {
  int byte = Next();
  while (IsBlank(byte)) byte = Next();
  if (byte != '0' && byte != '1') FailAt(byte);
  return byte - '0';
}

// The next byte, kEnd behind the last one; a comment reads as the byte that ends it.
int PnmTokens::Next() {
  bool comment = false;
  while (at_ < bytes_.size()) {
    const int byte = bytes_[at_++];
    comment = comment || byte == '#';
    if (!comment || EndsLine(byte)) return byte;
  }
  return kEnd;
}

void PnmTokens::FailAt(int byte) {
  Fail(Errc::kMalformed, byte == kEnd ? "The file ends where a number is expected."
                                      : "The file has the byte " + std::to_string(byte) +
                                            " where a number is expected.");
}

struct Form {
  bool plain = false;
  bool colour = false;
  bool bits = false;
};

Form FormOf(ByteView file) {
  const char digit = file.size() < 2 ? ' ' : static_cast<char>(file[1]);
  switch (digit) {
    case '1':
      return {.plain = true, .bits = true};
    case '2':
      return {.plain = true};
    case '3':
      return {.plain = true, .colour = true};
    case '4':
      return {.bits = true};
    case '5':
      return {};
    case '6':
      return {.colour = true};
    default:
      Fail(Errc::kMalformed, "The file begins with P, but not as a Netpbm file does.");
  }
}

std::uint32_t CheckedSample(std::int64_t sample, std::uint32_t maximum) {
  if (sample > maximum) {
    Fail(Errc::kMalformed, "The file has a sample of " + std::to_string(sample) +
                               ", above its maximum value of " + std::to_string(maximum) + ".");
  }
  return static_cast<std::uint32_t>(sample);
}

NetpbmHeader TakeHeader(PnmTokens& tokens, Form form, std::int64_t maxPixels) {
  const std::int64_t cols = tokens.Number();
  const std::int64_t rows = tokens.Number();
  NetpbmHeader header{CheckedShape(rows, cols, maxPixels)};
  header.channels = form.colour ? 3 : 1;
  header.colour = form.colour;
  header.bits = form.bits;
  if (!form.bits) header.maximum = CheckedNetpbmMaximum(tokens.Number());
  return header;
}

// `next` gives the samples of the file one by one.
LoadedImage Convert(const NetpbmHeader& header, auto next) {
  const auto sample = [&] { return CheckedSample(next(), header.maximum); };
  LoadedImage loaded{Image(header.shape.rows, header.shape.cols), ImageFormat::kPgm, {}};
  bool coloured = false;
  bool transparent = false;
  for (std::uint8_t& grey : loaded.image.Samples()) {
    if (header.colour) {
      const Rgb pixel{sample(), sample(), sample()};
      coloured = coloured || !pixel.IsGrey();
      grey = LumaAsByte(pixel, header.maximum);
    } else {
      grey = ScaledToByte(sample(), header.maximum);
    }
    if (header.transparency && sample() < header.maximum) transparent = true;
  }
  loaded.alteration = Alteration(coloured, header.bits ? 255 : header.maximum, transparent);
  return loaded;
}

LoadedImage ReadPlain(const NetpbmHeader& header, PnmTokens& tokens) {
  // A digit each, and but for bits a white space between any two.
  RequireSamples(header.shape, tokens.Rest().size(),
                 header.bits ? header.Samples() : 2 * header.Samples() - 1);
  if (header.bits) return Convert(header, [&] { return 1 - tokens.Bit(); });
  return Convert(header, [&] { return tokens.Number(); });
}

LoadedImage ReadBits(const NetpbmHeader& header, ByteView samples) {
  const auto [rows, cols] = header.shape;
  const std::int64_t rowBytes = (std::int64_t{cols} + 7) / 8;
  RequireSamples(header.shape, samples.size(), rowBytes * rows);
  Image image(rows, cols);
  for (int row = 0; row < rows; ++row) {
    UnpackSamples(samples.subspan(static_cast<std::size_t>(row * rowBytes)), 1, image.Row(row));
  }
  for (std::uint8_t& sample : image.Samples()) sample = sample == 0 ? 255 : 0;
  return {std::move(image), ImageFormat::kPgm, {}};
}

LoadedImage ReadBinary(const NetpbmHeader& header, ByteView samples) {
  const bool wide = header.maximum > 255;
  RequireSamples(header.shape, samples.size(), header.Samples() * (wide ? 2 : 1));
  if (header.channels == 1 && header.maximum == 255) {
    return {RasterImage(samples, header.shape), ImageFormat::kPgm, {}};
  }
  std::size_t at = 0;
  const auto byte = [&] { return samples[at++]; };
  if (!wide) return Convert(header, byte);
  return Convert(header, [&] {
    const int high = byte();
    return high * 256 + byte();
  });
}

}  // namespace

std::uint32_t CheckedNetpbmMaximum(std::int64_t maximum) {
  if (maximum < 1 || maximum > 65535) {
    Fail(Errc::kMalformed, "The file has a maximum value of " + std::to_string(maximum) +
                               "; 1 to 65535 are allowed.");
  }
  return static_cast<std::uint32_t>(maximum);
}

LoadedImage ReadPnm(ByteView file, std::int64_t maxPixels) {
  if (file.size() > 1 && file[1] == '7') {
    const PamStart start = ReadPamStart(file, maxPixels);
    return ReadBinary(start.header, start.samples);
  }
  const Form form = FormOf(file);
  PnmTokens tokens(file.subspan(2));
  const NetpbmHeader header = TakeHeader(tokens, form, maxPixels);
  if (form.plain) return ReadPlain(header, tokens);
  return form.bits ? ReadBits(header, tokens.Rest()) : ReadBinary(header, tokens.Rest());
}

}  // namespace marovia
