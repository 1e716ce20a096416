// Refusals, and actions that fail: one sentence, all else as before, and the next action works.
#include "base/number_text.h"
#include "image/sampling.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

constexpr FileKind kEveryKind[] = {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf,
                                   FileKind::kAwg};

const char* RateOf(FileKind kind) {
  return kind == FileKind::kAwg ? "0" : "1";
}

Bytes FromText(std::string_view text) {
  return {text.begin(), text.end()};
}

class Failures : public FormTest {
 protected:
  // A form in the middle of its use: a reconstruction, a region, a wavelet of its own.
  void Use() {
    Load(Photograph(64, 64));
    Compress(FileKind::kAwf, "2", "good.awf");
    Decompress(FileKind::kAwf, "2", "good.awf");
    Drag(50, 50, 150, 150);
    desktop.reports.clear();
    source_ = *form.state.SourceImage;
    reconstruction_ = *form.state.ReconstructedImage;
    transform_ = *form.state.TransformArray;
    before_ = Settings();
  }

  // All that a user sees apart from Report.
  std::string Settings() {
    return form.txtLevels.text + "|" + form.txtBitRate.text + "|" + form.txtROIPercent.text + "|" +
           form.cmbWavelet.text + "|" + form.Label[0].caption + "|" + form.state.GraphBoxContent +
           form.state.GraphBoxRecContent + std::to_string(form.state.ROISelected) +
           std::to_string(static_cast<int>(form.state.WaveletKind));
  }

  void ExpectAllAsBefore(const std::string& sentenceStart) {
    EXPECT_TRUE(form.Report.text.starts_with(sentenceStart)) << form.Report.text;
    EXPECT_EQ(Settings(), before_);
    EXPECT_EQ(*form.state.SourceImage, source_);
    EXPECT_EQ(*form.state.ReconstructedImage, reconstruction_);
    EXPECT_EQ(*form.state.TransformArray, transform_);
    EXPECT_EQ(form.GraphBox.raster, SampleImage(source_));
    EXPECT_EQ(form.GraphBoxRec.raster, SampleImage(reconstruction_));
    EXPECT_TRUE(form.GraphBox.outline);
    EXPECT_FALSE(desktop.IsBusy());
  }

  Image source_, reconstruction_;
  Grid<float> transform_;
  std::string before_;
};

TEST_F(Failures, AFileThatIsNoImageSaysWhatIsWrongAndLeavesTheEarlierOne) {
  Use();
  const std::pair<const char*, Bytes> files[] = {
      {"comment.pgm", FromText("P5\n# a comment\n4 4\n255\n................")},
      {"huge.pgm", FromText("P5\n40000 9\n255\n")},
      {"long.bmp", FromText("BM, but nothing of a bitmap behind it")},
      {"other.bmp", WritePgm(Image(8, 8))},
  };
  for (const auto& [name, bytes] : files) {
    SCOPED_TRACE(name);
    WriteFile(Path(name), bytes);
    LoadFile(Path(name));
    const bool bmp = std::string_view(name).ends_with("bmp");
    ExpectAllAsBefore((bmp ? "Error loading file.\r\n" : "") + std::string(name) + ": ");
  }
  LoadFile(Path("missing.pgm"));
  ExpectAllAsBefore("missing.pgm: ");
}

TEST_F(Failures, AFileThatCannotBeWrittenIsNamed) {
  Use();
  for (const FileKind kind : kEveryKind) {
    Choose(kind, RateOf(kind));
    form.mnuCompress_Click();
    before_ = Settings();
    form.txtROIPercent.text = ".9";
    desktop.answers = {Path("no folder/out.awx")};
    form.cmdBegin_Click(0);
    ExpectAllAsBefore("out.awx: cannot be written");
  }
  desktop.answers = {Path("no folder/out.pgm")};
  form.mnuSaveReconstructedImage_Click();
  ExpectAllAsBefore("out.pgm: cannot be written");
  desktop.answers = {Path("no folder/out.bmp")};
  form.mnuSaveReconstructedImage_Click();
  ExpectAllAsBefore("Error saving file.\r\nout.bmp: cannot be written");

  Compress(FileKind::kAwb, "1", "next.awb");
  EXPECT_TRUE(std::filesystem::exists(Path("next.awb")));
}

