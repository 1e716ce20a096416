#include "bench/contestants.h"

#include <cmath>

#include "marovia/error.h"
#include "marovia/measures.h"

#include "bench/peers.h"

namespace marovia::bench {
namespace {

// Of an image without surprises at a quarter bit per pixel or more.
constexpr float kLeastPsnr = 25;
// A quality of JPEG does not hit a size, and rate control ends up to this far below it.
constexpr double kMostOff = 0.06;

using Contestants = std::vector<Contestant>;

void AddOurs(Contestants& contestants) {
  for (const FileKind kind : AllKinds()) {
    if (kind == FileKind::kAwg) continue;
    for (const double rate : kRates) {
      contestants.push_back(
          {std::string(Extension(kind)) + "/" + RateText(rate), rate,
           [=](const Image& image) { return Compress(image, {.kind = kind, .rate = rate}).file; },
           [=](ByteView file) { return Decompress(file, kind).image; }});
    }
  }
  for (const FileKind kind : {FileKind::kAwg, FileKind::kAwh}) {
    const CompressOptions options{
        .kind = kind, .wavelet = WaveletKind::kInteger53, .lossless = true};
    contestants.push_back({std::string(Extension(kind)), 0,
                           [=](const Image& image) { return Compress(image, options).file; },
                           [=](ByteView file) { return Decompress(file, kind).image; }});
  }
}

#ifdef MAROVIA_HAVE_OPENJPEG
void AddOpenJpeg(Contestants& contestants) {
  for (const double rate : kRates) {
    contestants.push_back({"openjpeg/" + RateText(rate), rate,
                           [=](const Image& image) {
                             const double bits = rate * static_cast<double>(image.Size());
                             return CompressOpenJpeg(image, std::lround(bits / 8));
                           },
                           DecompressOpenJpeg});
  }
  contestants.push_back({"openjpeg/lossless", 0, CompressOpenJpegLossless, DecompressOpenJpeg});
}
#endif

#ifdef MAROVIA_HAVE_JPEG
// The highest quality whose file has at most that many bytes.
int QualityFor(const Image& image, double bytes) {
  int fits = 1;
  for (int tooLarge = 101; tooLarge - fits > 1;) {
    const int middle = (fits + tooLarge) / 2;
    const auto size = static_cast<double>(CompressJpeg(image, middle).size());
    (size <= bytes ? fits : tooLarge) = middle;
  }
  return fits;
}

void AddJpeg(const Image& image, Contestants& contestants) {
  constexpr double kRate = 0.5;
  const int quality = QualityFor(image, kRate / 8 * static_cast<double>(image.Size()));
  contestants.push_back({"libjpeg-turbo/0.5", kRate,
                         [=](const Image& any) { return CompressJpeg(any, quality); },
                         DecompressJpeg});
}
#endif

void Try(const Contestant& contestant, const Image& image) {
  const Bytes file = contestant.compress(image);
  const ErrorMeasures errors = Measure(image, contestant.decompress(file));
  const double rate = 8.0 * static_cast<double>(file.size()) / static_cast<double>(image.Size());
  if (contestant.rate == 0 ? errors.psnr.has_value() : errors.psnr.value_or(0) < kLeastPsnr) {
    Fail(Errc::kMalformed, contestant.name + " does not give the image back.");
  }
  if (contestant.rate > 0 && std::abs(rate / contestant.rate - 1) > kMostOff) {
    Fail(Errc::kMalformed,
         contestant.name + " takes " + std::to_string(rate) + " bits per pixel instead.");
  }
}

}  // namespace

std::string RateText(double rate) {
  std::string text = std::to_string(rate);
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

std::vector<Contestant> ContestantsFor(const Image& image) {
  Contestants contestants;
  AddOurs(contestants);
#ifdef MAROVIA_HAVE_OPENJPEG
  AddOpenJpeg(contestants);
#endif
#ifdef MAROVIA_HAVE_CHARLS
  contestants.push_back({"charls", 0, CompressCharls, DecompressCharls});
#endif
#ifdef MAROVIA_HAVE_JPEG
  AddJpeg(image, contestants);
#endif
  for (const Contestant& contestant : contestants) Try(contestant, image);
  return contestants;
}

}  // namespace marovia::bench
