// What the form works out for its views: clicks, places in a picture, images compared.
#include "app/picture_place.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Views : public FormTest {};

TEST_F(Views, AClickSetsTheMarkAndRunsTheHandlerOfItsControl) {
  Load(Photograph(64, 64));
  form.Click(form.mnuCompress);
  EXPECT_EQ(form.PanelInView(), 1);
  form.Click(form.OpMethod[1]);
  form.Click(form.OpEntropyCode[1]);
  EXPECT_TRUE(form.OpMethod[1].selected && !form.OpMethod[0].selected);
  desktop.answers = {Path("a.awf")};
  form.Click(form.cmdBegin[0]);
  EXPECT_TRUE(std::filesystem::exists(Path("a.awf")));
  form.Click(form.OpDisplayImage);
  EXPECT_EQ(form.state.GraphBoxContent, 'I');
  EXPECT_TRUE(form.OpDisplayImage.selected && !form.OpDisplayTransform.selected);

  Drag(10, 10, 20, 20);
  form.Click(form.chkROIErrorOnly);
  EXPECT_FALSE(form.chkROIErrorOnly.checked);
  form.Click(form.mnuErrormeasures);
  EXPECT_EQ(form.PanelInView(), 2);
  form.Click(form.OpErrorMeasure[2]);
  form.Click(form.cmdBegin[1]);
  EXPECT_TRUE(form.Report.text.starts_with("Root Mean")) << form.Report.text;
}

TEST(PicturePlaces, EveryScreenPixelBelongsToOneCoordinate) {
  for (const int width : {100, 256, 261, 516, 1023, 1030}) {
    const PicturePlace place = PicturePlace::In(width, 777, 2);
    const int side = 256 * place.factor;
    EXPECT_LE(side + 4, std::max(width, 260));
    EXPECT_EQ(2 * place.left + side, width - width % 2);
    for (int x = 0; x < side; ++x)
      ASSERT_EQ(place.CoordinateAt(place.left + x + 0.99, place.top).col, x / place.factor + 1);
  }
  const PicturePlace place = PicturePlace::In(600, 600, 2);
  EXPECT_EQ(place.CoordinateAt(-1e9, 1e9).row - place.CoordinateAt(-1e9, 1e9).col, 255);
}

TEST(Comparisons, TellDifferencesAndReadPixelsOut) {
  Image source(2, 3, 100);
  Image other = source;
  other(1, 2) = 110;
  other(0, 0) = 60;
  const Comparison two(source, other, false);
  ASSERT_TRUE(two.HasTwo() && two.ShowsSource());
  const Image difference = two.Difference(8);
  EXPECT_EQ(difference(1, 2) * 1000000 + difference(0, 0) * 1000 + difference(0, 1), 208000128);
  EXPECT_EQ(two.ReadOut(1.9, 2.1),
            "Row 1, column 2:   source 100   reconstruction 110   difference 10");
  for (const auto& [down, across] : {std::pair{-0.1, 0.0}, {0.0, -0.1}, {2.0, 0.0}, {0.0, 3.0}})
    EXPECT_TRUE(two.ReadOut(down, across).starts_with("Point at")) << down << ' ' << across;

  const Comparison shapes(source, Image(4, 2, 7), false);
  EXPECT_FALSE(shapes.HasTwo() || shapes.ShowsSource());
  EXPECT_EQ(shapes.ReadOut(1, 1), "Row 1, column 1:   source 100   reconstruction 7");
  EXPECT_EQ(shapes.ReadOut(3, 1), "Row 3, column 1:   reconstruction 7");
  EXPECT_TRUE(Comparison(source, Image(4, 2), true).ShowsSource());
  EXPECT_TRUE(Comparison(source, Image(), false).ShowsSource());
  EXPECT_FALSE(Comparison(Image(), source, true).ShowsSource());
}

}  // namespace
}  // namespace marovia::test
