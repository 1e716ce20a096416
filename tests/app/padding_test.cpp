// Images whose sides are no multiples of 2^levels, with padding and without.
#include "marovia/measures.h"

#include "image/sampling.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Padding : public FormTest {};

TEST_F(Padding, ImagesOfAnySizeComeBackWholeAndAreMeasuredAndSavedAtTheirOwnSize) {
  form.state.padToFit = true;
  const std::pair<int, int> sizes[] = {{50, 33}, {3, 5}, {1, 1}, {2, 70}};
  for (const auto& [rows, cols] : sizes) {
    SCOPED_TRACE(std::to_string(rows) + " x " + std::to_string(cols));
    const Image source = Photograph(rows, cols);
    Load(source);
    form.txtLevels.text = "4";
    form.Report.text = "quiet";
    Compress(FileKind::kAwg, "0", "a.awg");
    Decompress(FileKind::kAwg, "0", "a.awg");
    EXPECT_EQ(*form.state.ReconstructedImage, source);
    EXPECT_EQ(Compute(0), "Sup-norm error:  0");
    EXPECT_EQ(Compute(1), "Error computing PSNR.");
    desktop.answers = {Path("a.bmp")};
    form.mnuSaveReconstructedImage_Click();
    EXPECT_EQ(ReadImage(FileBytes(Path("a.bmp"))).image, source);
  }
}

TEST_F(Padding, EveryLossyCoderTakesAPhotographOfAnySizeWithARegionToo) {
  form.state.padToFit = true;
  const Image source = Photograph(75, 110);
  for (const FileKind kind : {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf}) {
    Load(source);
    EXPECT_TRUE(desktop.reports.empty());
    if (form.state.ROISelected == 0) Drag(30, 30, 90, 90);
    Compress(kind, "2", "a");
    EXPECT_TRUE(form.state.ReconstructedImage->SameShape(source));  // the mask
    Decompress(kind, "2", "a");
    EXPECT_EQ(form.Report.text, "Image decompressed.");
    EXPECT_TRUE(form.state.ReconstructedImage->SameShape(source));
    EXPECT_GT(*Measure(source, *form.state.ReconstructedImage).psnr, 20);
    desktop.reports.clear();
  }
}

TEST_F(Padding, WithoutItTheLoadSaysSoAndTheImageIsCodedAsItIs) {
  const Image source = Photograph(50, 36);
  Load(source);
  EXPECT_TRUE(form.Report.text.starts_with("The sides, 36 x 50, are no multiples of 16"))
      << form.Report.text;
  Compress(FileKind::kAwf, "1", "a.awf");
  EXPECT_EQ(FileBytes(Path("a.awf")), marovia::Compress(source, {.kind = FileKind::kAwf,
                                                                 .wavelet = WaveletKind::kInteger53,
                                                                 .levels = 4,
                                                                 .rate = 1,
                                                                 .region = {},
                                                                 .pad = false})
                                          .file);
  Decompress(FileKind::kAwf, "1", "a.awf");
  EXPECT_TRUE(form.state.ReconstructedImage->SameShape(source));
}

TEST_F(Padding, WithoutItASideOfOneOrTwoIsRefusedAndOneOfThreeToFiveCodedUntransformed) {
  const Image source = Photograph(3, 5);
  Load(source);
  Compress(FileKind::kAwg, "0", "a.awg");
  EXPECT_EQ(form.txtLevels.text, "0");
  Decompress(FileKind::kAwg, "0", "a.awg");
  EXPECT_EQ(*form.state.ReconstructedImage, source);
  for (const int side : {1, 2}) {
    Load(Photograph(side, 64));
    form.txtLevels.text = "4";
    Compress(FileKind::kAwb, "1", "b.awb");
    EXPECT_FALSE(std::filesystem::exists(Path("b.awb")));
    EXPECT_EQ(form.Label[0].caption, "Compress");
  }
}

TEST_F(Padding, TheHiddenTransformModeInvertsAPaddedImageWhole) {
  form.state.padToFit = true;
  const Image source = Photograph(50, 33);
  Load(source);
  form.mnuTransformImage_Click();
  form.cmdBegin_Click(0);
  EXPECT_EQ(form.state.TransformArray->Rows(), 56);  // a side of 33 bears 3 levels
  EXPECT_EQ(form.state.TransformArray->Cols(), 40);
  form.OpTransform.Select(1);
  form.cmdBegin_Click(0);
  EXPECT_EQ(*form.state.ReconstructedImage, source);
}

}  // namespace
}  // namespace marovia::test
