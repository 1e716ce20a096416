#include <csignal>
#include <sys/resource.h>

#include "tests/window/window_test.h"

namespace marovia::test {
namespace {

// While it lives a file takes so many bytes and no more, as on a disk that is nearly full.
class NearlyFullDisk {
 public:
  explicit NearlyFullDisk(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit small{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~NearlyFullDisk() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, signal_);
  }
  NearlyFullDisk(const NearlyFullDisk&) = delete;
  NearlyFullDisk& operator=(const NearlyFullDisk&) = delete;

 private:
  rlimit before_{};
  decltype(SIG_IGN) signal_ = std::signal(SIGXFSZ, SIG_IGN);
};

TEST_F(WindowTest, WhatCannotBeReadOrWrittenIsNamedAndHarmsNothing) {
  const Image source = Photograph(64, 64);
  Load(source);
  const auto compressTo = [this](const QString& name) {
    Menu("mnuCompress");
    Choose("OpMethod(1)", "OpEntropyCode(1)", "0");
    AnswerFileQuestion(Path(name));
    Click("cmdBegin(0)");
  };
  const auto expectNamed = [this](const QString& name) {
    EXPECT_TRUE(ReportText().contains(name)) << ReportText().toStdString();
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
  };
  ASSERT_TRUE(QFile::link("/dev/full", Path("full.awg")));
  compressTo("full.awg");
  expectNamed("full.awg");
  EXPECT_TRUE(QFileInfo(Path("full.awg")).isSymLink());

  compressTo("good.awg");
  AnswerFileQuestion(Path("good.awg"));
  Click("cmdBegin(0)");
  AnswerFileQuestion(Path("kept.bmp"));
  Menu("mnuSaveReconstructedImage");
  {
    const NearlyFullDisk disk(1000);
    AnswerFileQuestion(Path("kept.bmp"));
    Menu("mnuSaveReconstructedImage");
    EXPECT_TRUE(asked);
    expectNamed("kept.bmp");
  }
  EXPECT_EQ(ReadImageFile(Path("kept.bmp").toStdString()), source);

  QDir(folder.path()).mkdir("folder.awg");
  QFile good(Path("good.awg"));
  ASSERT_TRUE(good.open(QIODevice::ReadOnly));
  const std::pair<QString, QByteArray> bad[] = {{"cut.awg", good.read(5)}, {"garbage.bmp", "BM?"}};
  for (const auto& [name, bytes] : bad) {
    QFile file(Path(name));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
  }
  for (const QString& name : QStringList{"folder.awg", "cut.awg", "garbage.bmp", "missing.pgm",
                                         QString(300, 'n') + ".awg"}) {
    window.OpenFile(Path(name).toStdString());
    expectNamed(name);
  }
  EXPECT_EQ(*Form().state.SourceImage, source);
  EXPECT_EQ(*Form().state.ReconstructedImage, source);

  window.OpenFile(Path("good.awg").toStdString());
  EXPECT_EQ(*Form().state.ReconstructedImage, source);
}

}  // namespace
}  // namespace marovia::test
