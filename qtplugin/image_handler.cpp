#include "qtplugin/image_handler.h"

#include <QIODevice>
#include <QImage>
#include <QSize>
#include <QVariant>
#include <algorithm>
#include <exception>
#include <limits>

#include "marovia/codec.h"

namespace marovia {
namespace {

constexpr std::int64_t kAnySize = std::numeric_limits<std::int64_t>::max();

ByteView BytesOf(const QByteArray& content) {
  return {reinterpret_cast<const std::uint8_t*>(content.constData()),
          static_cast<std::size_t>(content.size())};
}

// From the header that the device goes on with; its position stays. Nothing where that is none of
// the kind. Qt has its own limit on sizes.
std::optional<FileInfo> InfoOf(QIODevice& device, FileKind kind) {
  try {
    const QByteArray start = device.peek(kMostHeaderBytes);
    return InspectStart(BytesOf(start), start.size(), kind, kAnySize);
  } catch (const std::exception&) {
    return {};
  }
}

QImage QImageOf(const Image& image, QImage result) {
  for (int r = 0; r < image.Rows(); ++r) std::ranges::copy(image.Row(r), result.scanLine(r));
  return result;
}

}  // namespace

std::optional<FileKind> KindOfFormat(const QByteArray& format) {
  return KindOfExtension(format.toLower().toStdString());
}

std::optional<FileKind> KindOfStart(QIODevice& device) {
  return KindOfContent(BytesOf(device.peek(kMostHeaderBytes)));
}

bool LooksLike(QIODevice& device, FileKind kind) {
  return InfoOf(device, kind).has_value();
}

bool ImageHandler::canRead() const {
  if (device() == nullptr || !LooksLike(*device(), kind_)) return false;
  setFormat(Extension(kind_).data());
  return true;
}

// A file cut short gives the picture that is left of it; of a long one no more is read than the
// picture can need.
bool ImageHandler::read(QImage* image) {
  const auto info = InfoOf(*device(), kind_);
  QImage result;
  // The coded image has less than four times its pixels, so Qt's limit bounds the work too.
  if (!info || !allocateImage({info->cols, info->rows}, QImage::Format_Grayscale8, &result))
    return false;
  try {
    const QByteArray content = device()->read(UsefulBytes(*info));
    const DecompressResult decoded =
        Decompress(BytesOf(content), kind_, {.rate = {}, .maxPixels = kAnySize, .onPass = {}});
    *image = QImageOf(decoded.image, std::move(result));
    return true;
  } catch (const std::exception&) {
    return false;
  }
}

bool ImageHandler::supportsOption(ImageOption option) const {
  return option == Size || option == ImageFormat;
}

QVariant ImageHandler::option(ImageOption option) const {
  if (option == ImageFormat) return QImage::Format_Grayscale8;
  if (option != Size || device() == nullptr) return {};
  const auto info = InfoOf(*device(), kind_);
  return info ? QVariant(QSize(info->cols, info->rows)) : QVariant();
}

}  // namespace marovia
