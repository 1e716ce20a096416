#include "window/picture_files.h"

#include <QImageWriter>

#include "codec/coders.h"
#include "image/raster.h"
#include "pictures/picture.h"
#include "window/make.h"

namespace marovia {
namespace {

std::optional<FileKind> KindOf(const QString& file) {
  return KindOfExtension(QFileInfo(file).suffix().toLower().toStdString());
}

Bytes BytesOf(const QString& file) {
  QFile from(file);
  if (!from.open(QIODevice::ReadOnly))
    Fail(Errc::kIo, (QFileInfo(file).fileName() + ": " + from.errorString()).toStdString());
  const QByteArray all = from.readAll();
  return {all.begin(), all.end()};
}

// By the toolkit, where the readers of this house know nothing of the file.
Picture ReadByToolkit(const QByteArray& bytes, const QString& name) {
  QBuffer buffer;
  buffer.setData(bytes);
  QImageReader reader(&buffer);
  reader.setDecideFormatFromContent(true);
  reader.setAutoTransform(true);
  constexpr int kMegabytes = 1024;
  QImageReader::setAllocationLimit(kMegabytes);
  const QImage picture = reader.read();
  if (picture.isNull())
    Fail(Errc::kUnsupported, (name + ": " + reader.errorString()).toStdString());
  const bool coloured = !picture.isGrayscale();
  return {GreyOf(picture), coloured ? "colour turned to grey" : "", {}};
}

// What the toolkit alone knows is left to it.
Picture ReadAny(const Bytes& bytes, const QString& name) {
  if (IsPicture(bytes)) return ReadPicture(bytes);
  return ReadByToolkit(
      QByteArray::fromRawData(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes)),
      name);
}

}  // namespace

Subject ReadSubject(const QString& file, const Recipe& recipe) {
  Subject subject{.name = QFileInfo(file).fileName(), .source = {}, .recipe = recipe, .file = {}};
  Bytes bytes = BytesOf(file);
  if (const auto kind = KindOf(file)) {
    subject.recipe = {.kind = *kind};
    subject.file = std::move(bytes);
    return subject;
  }
  Picture picture = ReadAny(bytes, subject.name);
  subject.source = std::make_shared<const Image>(std::move(picture.image));
  QStringList notes;
  if (!picture.alteration.empty()) notes += Text(picture.alteration);
  for (const std::string& notice : picture.notices) notes += Text(notice);
  subject.note = notes.join(", ");
  return subject;
}

Image GreyOf(const QImage& picture) {
  const QImage rgb = picture.convertToFormat(QImage::Format_RGB32);
  Image grey(rgb.height(), rgb.width(), Unfilled{});
  for (int r = 0; r < grey.Rows(); ++r) {
    const auto* pixels = reinterpret_cast<const QRgb*>(rgb.constScanLine(r));
    std::transform(pixels, pixels + grey.Cols(), grey.Row(r).begin(), [](QRgb pixel) {
      return LumaAsByte(
          {static_cast<std::uint32_t>(qRed(pixel)), static_cast<std::uint32_t>(qGreen(pixel)),
           static_cast<std::uint32_t>(qBlue(pixel))},
          255);
    });
  }
  return grey;
}

QString OpenFilter() {
  QString patterns = "*.pgm *.ppm *.bmp";
  for (const QByteArray& format : QImageReader::supportedImageFormats()) patterns += " *." + format;
  for (const FileKind kind : AllKinds()) patterns += " *." + Text(Extension(kind));
  return QCoreApplication::translate("Studio", "Images and compressed files (%1);;All files (*)")
      .arg(patterns);
}

QString PictureFilter() {
  QString filter = "PNG (*.png);;PGM (*.pgm);;BMP (*.bmp)";
  if (QImageWriter::supportedImageFormats().contains("tiff")) filter += ";;TIFF (*.tif *.tiff)";
  return filter;
}

void WriteBytes(const QString& file, ByteView bytes) {
  QSaveFile to(file);
  const bool written = to.open(QIODevice::WriteOnly) &&
                       to.write(reinterpret_cast<const char*>(bytes.data()), std::ssize(bytes)) ==
                           std::ssize(bytes) &&
                       to.commit();
  if (!written)
    Fail(Errc::kIo, (QFileInfo(file).fileName() + ": " + to.errorString()).toStdString());
}

void WritePicture(const QString& file, const Image& picture) {
  const QString suffix = QFileInfo(file).suffix().toLower();
  if (suffix == "pgm") return WriteBytes(file, WritePgm(picture));
  if (suffix == "bmp") return WriteBytes(file, WriteBmp(picture));
  QByteArray bytes;
  QBuffer buffer(&bytes);
  QImageWriter writer(&buffer, suffix.toLatin1());
  if (!writer.write(ShownImage(picture)))
    Fail(Errc::kIo, (QFileInfo(file).fileName() + ": " + writer.errorString()).toStdString());
  WriteBytes(file, {reinterpret_cast<const std::uint8_t*>(bytes.constData()),
                    static_cast<std::size_t>(bytes.size())});
}

}  // namespace marovia
