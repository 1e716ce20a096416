// Loading and saving, the file questions, and the names that are answered to them.
#include "image/form_pgm.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Files : public FormTest {
 protected:
  Files() { Load(Photograph(32, 32)); }
};

TEST_F(Files, TheQuestionsCarryTheirFilterFolderFormAndFlags) {
  const auto expect = [this](DialogForm itsForm, int flags, std::string_view filter,
                             const std::filesystem::path& itsFolder, std::string_view proposed) {
    const FileDialog& asked = desktop.questions.back();
    EXPECT_EQ(asked.form, itsForm);
    EXPECT_EQ(asked.flags, flags);
    EXPECT_EQ(asked.filter, filter);
    EXPECT_EQ(asked.initialFolder, itsFolder);
    EXPECT_EQ(asked.proposedName, proposed);
    EXPECT_EQ(asked.fileName, "");
  };
  expect(DialogForm::kOpen, 2, "Windows bitmap|*.bmp|PGM file|*.pgm", "/programs/marovia/Images",
         "");
  EXPECT_FALSE(desktop.questions.back().AsksBeforeReplacing());  // only what is written
  desktop.answers.clear();
  form.mnuSaveReconstructedImage_Click();
  expect(DialogForm::kSave, 2, "Windows Bitmap file|*.bmp|PGM file (*.pgm)|*.pgm", folder,
         "source_decoded");
  std::string name = "as it was";
  const std::string_view lossless = "ASWDR_V1 lossless arith. compression (*.awg)|*.awg";
  EXPECT_EQ(form.SetCompressedFileName(name, "awg"), -1);
  EXPECT_EQ(name, "as it was");
  expect(DialogForm::kOpen, 2, lossless, folder, "source.awg");
  EXPECT_TRUE(desktop.questions.back().AsksBeforeReplacing());
  // An extension that is not in the table leaves the filter of the question before.
  desktop.answers = {"/tmp/x"};
  EXPECT_EQ(form.GetCompressedFileName(name, "AWB"), 1);
  EXPECT_EQ(name, "/tmp/x");
  expect(DialogForm::kOpen, 4096, lossless, folder, "");
}

TEST_F(Files, AQuestionNamesItsFiltersAndBeginsWithOneThatShowsAFile) {
  const std::string_view filter = "Windows bitmap|*.tif|PGM file (*.pgm)|*.pgm";
  EXPECT_EQ(FilterNames(filter), "Windows bitmap (*.tif);;PGM file (*.pgm)");
  EXPECT_EQ(SuffixOfFilter("PGM file (*.pgm)"), "pgm");
  EXPECT_EQ(UsefulFilter(filter, folder), "Windows bitmap (*.tif)");
  EXPECT_EQ(UsefulFilter(filter, Path("missing")), "Windows bitmap (*.tif)");
  WriteFile(Path("only.pgm"), {});
  EXPECT_EQ(UsefulFilter(filter, folder), "PGM file (*.pgm)");
  EXPECT_EQ(FilterNames("") + UsefulFilter("", folder), "");

  FileDialog question;
  question.filter = "a|*.bmp|b|*.pgm";
  question.writesFile = true;
  const std::pair<const char*, const char*> names[] = {
      {"/x.y/a", "/x.y/a.bmp"}, {"a.", "a.bmp"}, {".a", ".a.bmp"}, {"a.Pgm", "a.Pgm"}};
  for (const auto& [typed, completed] : names) {
    EXPECT_EQ(WithSuffix(typed, "bmp"), completed);
    EXPECT_EQ(NameRefusal(question, completed), "");
  }
  EXPECT_EQ(NameRefusal(question, "/x/a.awf"),
            "a.awf: the name of this file must end in .bmp or .pgm.");
  question.writesFile = false;
  EXPECT_EQ(NameRefusal(question, "a.awf"), "");
}

