// What the pictures show, and what is done on them.
#include <QCheckBox>

#include "tests/window/window_test.h"

namespace marovia::test {
namespace {

struct WholeRun {
  QSize window, image;
  const char* choice;  // of method and coding
  const char* rate;
  const char* file;
};

// Through load, compress, decompress, measure and save by the widgets alone.
TEST_F(WindowTest, ImagesOfManySizesGoThroughAWholeRunAndAreSharp) {
  for (const WholeRun& run : {WholeRun{{800, 500}, {500, 333}, "(1)", "0.5", "odd.awf"},
                              WholeRun{{2000, 1300}, {3, 5}, "(1)", "0", "tiny.awg"},
                              WholeRun{{1500, 1000}, {2048, 2048}, "(0)", "0.25", "large.awb"}}) {
    SCOPED_TRACE(run.file);
    window.resize(run.window);
    const Image source = Photograph(run.image.height(), run.image.width());
    Load(source);
    ExpectShows(Source(), Form().GraphBox.raster);
    EXPECT_GE(PlaceOfPicture(Source()).factor, run.window.width() / 800);
    Menu("mnuCompress");
    Choose(run.choice, run.rate);
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
    EXPECT_EQ(ReadImage(FileBytes(Path("saved.bmp").toStdString())).image, decoded);
  }
}

QColor PixelAt(QWidget& view, QPoint place) {
  return view.grab().toImage().pixelColor(PixelOf(view, place));
}

TEST_F(WindowTest, ADragOrKeysSetTheRectangleWhichShowsOnAnyGround) {
  const RegionDrag& region = Form().state.region;
  for (const std::uint8_t ground : {std::uint8_t{0}, std::uint8_t{255}}) {
    Load(Image(512, 512, ground));
    DragPicture({40, 50}, {100, 120});
    EXPECT_EQ(region.Corners(), (PictureRectangle{50, 40, 120, 100}));
    EXPECT_EQ(ReportText().toStdString(),
              "Upper left corner: (100, 80)\nLower right corner: (240, 200)");
    EXPECT_TRUE(Find<QCheckBox>("chkROIErrorOnly").isChecked());
    for (const QPoint line : {QPoint(40, 80), QPoint(70, 120)})
      EXPECT_EQ(PixelAt(Source(), line), QColor(255, 255, 48));
    for (const QPoint shade : {QPoint(39, 80), QPoint(41, 80)})
      EXPECT_LT(PixelAt(Source(), shade).lightness(), 80);
    EXPECT_EQ(PixelAt(Source(), {70, 80}), QColor(ground, ground, ground));
    QTest::mouseClick(&Source(), Qt::LeftButton, {}, PixelOf(Source(), {5, 5}));
    EXPECT_FALSE(region.IsInForce() || Find<QCheckBox>("chkROIErrorOnly").isEnabled());
  }
  QTest::keyClick(&Source(), Qt::Key_Left);
  QTest::keyClick(&Source(), Qt::Key_Up, Qt::ShiftModifier);
  for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Right, Qt::Key_Return})
    QTest::keyClick(&Source(), key);
  EXPECT_TRUE(region.IsInForce());
  EXPECT_EQ(region.Corners(), (PictureRectangle{112, 128, 112, 129}));
}

}  // namespace
}  // namespace marovia::test
