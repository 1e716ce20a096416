#include "marovia/measures.h"

#include "tests/window/window_test.h"

namespace marovia::test {
namespace {

struct WholeRun {
  const char* what;
  int rows, cols;
  const char* method;
  const char* coding;
  const char* rate;
  const char* extension;
};

// Through load, compress, decompress, measure and save by the widgets alone.
TEST_F(WindowTest, ImagesOfManySizesGoThroughAWholeRun) {
  const WholeRun runs[] = {
      {"odd sides", 333, 500, "OpMethod(1)", "OpEntropyCode(1)", "0.5", "awf"},
      {"odd sides, lossless", 333, 500, "OpMethod(1)", "OpEntropyCode(1)", "0", "awg"},
      {"tiny", 5, 3, "OpMethod(0)", "OpEntropyCode(1)", "6", "awa"},
      {"tiny, lossless", 5, 3, "OpMethod(1)", "OpEntropyCode(1)", "0", "awg"},
      {"large", 2048, 2048, "OpMethod(0)", "OpEntropyCode(0)", "0.25", "awb"},
  };
  for (const WholeRun& run : runs) {
    SCOPED_TRACE(run.what);
    const Image source = Photograph(run.rows, run.cols);
    Load(source);
    ASSERT_EQ(*Form().state.SourceImage, source);
    ExpectShows(Source(), Form().GraphBox.raster);

    Menu("mnuCompress");
    Choose(run.method, run.coding, run.rate);
    // A decompressed file leaves its own number there.
    Type("txtLevels", "4");
    const QString file = Path(QString("%1.%2").arg(run.what, run.extension));
    AnswerFileQuestion(file);
    Click("cmdBegin(0)");
    ASSERT_TRUE(QFile::exists(file)) << ReportText().toStdString();
    EXPECT_TRUE(ReportText().endsWith("To decompress this file, press the GO button."));
    EXPECT_EQ(Find<QLabel>("Label(0)").text(), "Decompress");

    AnswerFileQuestion(file);
    Click("cmdBegin(0)");
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    const Image& decoded = *Form().state.ReconstructedImage;
    ASSERT_TRUE(decoded.SameShape(source)) << ReportText().toStdString();
    ExpectShows(Reconstruction(), Form().GraphBoxRec.raster);
    const ErrorMeasures measures = Measure(source, decoded);
    if (std::string(run.rate) == "0") {
      EXPECT_EQ(decoded, source);
    } else {
      EXPECT_GT(measures.psnr.value_or(99), 24);
    }

    Menu("mnuErrormeasures");
    Click("OpErrorMeasure(0)");
    Click("cmdBegin(1)");
    EXPECT_TRUE(ReportText().contains(QString::number(measures.supNorm)))
        << ReportText().toStdString();

    AnswerFileQuestion(Path("saved.bmp"));
    Menu("mnuSaveReconstructedImage");
    EXPECT_EQ(ReadImageFile(Path("saved.bmp").toStdString()), decoded);
  }
}

TEST_F(WindowTest, WithARegionItsPartIsSharper) {
  const Image source = Photograph(512, 512);
  Load(source);
  DragPicture({60, 60}, {120, 120});
  Menu("mnuCompress");
  Choose("OpMethod(1)", "OpEntropyCode(1)", "0.25");
  AnswerFileQuestion(Path("region.awf"));
  Click("cmdBegin(0)");
  // Enter in a box is Go.
  AnswerFileQuestion(Path("region.awf"));
  QTest::keyClick(&Find<QLineEdit>("txtBitRate"), Qt::Key_Return);
  const Image& decoded = *Form().state.ReconstructedImage;
  const Region region = Form().GetROICoordinates();
  EXPECT_GT(Measure(source, decoded, region).psnr.value_or(99),
            Measure(source, decoded).psnr.value_or(0) + 5);
}

}  // namespace
}  // namespace marovia::test
