// Loading and saving, the file questions, and the names that are answered to them.
#include "image/form_pgm.h"
#include "image/sampling.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Files : public FormTest {};

TEST_F(Files, TheQuestionsCarryTheirFilterFolderFormAndFlags) {
  Load(Photograph(32, 32));
  const FileDialog load = desktop.questions.back();
  EXPECT_EQ(load.filter, "Windows bitmap|*.bmp|PGM file|*.pgm");
  EXPECT_EQ(load.form, DialogForm::kOpen);
  EXPECT_EQ(load.initialFolder, "/programs/marovia/Images");
  EXPECT_EQ(load.fileName + load.proposedName, "");
  EXPECT_FALSE(load.AsksBeforeReplacing());  // only what is written

  desktop.answers.clear();
  form.mnuSaveReconstructedImage_Click();
  EXPECT_EQ(desktop.questions.back().filter, "Windows Bitmap file|*.bmp|PGM file (*.pgm)|*.pgm");
  EXPECT_EQ(desktop.questions.back().form, DialogForm::kSave);
  EXPECT_EQ(desktop.questions.back().flags, 2);
  EXPECT_EQ(desktop.questions.back().initialFolder, folder);
  EXPECT_EQ(desktop.questions.back().proposedName, "source_decoded");

  std::string name = "as it was";
  EXPECT_EQ(form.SetCompressedFileName(name, "awg"), -1);
  EXPECT_TRUE(desktop.questions.back().AsksBeforeReplacing());
  EXPECT_EQ(name, "as it was");
  EXPECT_EQ(desktop.questions.back().form, DialogForm::kOpen);
  EXPECT_EQ(desktop.questions.back().flags, 2);
  EXPECT_EQ(desktop.questions.back().filter, "ASWDR_V1 lossless arith. compression (*.awg)|*.awg");
  EXPECT_EQ(desktop.questions.back().proposedName, "source.awg");
  // An extension that is not in the table leaves the filter of the question before.
  desktop.answers = {"/tmp/x"};
  EXPECT_EQ(form.GetCompressedFileName(name, "AWB"), 1);
  EXPECT_EQ(name, "/tmp/x");
  EXPECT_EQ(desktop.questions.back().flags, 4096);
  EXPECT_EQ(desktop.questions.back().filter, "ASWDR_V1 lossless arith. compression (*.awg)|*.awg");
}

TEST_F(Files, AFileQuestionNamesItsFiltersAndBeginsWithOneThatShowsAFile) {
  const std::string_view filter = "Windows bitmap|*.bmp|PGM file (*.pgm)|*.pgm";
  EXPECT_EQ(FilterNames(filter), "Windows bitmap (*.bmp);;PGM file (*.pgm)");
  EXPECT_EQ(SuffixOfFilter("PGM file (*.pgm)"), "pgm");
  EXPECT_EQ(UsefulFilter(filter, folder), "Windows bitmap (*.bmp)");
  EXPECT_EQ(UsefulFilter(filter, Path("missing")), "Windows bitmap (*.bmp)");
  WriteFile(Path("only.pgm"), {});
  EXPECT_EQ(UsefulFilter(filter, folder), "PGM file (*.pgm)");
  WriteFile(Path("too.bmp"), {});
  EXPECT_EQ(UsefulFilter(filter, folder), "Windows bitmap (*.bmp)");
  EXPECT_EQ(FilterNames("") + UsefulFilter("", folder), "");
}

TEST_F(Files, AWrittenFileBearsTheExtensionOfItsKind) {
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
  Load(Photograph(64, 64));
  Compress(FileKind::kAwf, "1", "made.awf");
  desktop.answers.clear();
  for (const FileKind kind : {FileKind::kAwf, FileKind::kAwa}) {
    Choose(kind, "1");
    form.cmdBegin_Click(0);
    EXPECT_EQ(desktop.questions.back().proposedName, kind == FileKind::kAwf ? "made.awf" : "");
    EXPECT_EQ(desktop.questions.back().initialFolder, folder);
  }
}

