// What Qt loads: lets every program on Qt open compressed files by their extension.
#pragma once

#include <QImageIOPlugin>

namespace marovia {

class ImagePlugin : public QImageIOPlugin {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID QImageIOHandlerFactoryInterface_iid FILE "marovia.json")

 public:
  [[nodiscard]] Capabilities capabilities(QIODevice* device,
                                          const QByteArray& format) const override;
  [[nodiscard]] QImageIOHandler* create(QIODevice* device, const QByteArray& format) const override;
};

}  // namespace marovia
