// Refusals, and actions that fail: one sentence, all else as before, and the next action works.
#include "base/number_text.h"
#include "image/sampling.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Failures : public FormTest {
 protected:
  // A form in the middle of its use: a reconstruction, a region, a wavelet of its own.
  Failures() {
    Load(Photograph(64, 64));
    Compress(FileKind::kAwf, "2", "good.awf");
    Decompress(FileKind::kAwf, "2", "good.awf");
    Drag(50, 50, 150, 150);
    desktop.reports.clear();
  }

  // All that a user sees apart from Report.
  auto Seen() {
    return std::tuple(form.txtLevels.text, form.txtBitRate.text, form.txtROIPercent.text,
                      form.cmbWavelet.text, form.Label[0].caption, form.GraphBox, form.GraphBoxRec,
                      InForce(), form.state.WaveletKind, *form.state.SourceImage, Reconstructed(),
                      *form.state.TransformArray);
  }

  void ExpectRefused(const std::string& sentence, const std::function<void()>& act) {
    SCOPED_TRACE(sentence);
    const auto before = Seen();
    act();
    EXPECT_TRUE(form.Report.text.starts_with(sentence)) << form.Report.text;
    EXPECT_TRUE(Seen() == before && !desktop.busy);
  }
};

TEST_F(Failures, AFileThatCannotBeReadSaysWhyAndLeavesWhatWasThere) {
  Bytes levels = FileBytes(Path("good.awf"));
  levels[4] = 92;
  const std::pair<const char*, Bytes> files[] = {
      {"comment.pgm", BytesOf("P5\n# a comment\n4 4\n255\n................")},
      {"huge.pgm", BytesOf("P5\n40000 9\n255\n")},
      {"long.bmp", BytesOf("BM, but nothing of a bitmap behind it")},
      {"other.bmp", WritePgm(Image(8, 8))},
      {"empty.awf", {}},
      {"levels.awf", levels}};
  for (const auto& [file, bytes] : files) {
    const std::string name = file;
    WriteFile(Path(name), bytes);
    ExpectRefused((name.ends_with("bmp") ? "Error loading file.\r\n" : "") + name + ": ",
                  [&] { name.ends_with("awf") ? Go(name) : LoadFile(Path(name)); });
  }
  ExpectRefused("missing.pgm: ", [this] { LoadFile(Path("missing.pgm")); });
  Go("good.awf");
  EXPECT_EQ(form.Report.text, "Image decompressed.");
}

TEST_F(Failures, AFileThatCannotBeWrittenIsNamedAndAnEarlierOneStaysWhole) {
  WriteFile(Path("there.awd"), BytesOf("precious"));
  for (const Coder& coder : AllCoders()) {
    if (coder.version != 1) continue;  // refused with a region
    Choose(coder);
    form.mnuCompress_Click();
    ExpectRefused("out.awx: cannot be written", [this] { Go("no folder/out.awx"); });
  }
  ExpectRefused("out.pgm: cannot be written", [this] { Save("no folder/out.pgm"); });
  ExpectRefused("Error saving file.\r\nout.bmp: cannot be written",
                [this] { Save("no folder/out.bmp"); });
  Choose(CoderOf(FileKind::kAwd), "1e9");
  ExpectRefused("there.awd: Overflow", [this] { Go("there.awd"); });
  EXPECT_EQ(FileBytes(Path("there.awd")), BytesOf("precious"));
  Compress(FileKind::kAwb, "1", "next.awb");
  EXPECT_TRUE(fs::exists(Path("next.awb")));
}

TEST_F(Failures, ACutFileOrAHigherRateThanTheFilesOwnIsSaid) {
  const std::string held = "Bpp value too large, decompressing at largest possible rate.";
  Decompress(FileKind::kAwf, "3", "good.awf");
  EXPECT_EQ(desktop.reports[1], "Decompressing..." + held + "\r\n");
  EXPECT_TRUE(desktop.reports[2].starts_with(desktop.reports[1] + "Pass  1.  Threshold = "));
  EXPECT_EQ(form.Report.text, "Image decompressed.\r\n" + held);
  Bytes cut = FileBytes(Path("good.awf"));
  cut.resize(cut.size() / 2);
  WriteFile(Path("cut.awf"), cut);
  Decompress(FileKind::kAwf, "2", "cut.awf");
  EXPECT_EQ(form.Report.text,
            "Image decompressed.\r\nThe file is cut short: bits that were asked for are missing.");
  EXPECT_EQ(Reconstructed(), marovia::Decompress(cut, FileKind::kAwf).image);
}

