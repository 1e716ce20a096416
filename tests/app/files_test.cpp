// Loading and saving, the file questions, and the names that are answered to them.
#include <set>

#include "app/form_pgm.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

class Files : public FormTest {
 protected:
  Files() { Load(Photograph(32, 32)); }
};

TEST_F(Files, TheQuestionsCarryTheirFilterFolderFormAndFlags) {
  const auto asked = [this] {
    const FileDialog& q = desktop.questions.back();
    return testing::PrintToString(std::tuple(q.form == DialogForm::kSave, std::to_string(q.flags),
                                             q.filter, q.initialFolder == folder.Path(),
                                             q.proposedName, q.fileName, q.AsksBeforeReplacing()));
  };
  std::string name = "as it was";
  EXPECT_EQ(asked(),
            R"((false, "2", "Windows bitmap|*.bmp|PGM file|*.pgm", false, "", "", false))");
  EXPECT_EQ(desktop.questions.back().initialFolder, "/programs/marovia/Images");
  EXPECT_EQ(form.SetCompressedFileName(name, "awg"), -1);
  EXPECT_EQ(name, "as it was");
  const std::string lossless = R"("ASWDR_V1 lossless arith. compression (*.awg)|*.awg")";
  EXPECT_EQ(asked(), R"((false, "2", )" + lossless + R"(, true, "source.awg", "", true))");
  // An extension that is not in the table leaves the filter of the question before.
  desktop.answers = {"/tmp/x"};
  EXPECT_EQ(form.GetCompressedFileName(name, "AWB"), 1);
  EXPECT_EQ(name, "/tmp/x");
  EXPECT_EQ(asked(), R"((false, "4096", )" + lossless + R"(, true, "", "", false))");
}

