// What Qt loads: lets every program on Qt open compressed files, as Qt reads images.
#include <QFileDevice>
#include <QFileInfo>
#include <QIODevice>
#include <QImage>
#include <QImageIOHandler>
#include <QImageIOPlugin>
#include <QSize>
#include <QVariant>
#include <algorithm>
#include <exception>
#include <limits>
#include <optional>

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

// The kind that an extension in either case names.
std::optional<FileKind> KindOfFormat(const QByteArray& format) {
  return KindOfExtension(format.toLower().toStdString());
}

// The kind that the next bytes of the device name; its position stays.
std::optional<FileKind> KindOfStart(QIODevice& device) {
  return KindOfContent(BytesOf(device.peek(kMostHeaderBytes)));
}

// Whether the device goes on with a header that a compressor of that kind writes; its position
// stays. Nothing in most files says what they are, but few other files have such sizes, levels and
// means.
bool LooksLike(QIODevice& device, FileKind kind) {
  return InfoOf(device, kind).has_value();
}

// As told, else by its first bytes, else by the name of the file; a stream without any is not
// claimed.
std::optional<FileKind> KindOf(QIODevice* device, const QByteArray& format) {
  if (!format.isEmpty()) return KindOfFormat(format);
  if (device != nullptr && device->isReadable())
    if (const auto kind = KindOfStart(*device)) return kind;
  const auto* file = qobject_cast<QFileDevice*>(device);
  return file == nullptr ? std::nullopt
                         : KindOfFormat(QFileInfo(file->fileName()).suffix().toUtf8());
}

class ImageHandler : public QImageIOHandler {
 public:
  explicit ImageHandler(FileKind kind) : kind_(kind) {}

  [[nodiscard]] bool canRead() const override;
  bool read(QImage* image) override;
  [[nodiscard]] bool supportsOption(ImageOption option) const override;
  [[nodiscard]] QVariant option(ImageOption option) const override;

 private:
  FileKind kind_;
};

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

}  // namespace

class ImagePlugin : public QImageIOPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "marovia.json")

 public:
  [[nodiscard]] Capabilities capabilities(QIODevice* device,
                                          const QByteArray& format) const override;
  [[nodiscard]] QImageIOHandler* create(QIODevice* device, const QByteArray& format) const override;
};

QImageIOPlugin::Capabilities ImagePlugin::capabilities(QIODevice* device,
                                                       const QByteArray& format) const {
  const auto kind = KindOf(device, format);
  if (!kind) return {};
  if (device != nullptr && device->isReadable() && !LooksLike(*device, *kind)) return {};
  return CanRead;
}

QImageIOHandler* ImagePlugin::create(QIODevice* device, const QByteArray& format) const {
  const auto kind = KindOf(device, format);
  if (!kind) return nullptr;
  auto* handler = new ImageHandler(*kind);  // NOLINT(cppcoreguidelines-owning-memory): Qt's to keep
  handler->setDevice(device);
  handler->setFormat(Extension(*kind).data());
  return handler;
}

}  // namespace marovia

#include "image_plugin.moc"
