#include "marovia/measures.h"

#include "tests/window/window_test.h"

namespace marovia::test {
namespace {

struct WholeRun {
  int rows, cols;
  const char* method;
  const char* coding;
  const char* rate;
  const char* file;
};

// Through load, compress, decompress, measure and save by the widgets alone.
TEST_F(WindowTest, ImagesOfManySizesGoThroughAWholeRun) {
  for (const WholeRun& run :
       {WholeRun{333, 500, "OpMethod(1)", "OpEntropyCode(1)", "0.5", "odd.awf"},
        WholeRun{5, 3, "OpMethod(1)", "OpEntropyCode(1)", "0", "tiny.awg"},
        WholeRun{2048, 2048, "OpMethod(0)", "OpEntropyCode(0)", "0.25", "large.awb"}}) {
    SCOPED_TRACE(run.file);
    const Image source = Photograph(run.rows, run.cols);
    Load(source);
    ExpectShows(Source(), Form().GraphBox.raster);
    Menu("mnuCompress");
    Choose(run.method, run.coding, run.rate);
    Type("txtLevels", "4");
    GoUnder(run.file);
    EXPECT_TRUE(ReportText().endsWith("To decompress this file, press the GO button."));
    // Enter in a box is Go.
    AnswerFileQuestion(Path(run.file));
    QTest::keyClick(&Find<QLineEdit>("txtBitRate"), Qt::Key_Return);
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
    const Image& decoded = *Form().state.ReconstructedImage;
    ASSERT_TRUE(decoded.SameShape(source)) << ReportText().toStdString();
    ExpectShows(Reconstruction(), Form().GraphBoxRec.raster);
    const ErrorMeasures measures = Measure(source, decoded);
    EXPECT_GT(measures.psnr.value_or(99), run.rate[1] == 0 ? 98 : 24);
    Menu("mnuErrormeasures");
    Click("OpErrorMeasure(0)");
    Click("cmdBegin(1)");
    EXPECT_TRUE(ReportText().contains(QString::number(measures.supNorm)));
    AnswerFileQuestion(Path("saved.bmp"));
    Menu("mnuSaveReconstructedImage");
    EXPECT_EQ(ReadImageFile(Path("saved.bmp").toStdString()), decoded);
  }
}

}  // namespace
}  // namespace marovia::test