TEST_F(Failures, ANumberOfLevelsIsRefusedOrHeld) {
  Drag(1, 1, 1, 1);  // takes the region away
  WriteFile(Path("old"), BytesOf("precious"));
  for (const auto& [text, message] :
       {std::pair{"0", "Number of levels must be a positive integer."},
        {"none", "Number of levels must be a positive integer."},
        {"40000", "Invalid number of levels."}}) {
    for (const Coder& coder : AllCoders()) {
      form.txtLevels.text = text;
      Choose(coder);
      form.mnuCompress_Click();
      desktop.focused.clear();
      for (const char* name : {"old", "new"}) ExpectRefused(message, [&] { Go(name); });
      EXPECT_EQ(desktop.focused, (std::vector<std::string>{"txtLevels", "txtLevels"}));
    }
  }
  EXPECT_EQ(FileBytes(Path("old")), BytesOf("precious"));
  EXPECT_FALSE(fs::exists(Path("new")));
  for (const auto& [text, shown] :
       {std::pair{"9", "4"}, {"2.5", "2.5"}, {" 3 levels", " 3 levels"}}) {
    form.txtLevels.text = text;
    Compress(FileKind::kAwb, "1", "a.awb");
    EXPECT_EQ(form.txtLevels.text, shown);
  }
  EXPECT_EQ(FileBytes(Path("a.awb"))[4], 32);  // 3 levels, 5/3
}

TEST_F(Failures, AnErrorTextStaysUntilTheNextGoodLoadOrSave) {
  const std::function<void()> good[] = {[this] { Load(Photograph(64, 64)); },
                                        [this] { Save("a.bmp"); }, [this] { Save("a.pgm"); }};
  for (const auto& act : good) {
    LoadFile(Path("missing.pgm"));
    EXPECT_FALSE(form.Report.text.empty());
    act();
    EXPECT_EQ(form.Report.text, "");
    const std::string result = Compute(1);
    act();
    EXPECT_EQ(form.Report.text, result);
  }
}

TEST_F(Failures, AFileGivesItsWaveletLevelsAndSizeAndLeavesTheLoadedImageItsOwn) {
  Load(Photograph(32, 96));
  Compress(FileKind::kAwf, "2", "wide.awf");
  Load(Photograph(64, 64));
  form.cmbWavelet.text = "Daub 9/7";
  form.Click(form.cmbWavelet);
  form.txtLevels.text = "2";
  desktop.reports.clear();
  Decompress(FileKind::kAwf, "2", "wide.awf");
  EXPECT_EQ(form.cmbWavelet.text + form.txtLevels.text, "DD 5/3 Integer3");
  EXPECT_EQ(form.state.WaveletKind, WaveletKind::kInteger53);
  const DecompressResult wide = marovia::Decompress(FileBytes(Path("wide.awf")), FileKind::kAwf);
  EXPECT_EQ(Reconstructed(), wide.image);
  const std::string rate = NumberText(wide.passes.back().bits / (32 * 96.0));
  EXPECT_TRUE(desktop.reports.end()[-3].ends_with("Bit rate:  " + rate + "\r\n"));
  for (std::size_t i = 0; i < 3; ++i)
    EXPECT_EQ(Compute(i), "The two images differ in shape: 64 x 64 and 96 x 32.");
}

TEST(FailuresAtTheStart, WithoutAnImageEveryActionSaysWhatIsMissing) {
  FakeDesktop desktop;
  frmMain form(desktop);
  form.Form_Load();
  for (const Control* click : std::initializer_list<const Control*>{
           &form.mnuCompress, &form.mnuTransformImage, &form.OpTransform[1], &form.cmdBegin[1],
           &form.mnuSaveReconstructedImage}) {
    form.Report.text.clear();
    form.Click(*click);
    form.Click(form.cmdBegin[0]);
    EXPECT_TRUE(form.Report.text.starts_with("There is no ")) << click->name << form.Report.text;
  }
  EXPECT_TRUE(desktop.questions.empty());
}

}  // namespace
}  // namespace marovia::test