TEST_F(Failures, ARunThatFailsLeavesTheFileThatIsThereWhole) {
  Use();
  WriteFile(Path("there.awd"), FromText("precious"));
  Choose(FileKind::kAwd, "1e9");
  form.mnuCompress_Click();
  before_ = Settings();
  desktop.answers = {Path("there.awd")};
  form.cmdBegin_Click(0);
  ExpectAllAsBefore("there.awd: Overflow");
  EXPECT_EQ(FileBytes(Path("there.awd")), FromText("precious"));
}

TEST_F(Failures, AFileThatIsNotOneOfOursIsRefusedWithItsName) {
  Use();
  Bytes levels = FileBytes(Path("good.awf"));
  levels[4] = 92;
  const std::pair<const char*, Bytes> files[] = {{"empty.awf", {}}, {"levels.awf", levels}};
  for (const auto& [name, bytes] : files) {
    SCOPED_TRACE(name);
    WriteFile(Path(name), bytes);
    Choose(FileKind::kAwf, "2");
    form.mnuDecompress_Click();
    before_ = Settings();
    desktop.answers = {Path(name)};
    form.cmdBegin_Click(0);
    ExpectAllAsBefore(std::string(name) + ": ");
  }
  Decompress(FileKind::kAwf, "2", "good.awf");
  EXPECT_EQ(form.Report.text, "Image decompressed.");
}

TEST_F(Failures, ACutFileIsShownAndCalledCut) {
  Use();
  Bytes cut = FileBytes(Path("good.awf"));
  cut.resize(cut.size() / 2);
  WriteFile(Path("cut.awf"), cut);
  Decompress(FileKind::kAwf, "2", "cut.awf");
  EXPECT_EQ(form.Report.text,
            "Image decompressed.\r\nThe file is cut short: bits that were asked for are missing.");
  EXPECT_EQ(*form.state.ReconstructedImage, marovia::Decompress(cut, FileKind::kAwf).image);
}

TEST_F(Failures, ARefusedLevelCountWritesNothing) {
  Load(Photograph(64, 64));
  WriteFile(Path("old"), FromText("precious"));
  const std::pair<const char*, const char*> refusals[] = {
      {"0", "Number of levels must be a positive integer."},
      {"none", "Number of levels must be a positive integer."},
      {"40000", "Invalid number of levels."}};
  for (const auto& [text, message] : refusals) {
    for (const FileKind kind : kEveryKind) {
      form.txtLevels.text = text;
      desktop.focused.clear();
      for (const char* name : {"old", "new"}) Compress(kind, RateOf(kind), name);
      EXPECT_EQ(form.Report.text, message);
      EXPECT_EQ(desktop.focused, (std::vector<std::string>{"txtLevels", "txtLevels"}));
      EXPECT_EQ(form.Label[0].caption, "Compress");
      EXPECT_EQ(form.state.GraphBoxContent, 'I');
    }
  }
  EXPECT_EQ(FileBytes(Path("old")), FromText("precious"));
  EXPECT_FALSE(std::filesystem::exists(Path("new")));
}

TEST_F(Failures, AnErrorTextStaysUntilTheNextGoodLoadOrSave) {
  Use();
  const auto save = [this](const char* name) {
    desktop.answers = {Path(name)};
    form.mnuSaveReconstructedImage_Click();
  };
  const std::function<void()> refused[] = {[this] { LoadFile(Path("missing.pgm")); },
                                           [&] { save("no folder/a.bmp"); },
                                           [this] { Compress(FileKind::kAwb, "0", "a.awb"); },
                                           [this] { form.OpenFile(Path("notes.txt")); }};
  const std::function<void()> good[] = {[this] { Load(Photograph(64, 64)); },
                                        [&] { save("a.bmp"); }, [&] { save("a.pgm"); }};
  for (const auto& refuse : refused) {
    for (const auto& act : good) {
      refuse();
      EXPECT_FALSE(form.Report.text.empty());
      act();
      EXPECT_EQ(form.Report.text, "");
      const std::string result = Compute(1);
      act();
      EXPECT_EQ(form.Report.text, result);
    }
  }
}

