#include "qtplugin/image_plugin.h"

#include <QFileDevice>
#include <QFileInfo>

#include "qtplugin/image_handler.h"

namespace marovia {
namespace {

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

}  // namespace

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
