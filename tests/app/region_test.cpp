// The region of interest by mouse and by keys.
#include "marovia/measures.h"

#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class RegionOnPicture : public FormTest {
 protected:
  RegionOnPicture() { Load(Photograph(64, 128)); }

  // "row1 col1 row2 col2" in the image.
  std::string Corners() {
    const Region region = form.GetROICoordinates();
    return std::to_string(region.row1) + " " + std::to_string(region.col1) + " " +
           std::to_string(region.row2) + " " + std::to_string(region.col2);
  }
  bool InForce() {
    EXPECT_EQ(form.state.ROISelected != 0, form.chkROIErrorOnly.checked);
    EXPECT_EQ(form.state.ROISelected != 0, form.chkROIErrorOnly.enabled);
    EXPECT_EQ(form.state.ROISelected != 0, form.GraphBox.outline.has_value());
    return form.state.ROISelected != 0;
  }
  void Click(float x, float y) {
    form.GraphBox_MouseDown(kLeft, 0, x, y);
    form.GraphBox_MouseUp(kLeft, 0, x, y);
  }
};

TEST_F(RegionOnPicture, ADragInAnyDirectionGivesTheSameRectangle) {
  const float corners[][4] = {
      {40, 80, 100, 200}, {100, 200, 40, 80}, {100, 80, 40, 200}, {40, 200, 100, 80}};
  for (const auto& [x1, y1, x2, y2] : corners) {
    Drag(x1, y1, x2, y2);
    EXPECT_TRUE(InForce());
    EXPECT_EQ(Corners(), "20 20 50 50");
    EXPECT_EQ(form.Report.text, "Upper left corner: (20, 20)\r\nLower right corner: (50, 50)");
    EXPECT_EQ(form.GraphBox.outline->colour, (Colour{255, 255, 48}));
    EXPECT_EQ(form.GraphBox.outline->corners.row1, static_cast<int>(y1));
    Click(1, 1);
    EXPECT_FALSE(InForce());
  }
}

TEST_F(RegionOnPicture, UnitsAreTurnedIntoPixelsAndHeldToTheImage) {
  Drag(-50, 100, 900, 5000);
  EXPECT_EQ(Corners(), "25 0 63 127");
  desktop.units = {15, 15};
  EXPECT_EQ(Corners(), "2 0 63 30");
}

TEST_F(RegionOnPicture, AClickSelectsOnePixelAndASecondOneRemovesIt) {
  Click(101.4F, 50);
  EXPECT_EQ(Corners(), "12 50 12 50");
  EXPECT_TRUE(InForce());
  form.GraphBox_MouseDown(kLeft, 0, 7, 7);
  EXPECT_FALSE(InForce());
  form.GraphBox_MouseMove(kLeft, 0, 30, 30);
  form.GraphBox_MouseUp(kLeft, 0, 30, 30);
  EXPECT_FALSE(InForce());
  Click(30, 30);
  EXPECT_TRUE(InForce());
}

TEST_F(RegionOnPicture, TheOutlineFollowsTheDragAndAnotherButtonDoesNothing) {
  form.GraphBox_MouseDown(kRight, 0, 5, 5);
  form.GraphBox_MouseMove(kRight, 0, 9, 9);
  form.GraphBox_MouseUp(kRight, 0, 9, 9);
  EXPECT_FALSE(InForce());
  form.GraphBox_MouseDown(kLeft, 0, 10, 20);
  form.GraphBox_MouseMove(kLeft, 0, 30, 50);
  ASSERT_TRUE(form.GraphBox.outline);
  EXPECT_EQ(form.GraphBox.outline->corners.col2, 30);
  EXPECT_EQ(form.state.ROISelected, 0);
  form.GraphBox_MouseUp(kLeft, 0, 60, 70);
  EXPECT_EQ(form.GraphBox.outline->corners.row2, 70);
}

TEST_F(RegionOnPicture, ADoubleClickTakesBackWhatItsFirstClickDid) {
  Click(50, 60);
  form.GraphBox_DblClick();
  EXPECT_FALSE(InForce());
  EXPECT_EQ(form.Report.text, "");
  Drag(40, 80, 100, 200);
  form.chkROIErrorOnly.checked = false;
  const std::string report = form.Report.text;
  Click(1, 1);
  form.GraphBox_DblClick();
  EXPECT_EQ(form.state.ROISelected, 1);
  EXPECT_TRUE(form.GraphBox.outline);
  EXPECT_EQ(Corners(), "20 20 50 50");
  EXPECT_FALSE(form.chkROIErrorOnly.checked);
  EXPECT_EQ(form.Report.text, report);
  form.GraphBox_DblClick();  // without a click before it
  EXPECT_EQ(form.state.ROISelected, 1);
}

