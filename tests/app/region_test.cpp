// The region of interest by mouse and by keys.
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class RegionOnPicture : public FormTest {
 protected:
  RegionOnPicture() { Load(Photograph(64, 128)); }

  // "row1 col1 row2 col2" in the image of what is in force, or "none".
  std::string Corners() {
    for (const bool mark : {form.chkROIErrorOnly.checked, form.chkROIErrorOnly.enabled,
                            form.GraphBox.outline.has_value()})
      EXPECT_EQ(mark, InForce());
    if (!InForce()) return "none";
    const Region region = form.GetROICoordinates();
    return std::to_string(region.row1) + " " + std::to_string(region.col1) + " " +
           std::to_string(region.row2) + " " + std::to_string(region.col2);
  }
  void Click(float x, float y) {
    form.GraphBox_MouseDown(kLeft, 0, x, y);
    form.GraphBox_MouseUp(kLeft, 0, x, y);
  }
};

TEST_F(RegionOnPicture, ADragInAnyDirectionGivesARectangleHeldToTheImageAndAClickTakesItAway) {
  struct Case {
    float x1, y1, x2, y2;
    const char* corners;
  };
  for (const auto& [x1, y1, x2, y2, corners] :
       {Case{40, 80, 100, 200, "20 20 50 50"}, Case{100, 80, 40, 200, "20 20 50 50"},
        Case{-50, 100, 900, 5000, "25 0 63 127"}, Case{101.4F, 50, 101.4F, 50, "12 50 12 50"}}) {
    Drag(x1, y1, x2, y2);
    EXPECT_EQ(Corners(), corners);
    EXPECT_EQ(form.GraphBox.outline->colour, (Colour{255, 255, 48}));
    EXPECT_EQ(form.GraphBox.outline->corners.row1, static_cast<int>(y1));
    Drag(1, 1, 30, 30);
    EXPECT_EQ(Corners(), "none");
  }
  Drag(40, 80, 100, 200);
  EXPECT_EQ(form.Report.text, "Upper left corner: (20, 20)\r\nLower right corner: (50, 50)");
  desktop.units = {15, 15};
  EXPECT_EQ(Corners(), "1 1 3 3");
}

TEST_F(RegionOnPicture, TheOutlineFollowsTheDragOfTheLeftButton) {
  form.GraphBox_MouseDown(kRight, 0, 5, 5);
  form.GraphBox_MouseUp(kRight, 0, 9, 9);
  EXPECT_EQ(Corners(), "none");
  form.GraphBox_MouseDown(kLeft, 0, 10, 20);
  EXPECT_FALSE(form.GraphBox.outline);
  form.GraphBox_MouseMove(kLeft, 0, 30, 50);
  EXPECT_TRUE(form.GraphBox.outline->corners.col2 == 30 && !InForce());
  // A mouse beyond 16 bits ends it.
  form.GraphBox_MouseMove(kLeft, 0, 40000, 1);
  EXPECT_TRUE(form.Report.text.starts_with("Overflow")) << form.Report.text;
  EXPECT_EQ(Corners(), "none");
}

TEST_F(RegionOnPicture, ADoubleClickTakesBackWhatItsFirstClickDid) {
  Click(50, 60);
  form.GraphBox_DblClick();
  EXPECT_EQ(Corners() + form.Report.text, "none");
  Drag(40, 80, 100, 200);
  form.chkROIErrorOnly.checked = false;
  const std::string report = form.Report.text;
  Click(1, 1);
  form.GraphBox_DblClick();
  form.GraphBox_DblClick();  // without a click before it
  EXPECT_TRUE(InForce() && form.GraphBox.outline && !form.chkROIErrorOnly.checked);
  EXPECT_EQ(form.Report.text, report);
}

TEST_F(RegionOnPicture, KeysDrawWithACrosshairThatStaysInThePicture) {
  const auto press = [this](PictureKey key, int times = 1) {
    for (int i = 0; i < times; ++i) form.GraphBox_KeyDown(key, times > 1);
    return form.GraphBox.crosshair.value_or(PicturePoint{-1, -1});
  };
  using enum PictureKey;
  desktop.units = {15, 15};
  EXPECT_EQ(press(kCorner), (PicturePoint{-1, -1}));
  EXPECT_EQ(press(kDown), (PicturePoint{128, 128}));
  EXPECT_EQ(press(kDown, 9), (PicturePoint{256, 128}));
  EXPECT_EQ(press(kLeft), (PicturePoint{256, 127}));
  press(kCorner);
  EXPECT_EQ(press(kUp), (PicturePoint{255, 127}));
  press(kRight);
  EXPECT_TRUE(form.GraphBox.outline->corners.row2 == 255 * 15 && !InForce());
  EXPECT_EQ(press(kCorner), (PicturePoint{-1, -1}));
  EXPECT_EQ(Corners(), "63 64 63 64");
  press(kUp, 20);
  EXPECT_EQ(press(kLeft, 20), (PicturePoint{0, 0}));
  press(kCorner, 3);
  EXPECT_EQ(Corners(), "0 0 0 0");
  // Whatever ends it in its middle leaves nothing.
  for (const bool leaves : {false, true}) {
    press(kUp);
    press(kCorner, InForce() ? 2 : 1);
    EXPECT_TRUE(form.GraphBox.outline);
    leaves ? form.GraphBox_LostFocus() : static_cast<void>(press(kGiveUp));
    EXPECT_EQ(Corners(), "none");
    EXPECT_FALSE(form.GraphBox.crosshair);
  }
}

TEST_F(RegionOnPicture, ItStaysInForceButHiddenWhileTheTransformShowsAndADragEnds) {
  Drag(20, 20, 200, 200);
  Compress(FileKind::kAwf, "1", "a.awf");
  EXPECT_TRUE(InForce() && !form.GraphBox.outline);
  Click(3, 3);  // only on the image
  form.OpDisplayImage_Click();
  EXPECT_NE(Corners(), "none");
  Click(3, 3);
  form.GraphBox_MouseDown(kLeft, 0, 10, 20);
  Compress(FileKind::kAwf, "1", "a.awf");
  form.GraphBox_MouseMove(kLeft, 0, 30, 50);
  form.OpDisplayImage_Click();
  form.GraphBox_MouseUp(kLeft, 0, 30, 50);
  EXPECT_EQ(Corners(), "none");
}

TEST_F(RegionOnPicture, ACompressionShowsTheMaskAndHoldsTheShare) {
  Load(Photograph(64, 64));
  Drag(100, 100, 140, 140);
  for (const auto& [text, held] :
       {std::pair{"-3", "0.01"}, {"1.5", "0.99"}, {"0", "0"}, {".5x", ".5x"}}) {
    form.txtROIPercent.text = text;
    Compress(FileKind::kAwb, "1", "a.awb");
    EXPECT_EQ(form.txtROIPercent.text, held) << text;
  }
  EXPECT_EQ(Reconstructed()(0, 0), 255);  // the low band is reached from everywhere
  EXPECT_EQ(Reconstructed()(63, 32), 0);  // a corner of the finest level is not
  Compress(FileKind::kAwg, "0", "a.awg");
  const Image back = marovia::Decompress(FileBytes(Path("a.awg")), FileKind::kAwg).image;
  EXPECT_EQ(Measure(*form.state.SourceImage, back, form.GetROICoordinates()).supNorm, 0);
  EXPECT_GT(Measure(*form.state.SourceImage, back).supNorm, 0);
}

}  // namespace
}  // namespace marovia::test