TEST_F(Files, TheFilesOfTheProgramAreBesideItOrInTheSharedFolderOfItsInstallation) {
  EXPECT_EQ(FolderOfProgramFiles("/usr/bin"), "/usr/share/marovia");
  WriteFile(Path("Marovia.HLP"), {});
  EXPECT_EQ(FolderOfProgramFiles(folder), folder);
}

TEST_F(Files, ALoadDiscardsTheEarlierTransformAndReconstruction) {
  Load(Photograph(64, 64));
  Compress(FileKind::kAwf, "2", "a.awf");
  Decompress(FileKind::kAwf, "2", "a.awf");
  Load(Photograph(32, 48));
  EXPECT_EQ(form.state.NumRows * 1000 + form.state.NumCols, 32048);
  EXPECT_EQ(form.state.LastRow * 1000 + form.state.LastCol, 31047);
  EXPECT_EQ(*form.state.ReconstructedImage, Image(32, 48));
  EXPECT_EQ(*form.state.TransformArray, Grid<float>(32, 48));
  EXPECT_TRUE(form.GraphBoxRec.raster.Empty());
  EXPECT_TRUE(form.mnuCompress.enabled && form.mnuDecompress.enabled);
}

TEST_F(Files, ThePgmOfTheFormIsRowsFirstSoThatItsSizesComeBackExchanged) {
  Load(Photograph(32, 48));
  form.state.ReconstructedImage = Photograph(32, 48);
  desktop.answers = {Path("r.Pgm")};
  form.mnuSaveReconstructedImage_Click();
  const Bytes file = FileBytes(Path("r.Pgm"));
  EXPECT_EQ(std::string(file.begin(), file.begin() + 13), "P5\n32 48\n255\n");
  EXPECT_EQ(file.size(), 13U + 32 * 48);
  LoadFile(Path("r.Pgm"));
  EXPECT_EQ(form.state.NumRows, 48);
  EXPECT_EQ(form.state.NumCols, 32);
}

TEST_F(Files, AColourBmpTurnsGreyAndSaysSo) {
  LoadFile(MAROVIA_TEST_DATA "/images/colour24.bmp");
  EXPECT_NE(form.Report.text.find("colour turned to grey"), std::string::npos) << form.Report.text;
  EXPECT_EQ(form.state.GraphBoxContent, 'I');
}

TEST_F(Files, OtherExtensionsAndCancelledQuestionsChangeNothing) {
  const Image source = Photograph(32, 32);
  Load(source);
  WriteFile(Path("image.tif"), WritePgm(Photograph(64, 64)));
  LoadFile(Path("image.tif"));
  desktop.answers.clear();
  form.mnuGetImage_Click();
  desktop.answers = {Path("out.tif")};
  form.mnuSaveReconstructedImage_Click();
  EXPECT_FALSE(std::filesystem::exists(Path("out.tif")));
  EXPECT_EQ(*form.state.SourceImage, source);
  EXPECT_TRUE(desktop.reports.empty());
}

TEST_F(Files, ACancelledCompressionOrDecompressionLeavesTheTextExceptOfTheAdaptiveCompressors) {
  Load(Photograph(32, 32));
  for (const FileKind kind :
       {FileKind::kAwb, FileKind::kAwa, FileKind::kAwd, FileKind::kAwf, FileKind::kAwg}) {
    const bool adaptive = kind != FileKind::kAwb && kind != FileKind::kAwa;
    Choose(kind, kind == FileKind::kAwg ? "0" : "1");
    desktop.answers.clear();
    form.Report.text = "before";
    form.mnuCompress_Click();
    form.cmdBegin_Click(0);
    EXPECT_EQ(form.Report.text, adaptive ? "" : "before");
    EXPECT_EQ(form.Label[0].caption, "Compress");
    EXPECT_EQ(form.state.GraphBoxContent, 'I');

    form.Report.text = "before";
    form.mnuDecompress_Click();
    form.cmdBegin_Click(0);
    EXPECT_EQ(form.Report.text, "before");
  }
  EXPECT_FALSE(desktop.IsBusy());
}

