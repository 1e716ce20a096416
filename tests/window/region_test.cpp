#include "tests/window/window_test.h"

namespace marovia::test {
namespace {

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
