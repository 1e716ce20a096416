// Any program on Qt: it knows the plugin only by the path on which Qt finds it.
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImageReader>
#include <QTemporaryDir>

#include "tests/support/testing.h"

namespace marovia {
namespace {

Image Pattern(int rows, int cols) {
  Image image(rows, cols);
  for (int r = 0; r < rows; ++r)
    for (int c = 0; c < cols; ++c) image(r, c) = static_cast<std::uint8_t>(r * 5 ^ c * 3);
  return image;
}

QByteArray Compressed(const Image& image, FileKind kind) {
  const WaveletKind wavelet =
      kind == FileKind::kAwg ? WaveletKind::kInteger53 : WaveletKind::kDaub97;
  const Bytes file = Compress(image, {.kind = kind, .wavelet = wavelet}).file;
  return {reinterpret_cast<const char*>(file.data()), static_cast<qsizetype>(file.size())};
}

class ImagePlugin : public testing::Test {
 protected:
  [[nodiscard]] QString Write(const QString& name, const QByteArray& content) const {
    QFile file(folder_.filePath(name));
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return file.fileName();
  }

 private:
  QTemporaryDir folder_;
};

TEST_F(ImagePlugin, ReadsEveryKindByItsExtensionAndSaysTheSizeBefore) {
  const Image image = Pattern(45, 70);  // padded
  for (const auto kind : {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                          FileKind::kAwg, FileKind::kAwc, FileKind::kAwh}) {
    const QByteArray file = Compressed(image, kind);
    const QString extension = Extension(kind).data();
    QImageReader reader(Write("a." + extension.toUpper(), file));
    EXPECT_TRUE(reader.canRead()) << extension.toStdString();
    EXPECT_EQ(reader.format(), extension.toUtf8());
    EXPECT_EQ(reader.size(), QSize(70, 45));
    const QImage read = reader.read();
    const DecompressResult decoded = Decompress(
        {reinterpret_cast<const std::uint8_t*>(file.data()), static_cast<std::size_t>(file.size())},
        kind);
    ASSERT_EQ(read.size(), QSize(70, 45)) << reader.errorString().toStdString();
    for (int r = 0; r < 45; ++r)
      for (int c = 0; c < 70; ++c) ASSERT_EQ(qGray(read.pixel(c, r)), decoded.image(r, c));
  }
}

TEST_F(ImagePlugin, ReadsFromMemoryWhereTheFormatIsToldAndLeavesTheFilesOfOthersAlone) {
  QByteArray file = Compressed(Pattern(64, 64), FileKind::kAwf);
  QBuffer buffer(&file);
  buffer.open(QIODevice::ReadOnly);
  EXPECT_EQ(QImageReader(&buffer, "awf").read().size(), QSize(64, 64));
  buffer.seek(0);
  EXPECT_FALSE(QImageReader(&buffer).canRead());  // nothing tells
  QBuffer named;
  named.setData(Compressed(Pattern(64, 64), FileKind::kAwh));
  named.open(QIODevice::ReadOnly);
  EXPECT_EQ(QImageReader(&named).read().size(), QSize(64, 64));
  // Speech bears one of the extensions.
  EXPECT_FALSE(QImageReader(Write("speech.awb", "#!AMR-WB\n" + QByteArray(200, '\x24'))).canRead());
  EXPECT_FALSE(QImageReader(Write("empty.awf", "")).canRead());
  QImage picture(20, 10, QImage::Format_Grayscale8);
  const QString name = Write("picture.awf", "");
  ASSERT_TRUE(picture.save(name, "png"));
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
    const qint64 count = QFile::readData(data, most);
    bytes += std::max<qint64>(count, 0);
    return count;
  }
};

TEST_F(ImagePlugin, ReadsNoMoreOfALongFileThanItsPictureNeeds) {
  const QByteArray content = Compressed(Pattern(64, 64), FileKind::kAwf);
  Counted file(Write("long.awf", content));
  ASSERT_TRUE(file.resize(qint64{3} << 30));
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  QImageReader reader(&file, "awf");
  EXPECT_EQ(reader.size(), QSize(64, 64));
  EXPECT_EQ(reader.read(), QImageReader(Write("whole.awf", content)).read());
  EXPECT_LT(file.bytes, 1 << 16);
}

TEST_F(ImagePlugin, GivesWhatIsLeftOfACutFileAndRefusesWhatIsTooLarge) {
  const QByteArray file = Compressed(Pattern(512, 512), FileKind::kAwf);
  EXPECT_EQ(QImageReader(Write("cut.awf", file.left(2000))).read().size(), QSize(512, 512));
  QByteArray forged = file;
  forged.replace(5, 4, QByteArray("\xFF\x7F\xFF\x7F", 4));
  QImageReader reader(Write("forged.awf", forged));
  EXPECT_TRUE(reader.read().isNull());
  EXPECT_FALSE(reader.errorString().isEmpty());
}

}  // namespace
}  // namespace marovia

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  qputenv("QT_PLUGIN_PATH", MAROVIA_QT_PLUGIN_PATH);
  testing::InitGoogleTest(&argc, argv);
  const QGuiApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