TEST_F(Files, TheFileJustMadeIsTheOneProposedForDecompression) {
  Compress(FileKind::kAwf, "1", "made.awf");
  for (const FileKind kind : {FileKind::kAwf, FileKind::kAwa}) {
    Choose(CoderOf(kind), "1");
    desktop.answers.clear();
    form.cmdBegin_Click(0);
    EXPECT_EQ(desktop.questions.back().proposedName, kind == FileKind::kAwf ? "made.awf" : "");
  }
}

TEST_F(Files, TheFilesOfTheProgramAreBesideItOrInTheSharedFolderOfItsInstallation) {
  EXPECT_EQ(FolderOfProgramFiles("/usr/bin"), "/usr/share/marovia");
  WriteFile(Path("Marovia.HLP"), {});
  EXPECT_EQ(FolderOfProgramFiles(folder), folder);
}

TEST_F(Files, ALoadDiscardsTheEarlierTransformAndReconstruction) {
  Compress(FileKind::kAwf, "2", "a.awf");
  Decompress(FileKind::kAwf, "2", "a.awf");
  Load(Photograph(32, 48));
  EXPECT_EQ(*form.state.ReconstructedImage, Image(32, 48));
  EXPECT_EQ(*form.state.TransformArray, Grid<float>(32, 48));
  EXPECT_TRUE(form.GraphBoxRec.raster.Empty());
  EXPECT_TRUE(form.mnuCompress.enabled && form.mnuDecompress.enabled);
  LoadFile(MAROVIA_TEST_DATA "/images/colour24.bmp");
  EXPECT_NE(form.Report.text.find("colour turned to grey"), std::string::npos) << form.Report.text;
}

TEST_F(Files, ThePgmOfTheFormIsRowsFirstSoThatItsSizesComeBackExchanged) {
  form.state.ReconstructedImage = Photograph(32, 48);
  Save("r.Pgm");
  const Bytes file = FileBytes(Path("r.Pgm"));
  EXPECT_EQ(std::string(file.begin(), file.begin() + 13), "P5\n32 48\n255\n");
  EXPECT_EQ(file.size(), 13U + 32 * 48);
  LoadFile(Path("r.Pgm"));
  EXPECT_EQ(form.state.NumRows * 1000 + form.state.NumCols, 48032);
}

TEST_F(Files, OtherExtensionsAndCancelledQuestionsChangeNothing) {
  const Image source = Photograph(32, 32);
  WriteFile(Path("image.tif"), WritePgm(Photograph(64, 64)));
  LoadFile(Path("image.tif"));
  form.mnuGetImage_Click();
  Save("out.tif");
  EXPECT_FALSE(std::filesystem::exists(Path("out.tif")));
  EXPECT_EQ(*form.state.SourceImage, source);
  EXPECT_TRUE(desktop.reports.empty());
  // The compressors of ASWDR clear the text before they ask.
  for (const Coder& coder : AllCoders()) {
    Choose(coder, coder.lossless ? "0" : "1");
    form.Report.text = "before";
    form.mnuCompress_Click();
    form.cmdBegin_Click(0);
    EXPECT_EQ(form.Report.text, coder.method == ScanMethod::kAswdr ? "" : "before");
    EXPECT_EQ(form.Label[0].caption, "Compress");
    form.Report.text = "before";
    form.mnuDecompress_Click();
    form.cmdBegin_Click(0);
    EXPECT_EQ(form.Report.text, "before");
  }
}

TEST_F(Files, AChosenNameIsNeverAPattern) {
  const std::vector<std::string> others = {"aXb1.awd", "a.awd", "ab.awd"};
  for (const std::string& name : others) WriteFile(Path(name), Bytes{1, 2, 3});
  for (const std::string name : {"*.awd", "a?b[1].awd", "-"}) {
    Compress(FileKind::kAwd, "1", name);
    EXPECT_GT(FileBytes(Path(name)).size(), 14U) << name;
    Save(name + ".pgm");
    EXPECT_TRUE(std::filesystem::exists(Path(name + ".pgm"))) << name;
  }
  for (const std::string& name : others) EXPECT_EQ(FileBytes(Path(name)), (Bytes{1, 2, 3})) << name;
}

