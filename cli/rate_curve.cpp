#include "cli/rate_curve.h"

#include <algorithm>
#include <limits>

#include "marovia/measures.h"

#include "base/number_text.h"
#include "chart/line_chart.h"
#include "cli/values.h"

namespace marovia::cli {
namespace {

std::string LabelOf(const RateCurve& curve) {
  return std::string(Extension(curve.kind)) + "  " + std::string(NameOf(curve.wavelet));
}

// The kind of file gives the colour, the wavelet the dash. awg, which has no rates, leaves its
// colour to awh.
Curve DrawnCurve(const RateCurve& curve) {
  const FileKind colour = curve.kind == FileKind::kAwh ? FileKind::kAwg : curve.kind;
  Curve drawn{LabelOf(curve), {}, static_cast<int>(colour), static_cast<int>(curve.wavelet) - 1};
  for (const RatePoint& point : curve.points)
    if (point.psnr) drawn.points.push_back({point.rate, *point.psnr});
  return drawn;
}

}  // namespace

RateCurve MeasureCurve(const Image& image, FileKind kind, WaveletKind wavelet,
                       const std::vector<double>& rates) {
  CompressOptions compress;
  compress.kind = kind;
  compress.wavelet = wavelet;
  compress.rate = *std::ranges::max_element(rates);
  const Bytes file = Compress(image, compress).file;
  DecompressOptions decompress;
  decompress.maxPixels = std::numeric_limits<std::int64_t>::max();
  RateCurve curve{kind, wavelet, {}};
  for (const double rate : rates) {
    decompress.rate = rate;
    curve.points.push_back({rate, Measure(image, Decompress(file, kind, decompress).image).psnr});
  }
  return curve;
}

std::string TsvOf(const std::vector<RateCurve>& curves) {
  std::string text = "coder\twavelet\tbpp\tpsnr\n";
  for (const RateCurve& curve : curves) {
    for (const RatePoint& point : curve.points) {
      text += std::string(Extension(curve.kind)) + "\t" + std::string(NameOf(curve.wavelet)) +
              "\t" + TrimmedNumberText(point.rate) + "\t" +
              (point.psnr ? TrimmedNumberText(*point.psnr) : "inf") + "\n";
    }
  }
  return text;
}

std::string SvgOf(const std::vector<RateCurve>& curves, const std::string& title) {
  LineChart chart{title, "bits per pixel", "PSNR (dB)", {}};
  for (const RateCurve& curve : curves) chart.curves.push_back(DrawnCurve(curve));
  return SvgOf(chart);
}

}  // namespace marovia::cli
