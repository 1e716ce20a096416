// Any program on Qt: it knows the plugin only by the path on which Qt finds it.
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>

#include "tests/support/testing.h"

namespace marovia::test {
namespace {

Bytes Compressed(const Image& image, FileKind kind = FileKind::kAwf) {
  return Compress(image, {.kind = kind}).file;
}

class ImagePlugin : public testing::Test {
 protected:
  [[nodiscard]] QString Written(const std::string& name, ByteView content) const {
    WriteFile(folder_.Path(name), content);
    return QString::fromStdString(folder_.Path(name));
  }

  TemporaryFolder folder_;
};

TEST_F(ImagePlugin, ReadsEveryKindByItsExtensionAndSaysTheSizeBefore) {
  const Image image = Photograph(45, 70);  // padded
  for (const FileKind kind : AllKinds()) {
    const Bytes file = Compressed(image, kind);
    const QString extension = Extension(kind).data();
    QImageReader reader(Written("a." + extension.toUpper().toStdString(), file));
    EXPECT_TRUE(reader.canRead() && reader.format() == extension) << extension.toStdString();
    EXPECT_EQ(reader.size(), QSize(70, 45));
    const QImage read = reader.read();
    const Image decoded = Decompress(file, kind).image;
    ASSERT_EQ(read.size(), QSize(70, 45)) << reader.errorString().toStdString();
    for (int r = 0; r < 45; ++r)
      for (int c = 0; c < 70; ++c) ASSERT_EQ(qGray(read.pixel(c, r)), decoded(r, c));
  }
}

TEST_F(ImagePlugin, ReadsFromMemoryWhatIsKnownAndLeavesTheFilesOfOthersAlone) {
  for (const FileKind kind : {FileKind::kAwf, FileKind::kAwh}) {
    const Bytes file = Compressed(Photograph(64, 64), kind);
    QBuffer buffer;
    buffer.setData(reinterpret_cast<const char*>(file.data()), static_cast<int>(file.size()));
    buffer.open(QIODevice::ReadOnly);
    // Without its name only one kind is known.
    EXPECT_EQ(QImageReader(&buffer).canRead(), kind == FileKind::kAwh);
    EXPECT_EQ(QImageReader(&buffer, Extension(kind).data()).read().size(), QSize(64, 64));
  }
  // Speech bears one of the extensions.
  const std::string speech = "#!AMR-WB\n" + std::string(200, '\x24');
  EXPECT_FALSE(QImageReader(Written("speech.awb", BytesOf(speech))).canRead());
  const QString name = Written("picture.awf", {});
  EXPECT_FALSE(QImageReader(name).canRead());
  ASSERT_TRUE(QImage(20, 10, QImage::Format_Grayscale8).save(name, "png"));
  // By content too, as viewers do who do not trust names.
  for (const bool byContent : {false, true}) {
    QImageReader reader(name);
    reader.setDecideFormatFromContent(byContent);
    EXPECT_EQ(reader.read().size(), QSize(20, 10));
  }
}

// What is asked of a device, and no more, is read.
class Counted : public QFile {
 public:
  using QFile::QFile;
  qint64 bytes = 0;

 protected:
  qint64 readData(char* data, qint64 most) override {
    bytes += most;
    return QFile::readData(data, most);
  }
};

TEST_F(ImagePlugin, ReadsNoMoreOfALongFileThanItsPictureNeedsAndWhatIsLeftOfACutOne) {
  const Bytes content = Compressed(Photograph(64, 64));
  Counted file(Written("long.awf", content));
  ASSERT_TRUE(file.resize(qint64{3} << 30));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  EXPECT_EQ(QImageReader(&file, "awf").read(), QImageReader(Written("a.awf", content)).read());
  EXPECT_LT(file.bytes, 1 << 17);
  EXPECT_EQ(QImageReader(Written("cut.awf", ByteView(content).first(99))).read().height(), 64);
  Bytes forged = content;
  for (const std::size_t at : {5U, 7U}) forged[at] = 0xFF, forged[at + 1] = 0x7F;
  QImageReader reader(Written("forged.awf", forged));
  EXPECT_TRUE(reader.read().isNull() && !reader.errorString().isEmpty());
}

}  // namespace
}  // namespace marovia::test

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_PLUGIN_PATH", MAROVIA_QT_PLUGIN_PATH);
  testing::InitGoogleTest(&argc, argv);
  const QGuiApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
