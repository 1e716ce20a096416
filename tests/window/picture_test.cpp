#include <cmath>

#include "tests/window/window_test.h"

namespace marovia::test {

QPoint PixelOf(const PictureView& view, QPoint coordinate) {
  const QPointF middle = view.PositionOf(coordinate);
  return {static_cast<int>(std::floor(middle.x())), static_cast<int>(std::floor(middle.y()))};
}

void ExpectShows(const PictureView& view, const Image& raster) {
  ASSERT_EQ(raster.Rows(), 256);
  const QImage shown = const_cast<PictureView&>(view).grab().toImage();
  const double ratio = shown.devicePixelRatio();
  int wrong = 0;
  int seen = 0;
  for (int y = 0; y < shown.height(); ++y) {
    for (int x = 0; x < shown.width(); ++x) {
      const QPointF middle = QPointF(x + 0.5, y + 0.5) / ratio;
      const QPoint place = view.CoordinateAt(middle);
      const QPointF off = middle - view.PositionOf(place);
      // Outside the picture the nearest pixel lies further than half of one away.
      const double half = (view.PositionOf({2, 1}) - view.PositionOf({1, 1})).x() / 2;
      if (std::max(std::abs(off.x()), std::abs(off.y())) > half) continue;
      ++seen;
      wrong += qGray(shown.pixel(x, y)) != raster(place.y() - 1, place.x() - 1) ? 1 : 0;
    }
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(seen % (256 * 256), 0);
  EXPECT_GE(seen, 256 * 256);
}

namespace {

TEST_F(WindowTest, PicturesAreSharpAndMapBackExactlyAtEverySize) {
  Load(Photograph(512, 512));
  for (const QSize size :
       {QSize(800, 500), QSize(1000, 700), QSize(1500, 1000), QSize(2000, 1300)}) {
    window.resize(size);
    QApplication::processEvents();
    ExpectShows(Source(), Form().GraphBox.raster);
    for (int i = 1; i <= 256; ++i) {
      ASSERT_EQ(Source().CoordinateAt(Source().PositionOf({i, 257 - i})), QPoint(i, 257 - i));
    }
  }
  EXPECT_EQ(Source().CoordinateAt({-5, 9999}), QPoint(1, 256));
}

}  // namespace
}  // namespace marovia::test