TEST_F(Failures, TooManyLevelsAreHeldSilentlyAndHalvesRoundToEven) {
  Load(Photograph(64, 64));
  const std::pair<const char*, const char*> texts[] = {
      {"9", "4"}, {"3.5", "3.5"}, {"2.5", "2.5"}, {" 3 levels", " 3 levels"}};
  for (const auto& [text, shown] : texts) {
    form.txtLevels.text = text;
    Compress(FileKind::kAwb, "1", "a.awb");
    EXPECT_EQ(form.txtLevels.text, shown);
  }
  EXPECT_EQ(FileBytes(Path("a.awb"))[4], 32);  // 3 levels, 5/3
}

TEST_F(Failures, AHigherRateThanTheFilesOwnIsHeldAndSaid) {
  Use();
  desktop.reports.clear();
  Decompress(FileKind::kAwf, "3", "good.awf");
  EXPECT_EQ(desktop.reports[1],
            "Decompressing...Bpp value too large, decompressing at largest possible rate.\r\n");
  EXPECT_TRUE(desktop.reports[2].starts_with(desktop.reports[1] + "Pass  1.  Threshold = "));
  EXPECT_EQ(form.Report.text,
            "Image decompressed.\r\nBpp value too large, decompressing at largest possible rate.");
}

TEST_F(Failures, ADecompressionTakesWaveletAndLevelsFromTheFile) {
  Use();
  form.cmbWavelet.text = "Daub 9/7";
  form.cmbWavelet_Click();
  form.txtLevels.text = "2";
  Decompress(FileKind::kAwf, "2", "good.awf");
  EXPECT_EQ(form.cmbWavelet.text, "DD 5/3 Integer");
  EXPECT_EQ(form.state.WaveletKind, WaveletKind::kInteger53);
  EXPECT_EQ(form.txtLevels.text, "4");
}

TEST_F(Failures, AFileOfAnotherSizeLeavesTheLoadedImageItsOwn) {
  Load(Photograph(32, 96));
  Compress(FileKind::kAwf, "2", "wide.awf");
  const Image small = Photograph(64, 64);
  Load(small);
  desktop.reports.clear();
  Decompress(FileKind::kAwf, "2", "wide.awf");
  EXPECT_EQ(form.Report.text, "Image decompressed.");
  const DecompressResult wide = marovia::Decompress(FileBytes(Path("wide.awf")), FileKind::kAwf);
  EXPECT_EQ(*form.state.ReconstructedImage, wide.image);
  EXPECT_EQ(form.GraphBoxRec.raster, SampleImage(wide.image));
  const double rate = wide.passes.back().bits / (32 * 96.0);
  EXPECT_TRUE(desktop.reports[desktop.reports.size() - 3].ends_with(
      "Bit rate:  " + NumberText(rate) + "\r\n"));

  desktop.answers = {Path("wide.bmp")};
  form.mnuSaveReconstructedImage_Click();
  EXPECT_EQ(ReadImage(FileBytes(Path("wide.bmp"))).image, wide.image);
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ(Compute(i), "The two images differ in shape: 64 x 64 and 96 x 32.");
  Compress(FileKind::kAwg, "0", "small.awg");
  EXPECT_EQ(marovia::Decompress(FileBytes(Path("small.awg")), FileKind::kAwg).image, small);
}

TEST_F(Failures, WithoutAnImageEveryActionSaysWhatIsMissing) {
  const auto expectMissing = [this](const char* what) {
    EXPECT_TRUE(form.Report.text.starts_with(what)) << form.Report.text;
    EXPECT_TRUE(desktop.questions.empty());
  };
  Compress(FileKind::kAwf, "1", "a.awf");
  expectMissing("There is no image yet");
  form.mnuTransformImage_Click();
  form.cmdBegin_Click(0);
  expectMissing("There is no image yet");
  form.OpTransform.Select(1);
  form.cmdBegin_Click(0);
  expectMissing("There is no image yet");
  form.mnuSaveReconstructedImage_Click();
  expectMissing("There is no reconstructed image yet");
  Compute(1);
  expectMissing("There is no image yet");
  Drag(10, 10, 20, 20);
  EXPECT_EQ(form.state.ROISelected, 0);
}

}  // namespace
}  // namespace marovia::test