TEST_F(Files, ADroppedOrNamedFileNeedsNoQuestionAndSetsTheOptionsToItsOwn) {
  desktop.questions.clear();
  const Image source = Photograph(64, 64);
  for (const Coder& coder : AllCoders()) {
    SCOPED_TRACE(coder.extension);
    const std::string name = "A." + std::string(coder.extension);
    const Bytes file = marovia::Compress(source, {.kind = coder.kind, .rate = 1.5}).file;
    WriteFile(Path(name), file);
    form.OpenFile(Path(name));
    EXPECT_EQ(*form.state.ReconstructedImage, marovia::Decompress(file, coder.kind).image);
    if (coder.kind == FileKind::kAwh) continue;  // which the options do not have
    EXPECT_EQ(form.txtBitRate.text, coder.lossless ? "0" : "1.5");
    EXPECT_EQ(form.cmbWavelet.text, coder.lossless ? "DD 2+2,2 Integer" : "Daub 9/7");
    EXPECT_EQ(form.Label[0].caption, "Decompress");
    EXPECT_TRUE(desktop.questions.empty());
    Go(name);
    EXPECT_EQ(desktop.questions.back().filter, coder.filter);
    EXPECT_EQ(desktop.questions.back().proposedName, name);
    desktop.questions.clear();
  }
  // Of a budget that is no round rate nothing is left out, and the image does not take it away.
  WriteFile(Path("c.pgm"), WriteFormPgm(source));
  const Bytes odd =
      marovia::Compress(Photograph(50, 33), {.kind = FileKind::kAwf, .bytes = 777}).file;
  WriteFile(Path("d.AWF"), odd);
  form.OpenFiles({Path("d.AWF"), Path("c.pgm")});
  EXPECT_EQ(*form.state.SourceImage, source);
  EXPECT_EQ(*form.state.ReconstructedImage, marovia::Decompress(odd, FileKind::kAwf).image);
  EXPECT_FALSE(form.GraphBoxRec.raster.Empty());
  form.OpenFile(Path("notes.txt"));
  EXPECT_EQ(
      form.Report.text,
      "notes.txt: neither an image (bmp, pgm) nor a compressed file (awb, awa, awd, awf, awg, "
      "awc, awh).");
}

TEST_F(Files, TheRateHintSaysHowTheTextIsRead) {
  Load(Photograph(64, 128));
  const std::pair<const char*, const char*> hints[] = {{"0.25", "0.25 bits per pixel: 256 bytes"},
                                                       {".9x", "0.9 bits per pixel: 920 bytes"},
                                                       {"0,25", "lossless"},
                                                       {"-1", "-1 bits per pixel: 0 bytes"},
                                                       {"1e999", "more bits than a file can have"},
                                                       {"0", "lossless"}};
  for (const auto& [text, hint] : hints) {
    form.txtBitRate.text = text;
    EXPECT_EQ(form.RateHint(), hint) << text;
  }
  Drag(10, 10, 20, 20);
  EXPECT_EQ(form.RateHint(), "lossless in the region only");
  form.state.WaveletKind = WaveletKind::kDaub97;
  EXPECT_EQ(form.RateHint(), "not lossless with Daub 9/7");
  form.mnuDecompress_Click();
  EXPECT_EQ(form.RateHint(), "lossless");
}

TEST_F(Files, ABudgetIsRoundedOnceWhereTheRateIsExactAndElseByRows) {
  Load(Photograph(200, 150));
  for (const bool exact : {false, true}) {
    form.state.exactRate = exact;
    Compress(FileKind::kAwb, "0.01", "a.awb");
    EXPECT_EQ(Inspect(FileBytes(Path("a.awb")), FileKind::kAwb).budget, exact ? 300 : 400);
    EXPECT_TRUE(form.RateHint().ends_with(exact ? ": 38 bytes" : ": 50 bytes"));
    Go("a.awb");
    EXPECT_EQ(form.Report.text, "Image decompressed.");
  }
}

}  // namespace
}  // namespace marovia::test