TEST_F(Files, AQuestionNamesItsFiltersAndBeginsWithOneThatShowsAFile) {
  const std::string_view filter = "Windows bitmap|*.tif|PGM file (*.pgm)|*.pgm";
  EXPECT_EQ(FilterNames(filter), "Windows bitmap (*.tif);;PGM file (*.pgm)");
  EXPECT_EQ(SuffixOfFilter("PGM file (*.pgm)"), "pgm");
  EXPECT_EQ(UsefulFilter(filter, folder.Path()), "Windows bitmap (*.tif)");
  EXPECT_EQ(UsefulFilter(filter, Path("missing")), "Windows bitmap (*.tif)");
  WriteFile(Path("only.pgm"), {});
  EXPECT_EQ(UsefulFilter(filter, folder.Path()), "PGM file (*.pgm)");
  EXPECT_EQ(FilterNames("") + UsefulFilter("", folder.Path()), "");

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

TEST_F(Files, TheFilesOfTheProgramAreBesideItOrInTheSharedFolderOfItsInstallation) {
  EXPECT_EQ(FolderOfProgramFiles("/usr/bin"), "/usr/share/marovia");
  WriteFile(Path("Marovia.HLP"), {});
  EXPECT_EQ(FolderOfProgramFiles(folder.Path()), folder.Path());
}

TEST_F(Files, ALoadDiscardsTheEarlierTransformAndReconstruction) {
  Compress(FileKind::kAwf, "2", "a.awf");
  Go("a.awf");
  Load(Photograph(32, 48));
  EXPECT_EQ(Reconstructed(), Image(32, 48));
  EXPECT_EQ(*form.state.TransformArray, Grid<float>(32, 48));
  EXPECT_TRUE(form.GraphBoxRec.raster.Empty());
  LoadFile(MAROVIA_TEST_DATA "/images/colour24.bmp");
  EXPECT_NE(form.Report.text.find("colour turned to grey"), std::string::npos) << form.Report.text;
}

TEST_F(Files, ThePgmOfTheFormIsRowsFirstSoThatItsSizesComeBackExchanged) {
  form.state.ReconstructedImage = Photograph(32, 48);
  Save("r.Pgm");
  const Bytes file = FileBytes(Path("r.Pgm"));
  EXPECT_EQ(file, WriteFormPgm(Reconstructed()));
  EXPECT_EQ(std::string(file.begin(), file.begin() + 13), "P5\n32 48\n255\n");
  LoadFile(Path("r.Pgm"));
  EXPECT_EQ(form.state.NumRows * 1000 + form.state.NumCols, 48032);
}

TEST_F(Files, OtherExtensionsAndCancelledQuestionsChangeNothing) {
  WriteFile(Path("image.tif"), WritePgm(Photograph(64, 64)));
  LoadFile(Path("image.tif"));
  form.mnuGetImage_Click();
  Save("out.tif");
  EXPECT_FALSE(fs::exists(Path("out.tif")));
  EXPECT_TRUE(*form.state.SourceImage == Photograph(32, 32) && desktop.reports.empty());
  // The compressors of ASWDR clear the text before they ask.
  for (const Coder& coder : AllCoders()) {
    Choose(coder);
    for (const bool compresses : {true, false}) {
      form.Report.text = "before";
      compresses ? form.mnuCompress_Click() : form.mnuDecompress_Click();
      form.cmdBegin_Click(0);
      const bool clears = compresses && coder.method == ScanMethod::kAswdr;
      EXPECT_EQ(form.Report.text, clears ? "" : "before");
    }
  }
}

TEST_F(Files, AChosenNameIsNeverAPattern) {
  const std::vector<std::string> others = {"aXb1.awd", "a.awd", "ab.awd"};
  for (const std::string& name : others) WriteFile(Path(name), Bytes{1, 2, 3});
  for (const std::string name : {"*.awd", "a?b[1].awd", "-"}) {
    Compress(FileKind::kAwd, "1", name);
    EXPECT_GT(FileBytes(Path(name)).size(), 14U) << name;
    Save(name + ".pgm");
    EXPECT_TRUE(fs::exists(Path(name + ".pgm"))) << name;
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
    EXPECT_EQ(Reconstructed(), marovia::Decompress(file, coder.kind).image);
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
  EXPECT_EQ(Reconstructed(), marovia::Decompress(odd, FileKind::kAwf).image);
  EXPECT_FALSE(form.GraphBoxRec.raster.Empty());
  form.OpenFile(Path("notes.txt"));
  EXPECT_EQ(
      form.Report.text,
      "notes.txt: neither an image (bmp, pgm) nor a compressed file (awb, awa, awd, awf, awg, "
      "awc, awh).");
}

TEST_F(Files, TheRateHintSaysHowTheTextIsRead) {
  Load(Photograph(64, 128));
  for (const auto& [text, hint] : {std::pair{".9x", "0.9 bits per pixel: 920 bytes"},
                                   {"-1", "-1 bits per pixel: 0 bytes"},
                                   {"1e999", "more bits than a file can have"},
                                   {"0,25", "lossless"}}) {
    form.txtBitRate.text = text;
    EXPECT_EQ(form.RateHint(), hint) << text;
  }
  Drag(10, 10, 20, 20);
  EXPECT_EQ(form.RateHint(), "lossless in the region only");
  form.state.WaveletKind = WaveletKind::kDaub97;
  EXPECT_EQ(form.RateHint(), "not lossless with Daub 9/7");
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

TEST_F(Files, UnloadDeletesItsThreePatternsInTheCurrentFolderAndNothingElse) {
  fs::current_path(folder.Path());
  fs::create_directories(Path("folder.wti"));
  for (const char* name : {"a.wti", "b c.rim", ".wtr", "a.wti.txt", "wti", "x.awb"})
    WriteFile(Path(name), {});
  form.Form_Unload();
  form.Form_Unload();  // nothing matches any more
  std::set<std::string> left;
  for (const auto& entry : fs::directory_iterator(folder.Path()))
    left.insert(entry.path().filename().string());
  EXPECT_EQ(left, (std::set<std::string>{"folder.wti", "a.wti.txt", "wti", "x.awb", "source.bmp"}));
  fs::current_path("/");
}

std::string TextOf(const Image& image) {
  return std::to_string(image.Rows()) + "x" + std::to_string(image.Cols()) + " " +
         std::string(image.Samples().begin(), image.Samples().end());
}

TEST(FormPgm, TakesFieldsOfFiveBytesAtMost) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"P5\n3 2\n255\nabcdefg", "2x3 abcdef"},
      // The width "1MB" would be 1024, and only that: "2MB" is 2, a height of "1MB" is 1.
      {"P5\n2MB 1MB\n255\nab", "1x2 ab"},
      // Any byte may follow P5, any maximum or none may be given.
      {"P5x2 1\n\nab", "1x2 ab"},
      {"P5\n2 1\n65535\nab", "1x2 \na"},
      // The blank behind a width of five digits goes to the height.
      {"P5\n00002 1\n255\nab", "1x2 ab"},
      {"P5\n00002 0001\n255\nab", "1x2 25"},
      // The line feed behind a height of five digits is the whole field of the maximum.
      {"P5\n2 00001\n255\nab", "1x2 25"},
      {"P5\n2.5 1.6\n255\nabcd", "2x2 abcd"}};
  for (const auto& [file, image] : cases)
    EXPECT_EQ(TextOf(ReadFormPgm(BytesOf(file))), image) << file;
  EXPECT_EQ(ReadFormPgm(BytesOf("P5\n1MB 1\n255\n" + std::string(1024, 'x'))).Cols(), 1024);
}

TEST(FormPgm, SaysWhatCouldOnlyBeGarbage) {
  const std::tuple<std::string_view, Errc, std::string_view> cases[] = {
      {"P5", Errc::kMalformed, "does not begin with P5"},
      {"P2\n1 1\n255\n0 ", Errc::kMalformed, "does not begin with P5"},
      {"P5\n# by hand\n2 1\n255\nab", Errc::kMalformed, "0 columns"},
      {"P5\n2 -1\n255\nab", Errc::kMalformed, "2 columns and -1 rows"},
      {"P5\n2 1\n255\na", Errc::kMalformed, "need 2 bytes, but 1 are"},
      {"P5\n2 1", Errc::kMalformed, "within its header"},
      {"P5\n9999 9999\n255\n", Errc::kLimit, "9999 rows"},
      {"P5\n32768 1\n255\nab", Errc::kOverflow, "32768"},
      {"P5\n1E999 1\n255\nab", Errc::kOverflow, "too large"}};
  for (const auto& [file, code, part] : cases) {
    EXPECT_EQ(CodeOf([bytes = BytesOf(file)] { ReadFormPgm(bytes); }, part), code) << file;
  }
}

}  // namespace
}  // namespace marovia::test
