// What the form works out for its views: clicks, places in a picture, images compared.
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Views : public FormTest {};

TEST_F(Views, BeginWithThePublicSetOfFunctions) {
  EXPECT_EQ(form.Label[0].caption + form.cmbWavelet.text, "Compress/DecompressDD 5/3 Integer");
  EXPECT_EQ(form.cmbWavelet.list,
            (std::vector<std::string>{"DD 5/3 Integer", "DD 2+2,2 Integer", "Daub 9/7"}));
  for (const Control& hidden : {Control(form.mnuTransformImage), Control(form.OpMethod[2])})
    EXPECT_FALSE(hidden.visible || hidden.enabled) << hidden.name;
  for (const Control& disabled : {Control(form.mnuCompress), Control(form.mnuDecompress),
                                  Control(form.OpDisplayTransform), Control(form.chkROIErrorOnly)})
    EXPECT_TRUE(disabled.visible && !disabled.enabled) << disabled.name;
  EXPECT_EQ(form.OpMethod[1].place.top, form.Label2.place.top);
}

TEST_F(Views, ShowThePanelOfEachModeAndItsFramesOneBelowTheOther) {
  struct Case {
    const MenuItem& item;
    int panel;
    const char* caption;
    bool frames[3];
  };
  EXPECT_EQ(form.PanelInView(), 0);
  EXPECT_EQ(form.frProc[0].place.top, 2 * form.Frame2.place.height);
  for (const Case& mode : {Case{form.mnuCompress, 1, "Compress", {false, true, true}},
                           Case{form.mnuErrormeasures, 2, "Compress", {false, true, true}},
                           Case{form.mnuTransformImage, 1, "Transform", {true, false, false}},
                           Case{form.mnuDecompress, 1, "Decompress", {false, true, true}}}) {
    form.Click(mode.item);
    EXPECT_EQ(form.PanelInView(), mode.panel) << mode.item.name;
    EXPECT_EQ(form.Label[0].caption, mode.caption);
    int top = 0;
    for (std::size_t i = 0; i < 3; ++i) {
      EXPECT_EQ(form.Frame[i].visible, mode.frames[i]) << mode.item.name << i;
      if (!mode.frames[i]) continue;
      EXPECT_EQ(form.Frame[i].place.top, top);
      top += form.Frame[i].place.height;
    }
  }
  form.Click(form.mnuHelp);
  EXPECT_EQ(desktop.help, "/programs/marovia/Marovia.HLP 3");
}

TEST_F(Views, AClickSetsTheMarkOfItsControl) {
  Load(Photograph(64, 64));
  form.Click(form.OpMethod[1]);
  EXPECT_TRUE(form.OpMethod[1].selected && !form.OpMethod[0].selected);
  Drag(10, 10, 20, 20);
  form.Click(form.chkROIErrorOnly);
  form.Click(form.OpErrorMeasure[2]);
  form.Click(form.cmdBegin[1]);
  EXPECT_TRUE(form.Report.text.starts_with("Root Mean")) << form.Report.text;
}

TEST_F(Views, KeysByTheirNamesDrawOnTheSourceAndOtherwiseEnterOpensTheStudio) {
  EXPECT_TRUE(form.Picture_KeyDown(form.GraphBox, "Return", false));
  form.Picture_DblClick(form.GraphBox);
  EXPECT_TRUE(desktop.studios.empty() && !form.cmdStudio.enabled);
  Load(Photograph(256, 256));
  for (const char* key : {"Space", "A"})
    EXPECT_FALSE(form.Picture_KeyDown(form.GraphBox, key, false)) << key;
  EXPECT_FALSE(form.Picture_KeyDown(form.GraphBoxRec, "Left", false));
  for (const char* key : {"Left", "Up", "Space", "Right", "Down", "Enter"})
    EXPECT_TRUE(form.Picture_KeyDown(form.GraphBox, key, true)) << key;
  const auto& [row1, col1, row2, col2] = form.GraphBox.outline->corners;
  EXPECT_EQ((std::array<int, 4>{row1, col1, row2, col2}), (std::array{112, 128, 128, 144}));
  EXPECT_TRUE(!form.Picture_KeyDown(form.GraphBox, "Esc", false) && desktop.studios.empty());

  EXPECT_TRUE(form.Picture_KeyDown(form.GraphBox, "Enter", false));
  EXPECT_TRUE(form.Picture_KeyDown(form.GraphBoxRec, "Return", false));
  form.Click(form.cmdStudio);
  EXPECT_EQ(desktop.studios.size(), 3U);
  for (const PictureBox* picture : {&form.GraphBoxRec, &form.GraphBox}) {
    EXPECT_TRUE(InForce());
    form.Picture_Mouse(*picture, &frmMain::GraphBox_MouseDown, kLeft, {5, 5});
  }
  EXPECT_FALSE(InForce());
}

