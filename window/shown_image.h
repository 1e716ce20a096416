#pragma once

#include <QImage>

#include "marovia/image.h"

namespace marovia {

// A view of the samples, which must outlive it; null for an empty image.
inline QImage ShownImage(const Image& image) {
  if (image.Empty()) return {};
  return {image.Samples().data(), image.Cols(), image.Rows(), image.Cols(),
          QImage::Format_Grayscale8};
}

}  // namespace marovia
