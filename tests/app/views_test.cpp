// What the form works out for its views: clicks, places in a picture, images compared.
#include <array>
#include <cmath>

#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Views : public FormTest {};

TEST_F(Views, AClickSetsTheMarkAndRunsTheHandlerOfItsControl) {
  Load(Photograph(64, 64));
  form.Click(form.mnuCompress);
  form.Click(form.OpMethod[1]);
  form.Click(form.OpEntropyCode[1]);
  EXPECT_TRUE(form.OpMethod[1].selected && !form.OpMethod[0].selected);
  desktop.answers = {Path("a.awf")};
  form.Click(form.cmdBegin[0]);
  EXPECT_TRUE(std::filesystem::exists(Path("a.awf")));
  form.Click(form.OpDisplayImage);
  Drag(10, 10, 20, 20);
  form.Click(form.chkROIErrorOnly);
  EXPECT_FALSE(form.chkROIErrorOnly.checked);
  form.Click(form.OpErrorMeasure[2]);
  form.Click(form.cmdBegin[1]);
  EXPECT_TRUE(form.Report.text.starts_with("Root Mean")) << form.Report.text;
}

TEST_F(Views, KeysByTheirNamesDrawOnTheSourceAndOtherwiseEnterOpensTheStudio) {
  EXPECT_TRUE(form.Picture_KeyDown(form.GraphBox, "Return", false));
  form.Picture_DblClick(form.GraphBox);
  EXPECT_TRUE(desktop.studios.empty() && !form.cmdStudio.enabled);
  Load(Photograph(256, 256));
  EXPECT_TRUE(form.cmdStudio.enabled);
  EXPECT_FALSE(form.Picture_KeyDown(form.GraphBox, "Space", false));
  EXPECT_FALSE(form.Picture_KeyDown(form.GraphBoxRec, "Left", false));
  EXPECT_FALSE(form.Picture_KeyDown(form.GraphBox, "A", false));
  for (const char* key : {"Left", "Up", "Space", "Right", "Down", "Enter"})
    EXPECT_TRUE(form.Picture_KeyDown(form.GraphBox, key, true)) << key;
  const auto& [row1, col1, row2, col2] = form.GraphBox.outline->corners;
  EXPECT_EQ((std::array<int, 4>{row1, col1, row2, col2}), (std::array{112, 128, 128, 144}));
  EXPECT_FALSE(form.Picture_KeyDown(form.GraphBox, "Esc", false));
  EXPECT_TRUE(desktop.studios.empty());

  EXPECT_TRUE(form.Picture_KeyDown(form.GraphBox, "Enter", false));
  EXPECT_TRUE(form.Picture_KeyDown(form.GraphBoxRec, "Return", false));
  form.Click(form.cmdStudio);
  EXPECT_EQ(desktop.studios.size(), 3U);
  EXPECT_TRUE(form.state.region.IsInForce());
  form.Picture_Mouse(form.GraphBoxRec, &frmMain::GraphBox_MouseDown, kLeft, {5, 5});
  EXPECT_TRUE(form.state.region.IsInForce());
  form.Picture_Mouse(form.GraphBox, &frmMain::GraphBox_MouseDown, kLeft, {5, 5});
  EXPECT_FALSE(form.state.region.IsInForce());
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

TEST(PictureMarks, PaintEachCoordinateOfALineOnceAndItsShadeAroundIt) {
  constexpr std::uint32_t kYellow = 0xffffff30;
  constexpr std::uint32_t kWhite = 0xffffffff;
  constexpr std::uint32_t kShade = 0xbe000000;
  const std::array<std::array<std::int16_t, 4>, 6> boxes = {{{7, 9, 7, 9},
                                                             {40, 30, 42, 31},
                                                             {0, 0, 5, 256},
                                                             {256, 200, 9, 3},
                                                             {8, 8, 11, 11},
                                                             {2, 2, 6, 6}}};
  for (const auto& [row1, col1, row2, col2] : boxes) {
    PictureBox picture("p", "", "");
    picture.outline = {{row1, col1, row2, col2}, {255, 255, 48}};
    const Grid<int> line = Painted(picture, kYellow);
    const Grid<int> shade = Painted(picture, kShade);
    picture.outline.reset();
    picture.crosshair = {row1, col1};
    const Grid<int> cross = Painted(picture, kWhite);
    const Grid<int> crossShade = Painted(picture, kShade);
    // To the border of the box: 0 on it, negative inside.
    const auto outside = [](int at, int one, int other) {
      return std::max(std::min(one, other) - at, at - std::max(one, other));
    };
    for (int row = -1; row < 258; ++row) {
      for (int col = -1; col < 258; ++col) {
        const int far = std::max(outside(row, row1, row2), outside(col, col1, col2));
        ASSERT_EQ(line(row + 1, col + 1), far == 0 ? 1 : 0) << row << ' ' << col;
        ASSERT_EQ(shade(row + 1, col + 1), std::abs(far) <= 1 ? 1 : 0) << row << ' ' << col;
        const int off = std::min(std::abs(row - row1), std::abs(col - col1));
        const bool inPicture = row >= 0 && row <= 256 && col >= 0 && col <= 256;
        ASSERT_EQ(cross(row + 1, col + 1), off == 0 && inPicture ? 1 : 0) << row << ' ' << col;
        ASSERT_EQ(crossShade(row + 1, col + 1), off <= 1 ? 1 : 0) << row << ' ' << col;
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
