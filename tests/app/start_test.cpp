// The form at its start and its end, its menus and panels, and the two hidden choices.
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
  EXPECT_EQ(form.OpTransform[0].caption + form.OpTransform[1].caption, "Forward Inverse ");
  EXPECT_EQ(form.mnuTransformImage.caption, "&Transform ");
  EXPECT_TRUE(form.OpMethod[0].selected && form.OpEntropyCode[0].selected &&
              form.OpErrorMeasure[0].selected && form.OpTransform[0].selected &&
              form.OpDisplayImage.selected);
  for (const Control* hidden :
       {static_cast<Control*>(&form.mnuTransformImage), static_cast<Control*>(&form.OpMethod[2])}) {
    EXPECT_FALSE(hidden->visible || hidden->enabled) << hidden->name;
  }
  for (const Control* disabled :
       {static_cast<Control*>(&form.mnuCompress), static_cast<Control*>(&form.mnuDecompress),
        static_cast<Control*>(&form.OpDisplayTransform),
        static_cast<Control*>(&form.chkROIErrorOnly)}) {
    EXPECT_TRUE(disabled->visible && !disabled->enabled) << disabled->name;
  }
  EXPECT_EQ(form.window.width, 12000);
  EXPECT_EQ(form.Frame2.place.left, 7920);
  EXPECT_EQ(form.OpMethod[1].place.top, form.Label2.place.top);
  EXPECT_EQ(form.OpMethod[1].place.left,
            form.OpMethod[0].place.left + form.OpMethod[0].place.width);
  EXPECT_FALSE(form.state.padToFit);
}

TEST_F(Start, EachModeShowsItsPanelAndFramesOneBelowTheOther) {
  const auto inView = [this](std::size_t i) { return form.frProc[i].place.top == 0; };
  EXPECT_FALSE(inView(0) || inView(1));
  EXPECT_EQ(form.frProc[0].place.top, 2 * form.Frame2.place.height);

  form.mnuCompress_Click();
  EXPECT_TRUE(inView(0) && !inView(1));
  EXPECT_EQ(form.Label[0].caption, "Compress");
  EXPECT_FALSE(form.Frame[0].visible);
  EXPECT_TRUE(form.Frame[1].visible && form.Frame[2].visible);
  EXPECT_EQ(form.Frame[1].place.top, 0);
  EXPECT_EQ(form.Frame[2].place.top, form.Frame[1].place.height);

  form.mnuErrormeasures_Click();
  EXPECT_TRUE(!inView(0) && inView(1));
  EXPECT_EQ(form.Label[0].caption, "Compress");

  form.mnuTransformImage_Click();
  EXPECT_TRUE(form.Frame[0].visible && !form.Frame[1].visible && !form.Frame[2].visible);
  form.mnuDecompress_Click();
  EXPECT_EQ(form.Label[0].caption, "Decompress");
  EXPECT_TRUE(inView(0) && !form.Frame[0].visible);
}

TEST_F(Start, HelpOpensAtItsContents) {
  form.mnuHelp_Click();
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
  for (const char* wavelet : {"DD 5/3 Integer", "DD 2+2,2 Integer"}) {
    const Image source = Photograph(64, 96);
    Load(source);
    form.cmbWavelet.text = wavelet;
    form.cmbWavelet_Click();
    form.mnuTransformImage_Click();
    form.cmdBegin_Click(0);
    EXPECT_EQ(form.GraphBox.content, PictureContent::kTransform);
    EXPECT_TRUE(form.OpDisplayTransform.enabled && form.OpDisplayTransform.selected);
    EXPECT_FALSE(form.OpDisplayImage.selected);
    const Image transform = SampleCoefficients(*form.state.TransformArray);
    EXPECT_EQ(form.GraphBox.raster, transform);

    form.OpDisplayImage_Click();
    EXPECT_EQ(form.GraphBox.raster, SampleImage(source));
    EXPECT_FALSE(form.OpDisplayTransform.enabled);
    form.OpDisplayTransform_Click();
    EXPECT_EQ(form.GraphBox.raster, transform);

    form.OpTransform.Select(1);
    form.cmdBegin_Click(0);
    EXPECT_EQ(*form.state.ReconstructedImage, source) << wavelet;
    EXPECT_EQ(form.GraphBox.content, PictureContent::kImage);
    EXPECT_FALSE(form.GraphBoxRec.raster.Empty());
    EXPECT_EQ(form.mnuTransformImage.caption, "&Transform Image");
    EXPECT_FALSE(form.mnuTransformImage.visible);
    EXPECT_TRUE(form.OpTransform[0].selected && !form.OpTransform[1].selected);
    EXPECT_FALSE(form.OpDisplayTransform.enabled);
    EXPECT_FALSE(desktop.IsBusy());
  }
}

TEST_F(Start, WaveletsGoByTheirLabelsAndAnUnknownOneChangesNothing) {
  const std::pair<const char*, WaveletKind> picks[] = {
      {"Daub 9/7", WaveletKind::kDaub97},
      {"DD 2+2,2 Integer", WaveletKind::kInteger22},
      {"daub 9/7", WaveletKind::kInteger22},
      {"DD 5/3 Integer", WaveletKind::kInteger53},
  };
  for (const auto& [label, wavelet] : picks) {
    form.cmbWavelet.text = label;
    form.cmbWavelet_Click();
    EXPECT_EQ(form.state.WaveletKind, wavelet) << label;
  }
}

}  // namespace
}  // namespace marovia::test
