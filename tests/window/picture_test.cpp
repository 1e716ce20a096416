#include <cmath>

#include "tests/window/window_test.h"

namespace marovia::test {

QPoint PixelOf(const QWidget& picture, QPoint coordinate) {
  const auto [left, top, factor] = PlaceOfPicture(picture);
  const QPointF pixel = QPointF(left, top) + (QPointF(coordinate) - QPointF(0.5, 0.5)) * factor;
  const QPointF middle = pixel / picture.devicePixelRatioF();
  return {static_cast<int>(std::floor(middle.x())), static_cast<int>(std::floor(middle.y()))};
}

void ExpectShows(QWidget& picture, const Image& raster) {
  ASSERT_EQ(raster.Rows(), 256);
  const QImage shown = picture.grab().toImage();
  const PicturePlace place = PlaceOfPicture(picture);
  const int side = 256 * place.factor;
  int wrong = 0;
  for (int y = place.top; y < place.top + side; ++y) {
    for (int x = place.left; x < place.left + side; ++x) {
      const PicturePoint at = place.CoordinateAt(x + 0.5, y + 0.5);
      wrong += qGray(shown.pixel(x, y)) != raster(at.row - 1, at.col - 1) ? 1 : 0;
    }
  }
  EXPECT_EQ(wrong, 0);
}

namespace {

TEST_F(WindowTest, PicturesAreSharpAtEverySize) {
  Load(Photograph(512, 512));
  for (const QSize size :
       {QSize(800, 500), QSize(1000, 700), QSize(1500, 1000), QSize(2000, 1300)}) {
    window.resize(size);
    QApplication::processEvents();
    ExpectShows(Source(), Form().GraphBox.raster);
    EXPECT_GE(PlaceOfPicture(Source()).factor, size.width() / 800);
  }
}

}  // namespace
}  // namespace marovia::test