TEST_F(RegionOnPicture, KeysDrawWithACrosshairThatStaysInThePicture) {
  const auto press = [this](PictureKey key, bool longStep = false) {
    return form.GraphBox_KeyDown(key, longStep);
  };
  desktop.units = {15, 15};
  EXPECT_FALSE(press(PictureKey::kCorner) || press(PictureKey::kGiveUp));
  EXPECT_TRUE(press(PictureKey::kDown));
  EXPECT_EQ(form.GraphBox.crosshair->row * 1000 + form.GraphBox.crosshair->col, 128128);
  for (int i = 0; i < 9; ++i) press(PictureKey::kDown, true);
  press(PictureKey::kLeft);
  EXPECT_EQ(form.GraphBox.crosshair->row * 1000 + form.GraphBox.crosshair->col, 256127);
  press(PictureKey::kCorner);
  press(PictureKey::kUp, true);
  press(PictureKey::kRight);
  EXPECT_EQ(form.GraphBox.outline->corners.row2, 240 * 15);
  EXPECT_EQ(form.state.ROISelected, 0);
  press(PictureKey::kCorner);
  EXPECT_TRUE(InForce());
  EXPECT_EQ(Corners(), "60 64 63 64");
  EXPECT_FALSE(form.GraphBox.crosshair);
  while (form.GraphBox.crosshair != PicturePoint{0, 0})
    press(PictureKey::kUp, true), press(PictureKey::kLeft, true);
  for (int i = 0; i < 3; ++i) press(PictureKey::kCorner);
  EXPECT_EQ(Corners(), "0 0 0 0");

  // Whatever ends it in its middle leaves nothing.
  const std::function<void()> ends[] = {[&] { press(PictureKey::kGiveUp); },
                                        [this] { form.GraphBox_LostFocus(); }};
  for (const auto& end : ends) {
    press(PictureKey::kUp);
    while (form.state.ROISelected != 0) press(PictureKey::kCorner);
    press(PictureKey::kCorner);
    EXPECT_TRUE(form.GraphBox.outline);
    end();
    EXPECT_FALSE(InForce());
    EXPECT_FALSE(form.GraphBox.crosshair);
  }
}

TEST_F(RegionOnPicture, ItStaysInForceButHiddenWhileTheTransformShows) {
  Drag(20, 20, 200, 200);
  Compress(FileKind::kAwf, "1", "a.awf");
  EXPECT_EQ(form.state.GraphBoxContent, 'T');
  EXPECT_FALSE(form.GraphBox.outline);
  EXPECT_EQ(form.state.ROISelected, 1);
  Click(3, 3);  // only on the image
  EXPECT_EQ(form.state.ROISelected, 1);
  form.OpDisplayImage_Click();
  EXPECT_TRUE(InForce());
}

TEST_F(RegionOnPicture, ADragEndsWhereThePictureShowsSomethingElse) {
  form.GraphBox_MouseDown(kLeft, 0, 10, 20);
  Compress(FileKind::kAwf, "1", "a.awf");
  form.GraphBox_MouseMove(kLeft, 0, 30, 50);
  form.OpDisplayImage_Click();
  EXPECT_FALSE(InForce());
  form.GraphBox_MouseUp(kLeft, 0, 30, 50);
  EXPECT_FALSE(InForce());
  EXPECT_EQ(form.state.ROIRow2, 0);
}

TEST_F(RegionOnPicture, AtARateOfZeroOnlyTheRegionIsExact) {
  Drag(100, 100, 140, 140);
  Compress(FileKind::kAwg, "0", "a.awg");
  const Image back = marovia::Decompress(FileBytes(Path("a.awg")), FileKind::kAwg).image;
  EXPECT_EQ(Measure(*form.state.SourceImage, back, form.GetROICoordinates()).supNorm, 0);
  EXPECT_GT(Measure(*form.state.SourceImage, back).supNorm, 0);
}

TEST_F(RegionOnPicture, ACompressionShowsTheMaskAndHoldsTheShare) {
  const std::pair<const char*, const char*> shares[] = {
      {"-3", "0.01"}, {"1.5", "0.99"}, {"0.99", "0.99"}, {"0", "0"}, {".5x", ".5x"}};
  for (const auto& [text, held] : shares) {
    Load(Photograph(64, 64));
    if (form.state.ROISelected == 0) Drag(100, 100, 140, 140);
    form.txtROIPercent.text = text;
    Compress(FileKind::kAwb, "1", "a.awb");
    EXPECT_EQ(form.txtROIPercent.text, held) << text;
    EXPECT_EQ(form.state.GraphBoxRecContent, 'I');
    const Image& mask = *form.state.ReconstructedImage;
    EXPECT_EQ(mask(0, 0), 255);  // the low band is reached from everywhere
    EXPECT_EQ(mask(63, 32), 0);  // a corner of the finest level is not
  }
}

TEST_F(RegionOnPicture, AMouseBeyondSixteenBitsEndsTheDragWithASentence) {
  form.GraphBox_MouseDown(kLeft, 0, 40000, 1);
  EXPECT_TRUE(form.Report.text.starts_with("Overflow")) << form.Report.text;
  EXPECT_FALSE(InForce());
  Drag(20, 20, 30, 30);
  EXPECT_TRUE(InForce());
}

}  // namespace
}  // namespace marovia::test
