#pragma once

#include "app/picture_place.h"
#include "window/binds.h"

namespace marovia {

// A view of the samples, which must outlive it; null for an empty image.
QImage ShownImage(const Image& image);

// A widget that shows one of the form's pictures, and tells the form what mouse and keys do on it.
// `open` is for a double-click, and for Enter where the form has no use for it; the placeholder
// stands in an empty picture.
QWidget* MakePicture(Binds& binds, const PictureBox& picture, const Binds::Handler& open,
                     const QString& placeholder);

// In pixels of the screen.
PicturePlace PlaceOfPicture(const QWidget& widget);

}  // namespace marovia
