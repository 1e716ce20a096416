#include <utility>

#include "app/frm_main.h"
#include "codec/compression.h"
#include "codec/decompression.h"
#include "format/geometry.h"
#include "wavelet/transform.h"

namespace marovia {

void frmMain::TransformTheImage() {
  RequireImage();
  const std::int16_t levels = SetNumberOfLevels();
  if (levels < 0) return;
  const Image& image = *state.SourceImage;
  const auto transform = [&](const Image& coded) {
    return marovia::TransformTheImage(coded, state.WaveletKind, levels);
  };
  state.TransformArray = transform(state.padToFit ? Padded(image, levels) : image);
  DisplayImageWaveletTransform();
}

void frmMain::InvertTheTransform() {
  RequireImage();
  const std::int16_t levels = SetNumberOfLevels();
  if (levels < 0) return;
  Grid<float> coefficients = *state.TransformArray;
  state.ReconstructedImage =
      Cropped(marovia::InvertTheTransformQuant(coefficients, state.WaveletKind, levels),
              {state.NumRows, state.NumCols});
  DisplayImage(1);
  DisplayImageRec();
}

const Grid<float>& frmMain::TransformTheImage(Compression& run) {
  const Grid<float>& coefficients = run.Transform();
  ShowCoefficients(coefficients);
  return coefficients;
}

const Grid<float>& frmMain::TransformTheImageLossless(Compression& run) {
  return TransformTheImage(run);
}

// A file can be decompressed before any image is loaded; there is no source to show then.
void frmMain::InvertTheTransformQuant(Decompression& run) {
  state.ReconstructedImage = run.Invert();
  if (!state.SourceImage->Empty()) DisplayImage(1);
  DisplayImageRec();
}

void frmMain::InvertTheTransformQuantLossless(Decompression& run) {
  InvertTheTransformQuant(run);
}

}  // namespace marovia
