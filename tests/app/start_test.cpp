// The form at its start and its end, its menus and panels, and the hidden transform mode.
#include <set>

#include "image/sampling.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Start : public FormTest {};

TEST_F(Start, ShowsThePublicSetOfFunctions) {
  EXPECT_EQ(form.Label[0].caption, "Compress/Decompress");
  EXPECT_EQ(form.cmbWavelet.text, "DD 5/3 Integer");
  EXPECT_EQ(form.cmbWavelet.list,
            (std::vector<std::string>{"DD 5/3 Integer", "DD 2+2,2 Integer", "Daub 9/7"}));
  EXPECT_EQ(form.txtBitRate.text + " " + form.txtROIPercent.text + " " + form.txtLevels.text,
            "0.25 .9 4");
  EXPECT_EQ(form.mnuTransformImage.caption, "&Transform ");
  const auto shown = [](const Control& control) {
    return std::pair(control.visible, control.enabled);
  };
  for (const Control& hidden : {Control(form.mnuTransformImage), Control(form.OpMethod[2])})
    EXPECT_EQ(shown(hidden), std::pair(false, false)) << hidden.name;
  for (const Control& disabled : {Control(form.mnuCompress), Control(form.mnuDecompress),
                                  Control(form.OpDisplayTransform), Control(form.chkROIErrorOnly)})
    EXPECT_EQ(shown(disabled), std::pair(true, false)) << disabled.name;
  EXPECT_EQ(form.window.width + form.Frame2.place.left, 12000 + 7920);
  EXPECT_EQ(form.OpMethod[1].place.top, form.Label2.place.top);
  EXPECT_EQ(form.OpMethod[1].place.left,
            form.OpMethod[0].place.left + form.OpMethod[0].place.width);
}

TEST_F(Start, EachModeShowsItsPanelAndFramesOneBelowTheOther) {
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
  EXPECT_EQ(desktop.helpShown, std::vector<std::string>{"/programs/marovia/Marovia.HLP 3"});
}

TEST_F(Start, UnloadDeletesItsThreePatternsInTheCurrentFolderAndNothingElse) {
  std::filesystem::current_path(folder);
  std::filesystem::create_directories(Path("folder.wti"));
  for (const char* name : {"a.wti", "b c.rim", ".wtr", "a.wti.txt", "wti", "x.awb"})
    WriteFile(Path(name), {});
  form.Form_Unload();
  form.Form_Unload();  // nothing matches any more
  std::set<std::string> left;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    left.insert(entry.path().filename().string());
  EXPECT_EQ(left, (std::set<std::string>{"folder.wti", "a.wti.txt", "wti", "x.awb"}));
  std::filesystem::current_path("/");
}

TEST_F(Start, TheHiddenTransformModeTransformsShowsAndInverts) {
  form.state.padToFit = true;
  const std::pair<const char*, WaveletKind> wavelets[] = {
      {"DD 5/3 Integer", WaveletKind::kInteger53},
      {"DD 2+2,2 Integer", WaveletKind::kInteger22},
      {"daub 9/7", WaveletKind::kInteger22}};
  for (const auto& [label, wavelet] : wavelets) {
    const Image source = Photograph(50, 33);
    Load(source);
    form.cmbWavelet.text = label;
    form.Click(form.cmbWavelet);
    EXPECT_EQ(form.state.WaveletKind, wavelet) << label;
    form.Click(form.mnuTransformImage);
    form.Click(form.cmdBegin[0]);
    EXPECT_EQ(form.state.TransformArray->Rows(), 56);  // a side of 33 bears 3 levels
    EXPECT_TRUE(form.OpDisplayTransform.enabled && form.OpDisplayTransform.selected);
    EXPECT_FALSE(form.OpDisplayImage.selected);
    const Image transform = SampleCoefficients(*form.state.TransformArray);
    EXPECT_EQ(form.GraphBox.raster, transform);
    form.Click(form.OpDisplayImage);
    EXPECT_EQ(form.GraphBox.raster, SampleImage(source));
    EXPECT_FALSE(form.OpDisplayTransform.enabled);
    form.Click(form.OpDisplayTransform);
    EXPECT_EQ(form.GraphBox.raster, transform);
    form.Click(form.OpTransform[1]);
    form.Click(form.cmdBegin[0]);
    EXPECT_EQ(*form.state.ReconstructedImage, source) << label;
    EXPECT_EQ(form.GraphBox.raster, SampleImage(source));
    EXPECT_EQ(form.GraphBoxRec.raster, SampleImage(source));
    EXPECT_EQ(form.mnuTransformImage.caption, "&Transform Image");
    EXPECT_TRUE(form.OpTransform[0].selected && !form.OpDisplayTransform.enabled);
    EXPECT_FALSE(desktop.IsBusy());
  }
}

}  // namespace
}  // namespace marovia::test