TEST_F(Files, AChosenNameIsNeverAPattern) {
  Load(Photograph(32, 32));
  const std::vector<std::string> others = {"aXb1.awd", "a.awd", "ab.awd"};
  for (const std::string& name : others) WriteFile(Path(name), Bytes{1, 2, 3});
  for (const char* name : {"*.awd", "a?b[1].awd", "-"}) {
    Compress(FileKind::kAwd, "1", name);
    EXPECT_GT(FileBytes(Path(name)).size(), 14U) << name;
    desktop.answers = {Path(std::string(name) + ".pgm")};
    form.mnuSaveReconstructedImage_Click();
    EXPECT_TRUE(std::filesystem::exists(Path(std::string(name) + ".pgm"))) << name;
  }
  for (const std::string& name : others) EXPECT_EQ(FileBytes(Path(name)), (Bytes{1, 2, 3})) << name;
}

TEST_F(Files, ADroppedOrNamedFileNeedsNoQuestion) {
  const Image source = Photograph(64, 64);
  const CompressResult whole = marovia::Compress(source, {.kind = FileKind::kAwa, .rate = 1.5});
  WriteFile(Path("a.AWA"), whole.file);
  form.OpenFile(Path("a.AWA"));
  EXPECT_EQ(form.Report.text, "Image decompressed.");
  EXPECT_EQ(*form.state.ReconstructedImage, marovia::Decompress(whole.file, FileKind::kAwa).image);
  EXPECT_TRUE(form.OpMethod[0].selected && form.OpEntropyCode[1].selected);
  EXPECT_EQ(form.txtBitRate.text, "1.5");
  EXPECT_EQ(form.cmbWavelet.text, "Daub 9/7");
  EXPECT_EQ(form.Label[0].caption, "Decompress");
  EXPECT_TRUE(Compute(0).starts_with("There is no image yet"));

  WriteFile(
      Path("b.awg"),
      marovia::Compress(source, {.kind = FileKind::kAwg, .wavelet = WaveletKind::kInteger22}).file);
  form.OpenFile(Path("b.awg"));
  EXPECT_EQ(*form.state.ReconstructedImage, source);
  EXPECT_EQ(form.txtBitRate.text, "0");

  // Of a budget that is no round rate nothing is left out, and the image does not take it away.
  WriteFile(Path("c.pgm"), WriteFormPgm(source));
  const Bytes odd = marovia::Compress(Photograph(50, 33), {.bytes = 777}).file;
  WriteFile(Path("d.awf"), odd);
  form.OpenFiles({Path("d.awf"), Path("c.pgm")});
  EXPECT_EQ(*form.state.SourceImage, source);
  EXPECT_EQ(*form.state.ReconstructedImage, marovia::Decompress(odd, FileKind::kAwf).image);
  EXPECT_EQ(form.state.GraphBoxRecContent, 'I');
  form.OpenFile(Path("notes.txt"));
  EXPECT_TRUE(form.Report.text.starts_with("notes.txt: neither an image")) << form.Report.text;
  EXPECT_TRUE(desktop.questions.empty());
}

TEST_F(Files, TheRateHintSaysHowTheTextIsRead) {
  EXPECT_EQ(form.RateHint(), "0.25 bits per pixel");
  Load(Photograph(64, 128));
  const std::pair<const char*, const char*> hints[] = {
      {"0.25", "0.25 bits per pixel: 256 bytes"},
      {".9x", "0.9 bits per pixel: 920 bytes"},
      {"0,25", "lossless"},
      {"", "lossless"},
      {"-1", "-1 bits per pixel: 0 bytes"},
      {"1e9", "more bits than a file can have"},
      {"1e999", "more bits than a file can have"},
  };
  for (const auto& [text, hint] : hints) {
    form.txtBitRate.text = text;
    EXPECT_EQ(form.RateHint(), hint) << text;
  }
  form.txtBitRate.text = "0";
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
    const auto info = Inspect(FileBytes(Path("a.awb")), FileKind::kAwb);
    EXPECT_EQ(info.budget, exact ? 300 : 400);
    EXPECT_TRUE(form.RateHint().ends_with(exact ? ": 38 bytes" : ": 50 bytes"));
    Decompress(FileKind::kAwb, "0.01", "a.awb");
    EXPECT_EQ(form.Report.text, "Image decompressed.");
  }
}

}  // namespace
}  // namespace marovia::test
