#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "marovia/error.h"
#include "marovia/image.h"

#include "image/formats.h"
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
};

struct Header {
  Form form;
  Shape shape;
  std::uint32_t maximum = 0;

  [[nodiscard]] std::int64_t Samples() const { return shape.Pixels() * (form.colour ? 3 : 1); }
};

Form FormOf(ByteView file) {
  const char digit = file.size() < 2 ? ' ' : static_cast<char>(file[1]);
  switch (digit) {
    case '2':
      return {.plain = true, .colour = false};
    case '3':
      return {.plain = true, .colour = true};
    case '5':
      return {.plain = false, .colour = false};
    case '6':
      return {.plain = false, .colour = true};
    case '1':
    case '4':
    case '7':
    case 'F':
    case 'f':
      Fail(Errc::kUnsupported, std::string("The file is of the Netpbm format P") + digit +
                                   "; P2, P3, P5 and P6 are read.");
    default:
      Fail(Errc::kMalformed, "The file begins with P, but not as a Netpbm file does.");
  }
}

std::uint32_t CheckedMaximum(std::int64_t maximum) {
  if (maximum < 1 || maximum > 65535) {
    Fail(Errc::kMalformed, "The file has a maximum value of " + std::to_string(maximum) +
                               "; 1 to 65535 are allowed.");
  }
  return static_cast<std::uint32_t>(maximum);
}

std::uint32_t CheckedSample(std::int64_t sample, std::uint32_t maximum) {
  if (sample > maximum) {
    Fail(Errc::kMalformed, "The file has a sample of " + std::to_string(sample) +
                               ", above its maximum value of " + std::to_string(maximum) + ".");
  }
  return static_cast<std::uint32_t>(sample);
}

Header TakeHeader(PnmTokens& tokens, Form form, std::int64_t maxPixels) {
  const std::int64_t cols = tokens.Number();
  const std::int64_t rows = tokens.Number();
  return {form, CheckedShape(rows, cols, maxPixels), CheckedMaximum(tokens.Number())};
}

// `next` gives the samples of the file one by one.
LoadedImage Convert(const Header& header, auto next) {
  const auto sample = [&] { return CheckedSample(next(), header.maximum); };
  LoadedImage loaded{Image(header.shape.rows, header.shape.cols), ImageFormat::kPgm, {}};
  bool coloured = false;
  for (std::uint8_t& grey : loaded.image.Samples()) {
    if (header.form.colour) {
      const Rgb pixel{sample(), sample(), sample()};
      coloured = coloured || !pixel.IsGrey();
      grey = LumaAsByte(pixel, header.maximum);
    } else {
      grey = ScaledToByte(sample(), header.maximum);
    }
  }
  loaded.alteration = Alteration(coloured, header.maximum);
  return loaded;
}

LoadedImage ReadPlain(const Header& header, PnmTokens& tokens) {
  // A digit each, and a white space between any two.
  RequireSamples(header.shape, tokens.Rest().size(), 2 * header.Samples() - 1);
  return Convert(header, [&] { return tokens.Number(); });
}

LoadedImage ReadBinary(const Header& header, ByteView samples) {
  const bool wide = header.maximum > 255;
  RequireSamples(header.shape, samples.size(), header.Samples() * (wide ? 2 : 1));
  if (!header.form.colour && header.maximum == 255) {
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

LoadedImage ReadPnm(ByteView file, std::int64_t maxPixels) {
  const Form form = FormOf(file);
  PnmTokens tokens(file.subspan(2));
  const Header header = TakeHeader(tokens, form, maxPixels);
  return form.plain ? ReadPlain(header, tokens) : ReadBinary(header, tokens.Rest());
}

}  // namespace marovia
