// Images whose sides are no multiples of 2^levels, with padding and without.
#include "marovia/measures.h"

#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Padding : public FormTest {
 protected:
  void RoundTrip(FileKind kind, const char* rate) {
    form.txtLevels.text = "4";
    Compress(kind, rate, "a");
    Go("a");
  }
};

TEST_F(Padding, ImagesOfAnySizeComeBackWholeAndAreMeasuredAndSavedAtTheirOwnSize) {
  form.state.padToFit = true;
  const std::pair<int, int> sizes[] = {{50, 33}, {3, 5}, {1, 1}, {2, 70}};
  for (const auto& [rows, cols] : sizes) {
    const Image source = Photograph(rows, cols);
    Load(source);
    RoundTrip(FileKind::kAwg, "0");
    EXPECT_EQ(*form.state.ReconstructedImage, source);
    EXPECT_EQ(Compute(0) + Compute(1), "Sup-norm error:  0Error computing PSNR.");
    Save("a.bmp");
    EXPECT_EQ(ReadImage(FileBytes(Path("a.bmp"))).image, source);
  }
  const Image source = Photograph(75, 110);
  desktop.reports.clear();
  Load(source);
  EXPECT_TRUE(desktop.reports.empty());
  form.txtLevels.text = "4";
  Drag(30, 30, 90, 90);
  Compress(FileKind::kAwf, "2", "a");
  EXPECT_TRUE(form.state.ReconstructedImage->SameShape(source));  // the mask
  Go("a");
  EXPECT_GT(*Measure(source, *form.state.ReconstructedImage).psnr, 20);
}

TEST_F(Padding, WithoutItTheLoadSaysSoAndTheImageIsCodedAsItIs) {
  Load(Photograph(50, 36));
  EXPECT_TRUE(form.Report.text.starts_with("The sides, 36 x 50, are no multiples of 16"))
      << form.Report.text;
  const Bytes expected = Expected(FileKind::kAwf, 1).file;
  RoundTrip(FileKind::kAwf, "1");
  EXPECT_EQ(FileBytes(Path("a")), expected);
  EXPECT_EQ(form.Report.text, "Image decompressed.");

  Load(Photograph(3, 5));  // untransformed
  RoundTrip(FileKind::kAwg, "0");
  EXPECT_EQ(form.txtLevels.text, "0");
  EXPECT_EQ(*form.state.ReconstructedImage, *form.state.SourceImage);
  Load(Photograph(2, 64));
  form.txtLevels.text = "4";
  Compress(FileKind::kAwb, "1", "b.awb");
  EXPECT_FALSE(std::filesystem::exists(Path("b.awb")));
  EXPECT_EQ(form.Label[0].caption, "Compress");
}

}  // namespace
}  // namespace marovia::test