// How often each coordinate from -1 to 257 is painted in the colour, each one further on.
Grid<int> Painted(const PictureBox& picture, std::uint32_t argb) {
  Grid<int> times(259, 259);
  for (const PictureMark& mark : MarksOver(picture)) {
    if (mark.argb != argb) continue;
    for (int row = mark.row; row < mark.row + mark.rows; ++row)
      for (int col = mark.col; col < mark.col + mark.cols; ++col) ++times(row + 1, col + 1);
  }
  return times;
}

// To the border of a box in one direction: 0 on it, negative inside.
int Outside(int at, int one, int other) {
  return std::max(std::min(one, other) - at, at - std::max(one, other));
}

TEST(PictureMarks, PaintEachCoordinateOfALineOnceAndItsShadeAroundIt) {
  const std::array<std::array<std::int16_t, 4>, 6> boxes = {{{7, 9, 7, 9},
                                                             {40, 30, 42, 31},
                                                             {0, 0, 5, 256},
                                                             {256, 200, 9, 3},
                                                             {8, 8, 11, 11},
                                                             {2, 2, 6, 6}}};
  for (int i = 0; i < 12; ++i) {
    const bool crosses = i >= 6;
    const auto& [row1, col1, row2, col2] = boxes[i % 6];
    PictureBox picture("p", "", "");
    if (crosses) picture.crosshair = {row1, col1};
    if (!crosses) picture.outline = {{row1, col1, row2, col2}, {255, 255, 48}};
    const Grid<int> line = Painted(picture, crosses ? 0xffffffff : 0xffffff30);
    const Grid<int> shade = Painted(picture, 0xbe000000);
    for (int row = -1; row < 258; ++row) {
      for (int col = -1; col < 258; ++col) {
        const int far = crosses ? std::min(std::abs(row - row1), std::abs(col - col1))
                                : std::max(Outside(row, row1, row2), Outside(col, col1, col2));
        const bool inPicture = std::min(row, col) >= 0 && std::max(row, col) <= 256;
        ASSERT_EQ(line(row + 1, col + 1), far == 0 && inPicture ? 1 : 0) << row << ' ' << col;
        ASSERT_EQ(shade(row + 1, col + 1), std::abs(far) <= 1 ? 1 : 0) << row << ' ' << col;
      }
    }
  }
}

TEST(PicturePlaces, EveryScreenPixelBelongsToOneCoordinate) {
  for (const int width : {100, 256, 261, 516, 1023, 1030}) {
    const PicturePlace place = PicturePlace::In(width, 777, 1);
    const int side = 256 * place.factor;
    EXPECT_LE(side + 4, std::max(width, 260));
    EXPECT_EQ(2 * place.left + side, width - width % 2);
    for (int x = 0; x < side; ++x)
      ASSERT_EQ(place.CoordinateAt(place.left + x + 0.99, place.top).col, x / place.factor + 1);
  }
  const PicturePlace place = PicturePlace::In(600, 600, 1);
  EXPECT_EQ(place.CoordinateAt(-1e9, 1e9), (PicturePoint{256, 0}));
  EXPECT_EQ(place.CoordinateAt(place.left - 1, place.top), (PicturePoint{1, 0}));
  for (const double ratio : {0.75, 1.0, 1.25, 1.5, 2.0, 2.4}) {
    const int good = PicturePlace::GoodRoom(ratio);
    EXPECT_EQ(PicturePlace::In(good, good, ratio).factor, std::max(1.0, std::round(ratio)));
    for (const int room : {good, PicturePlace::LeastRoom(ratio)})
      EXPECT_GE(PicturePlace::In(room, room, ratio).top, 1) << ratio;
  }
}

TEST_F(Views, TheStudioBeginsWithWhatTheFormShowsAndItsOptions) {
  Load(Photograph(64, 96));
  Choose(CoderOf(FileKind::kAwd), "1.5");
  Drag(64, 64, 128, 128);
  form.txtLevels.text = "3";
  form.Click(form.cmdStudio);
  const StudioRequest& source = desktop.studios.back();
  EXPECT_EQ(*source.source, *form.state.SourceImage);
  EXPECT_TRUE(source.packedFile.empty() && source.kind == FileKind::kAwd && source.levels == 3);
  EXPECT_EQ(source.rate, 1.5);
  EXPECT_EQ(source.region->row1 * 100 + source.region->col1, 1624);
  Compress(FileKind::kAwg, "0", "a.awg");
  Decompress(FileKind::kAwg, "0", "a.awg");
  form.Click(form.cmdStudio);
  EXPECT_EQ(desktop.studios.back().packedFile, Path("a.awg"));
  EXPECT_EQ(desktop.studios.back().kind, FileKind::kAwg);
}

}  // namespace
}  // namespace marovia::test
