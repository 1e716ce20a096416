// Compressed files as Qt reads images.
#pragma once

#include <QImageIOHandler>
#include <optional>

#include "marovia/types.h"

namespace marovia {

// The kind that an extension in either case names.
std::optional<FileKind> KindOfFormat(const QByteArray& format);

// The kind that the next bytes of the device name; its position stays.
std::optional<FileKind> KindOfStart(QIODevice& device);

// Whether the device goes on with a header that a compressor of that kind writes; its position
// stays. Nothing in most files says what they are, but few other files have such sizes, levels and
// means.
bool LooksLike(QIODevice& device, FileKind kind);

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

}  // namespace marovia
