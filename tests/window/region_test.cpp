#include "tests/window/window_test.h"

namespace marovia::test {
namespace {

using WindowRegion = WindowTest;

QColor PixelAt(QWidget& view, QPoint place) {
  return view.grab().toImage().pixelColor(PixelOf(view, place));
}

TEST_F(WindowRegion, ADragSetsTheRectangleAndShowsItOnAnyGround) {
  for (const std::uint8_t ground : {std::uint8_t{0}, std::uint8_t{255}}) {
    Load(Image(512, 512, ground));
    DragPicture({40, 50}, {100, 120});
    const AppState& state = Form().state;
    EXPECT_EQ(state.ROISelected, 1);
    EXPECT_EQ((std::array{state.ROICol1, state.ROIRow1, state.ROICol2, state.ROIRow2}),
              (std::array<std::int16_t, 4>{40, 50, 100, 120}));
    EXPECT_EQ(ReportText().toStdString(),
              "Upper left corner: (100, 80)\nLower right corner: (240, 200)");
    EXPECT_TRUE(Find<QCheckBox>("chkROIErrorOnly").isChecked());
    EXPECT_EQ(PixelAt(Source(), {40, 80}), QColor(255, 255, 48));
    EXPECT_EQ(PixelAt(Source(), {70, 120}), QColor(255, 255, 48));
    EXPECT_LT(PixelAt(Source(), {39, 80}).lightness(), 80);
    EXPECT_LT(PixelAt(Source(), {41, 80}).lightness(), 80);
    EXPECT_EQ(PixelAt(Source(), {70, 80}), QColor(ground, ground, ground));

    QTest::mouseClick(&Source(), Qt::LeftButton, {}, PixelOf(Source(), {5, 5}));
    EXPECT_EQ(state.ROISelected, 0);
    EXPECT_FALSE(Find<QCheckBox>("chkROIErrorOnly").isEnabled());
  }
}

TEST_F(WindowRegion, ArrowsAndSpaceDrawWithoutAMouse) {
  Load(Photograph(256, 256));
  const auto press = [this](int key, Qt::KeyboardModifiers with = {}) {
    QTest::keyClick(&Source(), static_cast<Qt::Key>(key), with);
  };
  const AppState& state = Form().state;
  press(Qt::Key_Left);
  press(Qt::Key_Up, Qt::ShiftModifier);
  press(Qt::Key_Space);
  for (int i = 0; i < 3; ++i) press(Qt::Key_Right);
  EXPECT_EQ(state.ROISelected, 0);
  press(Qt::Key_Return);
  EXPECT_EQ(state.ROISelected, 1);
  EXPECT_EQ((std::array{state.ROICol1, state.ROIRow1, state.ROICol2, state.ROIRow2}),
            (std::array<std::int16_t, 4>{128, 112, 131, 112}));
}

}  // namespace
}  // namespace marovia::test
