// How good the pictures of an image are at many rates, from one compression.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "marovia/codec.h"

namespace marovia::cli {

struct RatePoint {
  double rate;                // bits per pixel
  std::optional<float> psnr;  // none where the picture is the image
};

struct RateCurve {
  FileKind kind;
  WaveletKind wavelet;
  std::vector<RatePoint> points;
};

// Compresses the image at the highest of the rates and decodes that file at each.
RateCurve MeasureCurve(const Image& image, FileKind kind, WaveletKind wavelet,
                       const std::vector<double>& rates);

// A line a point under a line of names, with tabs between; a PSNR without bound is "inf".
std::string TsvOf(const std::vector<RateCurve>& curves);

std::string SvgOf(const std::vector<RateCurve>& curves, const std::string& title);

}  // namespace marovia::cli
