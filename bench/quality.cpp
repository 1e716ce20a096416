#include "bench/quality.h"

#include <array>
#include <cstdio>

#include "marovia/measures.h"

#include "bench/contestants.h"
#include "bench/peers.h"

namespace marovia::bench {
namespace {

std::string Fixed(double value, const char* format) {
  std::array<char, 64> text{};
  const int length = std::snprintf(text.data(), text.size(), format, value);
  return {text.data(), static_cast<std::size_t>(length)};
}

Row RowOf(const Source& source, const std::string& coder, const std::string& wavelet,
          const std::string& rate, const Bytes& file, const Image& back) {
  const auto psnr = Measure(source.image, back).psnr;
  return {source.name,
          std::to_string(source.image.Cols()) + "x" + std::to_string(source.image.Rows()),
          coder,
          wavelet,
          rate,
          std::to_string(file.size()),
          psnr ? Fixed(*psnr, "%.2f") : "exact"};
}

Row OurRow(const Source& source, const CompressOptions& options, const std::string& wavelet,
           const std::string& rate) {
  const Bytes file = Compress(source.image, options).file;
  return RowOf(source, std::string(Extension(options.kind)), wavelet, rate, file,
               Decompress(file, options.kind).image);
}

void AddLossy(const Source& source, double rate, std::vector<Row>& rows) {
  auto bytes = static_cast<std::int64_t>(rate * static_cast<double>(source.image.Size()) / 8);
  std::vector<Row> peers;
#ifdef MAROVIA_HAVE_OPENJPEG
  const Bytes file = CompressOpenJpeg(source.image, bytes);
  bytes = static_cast<std::int64_t>(file.size());
  peers.push_back(RowOf(source, "OpenJPEG", "9/7", RateText(rate), file, DecompressOpenJpeg(file)));
#endif
  for (const FileKind kind : AllKinds()) {
    if (kind == FileKind::kAwg) continue;
    rows.push_back(OurRow(source, {.kind = kind, .bytes = bytes}, "9/7", RateText(rate)));
  }
  rows.insert(rows.end(), peers.begin(), peers.end());
}

std::string RateOf(const Bytes& file, const Image& image) {
  return Fixed(8.0 * static_cast<double>(file.size()) / static_cast<double>(image.Size()), "%.3f");
}

void AddLossless(const Source& source, std::vector<Row>& rows) {
  const auto add = [&](const std::string& coder, const std::string& wavelet, const Bytes& file,
                       const Image& back) {
    rows.push_back(RowOf(source, coder, wavelet, RateOf(file, source.image), file, back));
  };
  for (const FileKind kind : {FileKind::kAwg, FileKind::kAwh}) {
    for (const auto& [wavelet, name] :
         {std::pair(WaveletKind::kInteger53, "5/3"), std::pair(WaveletKind::kInteger22, "2+2,2")}) {
      const Bytes file =
          Compress(source.image, {.kind = kind, .wavelet = wavelet, .lossless = true}).file;
      add(std::string(Extension(kind)), name, file, Decompress(file, kind).image);
    }
  }
#ifdef MAROVIA_HAVE_CHARLS
  const Bytes charls = CompressCharls(source.image);
  add("CharLS", "-", charls, DecompressCharls(charls));
#endif
#ifdef MAROVIA_HAVE_OPENJPEG
  const Bytes openJpeg = CompressOpenJpegLossless(source.image);
  add("OpenJPEG", "5/3", openJpeg, DecompressOpenJpeg(openJpeg));
#endif
#ifdef MAROVIA_HAVE_JXL
  for (const int effort : {3, 7}) {
    const Bytes jxl = CompressJpegXl(source.image, effort);
    add("JPEG XL e" + std::to_string(effort), "-", jxl, DecompressJpegXl(jxl));
  }
#endif
}

}  // namespace

std::vector<Row> QualityRows(const Source& source) {
  std::vector<Row> rows;
  for (const double rate : kRates) AddLossy(source, rate, rows);
  AddLossless(source, rows);
  return rows;
}

}  // namespace marovia::bench
