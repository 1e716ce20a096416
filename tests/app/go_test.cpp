// What Go and Compute lead to, for every combination of the options, as a user sees it: a file of
// some kind with every text that the report shows on the way, a message, or nothing; and images of
// any size.
#include "base/number_text.h"
#include "image/sampling.h"
#include "measures/measure_text.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

constexpr std::string_view kNoLossless = "Lossless encoding not available for this option.";
constexpr std::string_view kNotYet = "Procedure not available yet.";
constexpr std::string_view kNoRegionYet = "ROI version of this procedure not available yet.";
constexpr std::string_view kUntouched = "as it was";

constexpr int kSide = 128;

// Of a method and a coding: a kind of file by its extension, a message, or the report box as it
// was; lossless there is but one.
struct Outcome {
  std::size_t method, coding;
  std::string_view compressed, withRegion, decompressed;
};
constexpr Outcome kOutcomes[] = {
    {0, 0, "awb", "awb", "awb"},        {0, 1, "awa", "awa", "awa"},
    {1, 0, "awd", "awd", "awd"},        {1, 1, "awf", "awf", "awf"},
    {2, 0, "awc", kNoRegionYet, "awc"}, {2, 1, kNotYet, kNotYet, kUntouched}};

// What the box shows while reports are appended to what it showed last.
void AppendPasses(std::vector<std::string>& texts, const std::vector<PassReport>& passes,
                  const std::string& verb) {
  for (const PassReport& pass : passes) {
    const double rate = pass.bits / double{kSide * kSide};
    texts.push_back(texts.back() + "Pass " + NumberText(pass.pass) +
                    ".  Threshold = " + NumberText(pass.threshold) +
                    ".\r\nNumber of significant values " + verb + ":  " +
                    NumberText(pass.significant) + "\r\nBit rate:  " + NumberText(rate) + "\r\n");
  }
}

class Dispatch : public FormTest {
 protected:
  Dispatch() { Load(source); }

  // Presses Go; false where that only gave a message.
  bool Runs(std::string_view outcome) {
    desktop.questions.clear();
    form.Report.text = kUntouched;
    desktop.reports.clear();
    Go("file");
    EXPECT_EQ(desktop.questions.empty(), !KindOfExtension(outcome));
    if (!desktop.questions.empty()) return true;
    EXPECT_EQ(form.Report.text, outcome);
    return false;
  }

  void GoCompress(std::string_view outcome, const std::optional<Region>& region) {
    form.mnuCompress_Click();
    if (!Runs(outcome)) return;
    const Coder& coder = CoderOf(*KindOfExtension(outcome));
    const CompressResult expected = Expected(coder.kind, 1, region);
    EXPECT_EQ(FileBytes(Path("file")), expected.file);
    const bool aswdr = coder.method == ScanMethod::kAswdr;
    std::vector<std::string> texts(aswdr ? 1 : 0);
    texts.insert(texts.end(), {"Transforming image...", ""});
    AppendPasses(texts, expected.passes, "encoded");
    texts.push_back(texts.back() + (aswdr ? "\r\n" : "") + "Compressed file: " +
                    Path("file").string() + "\r\nTo decompress this file, press the GO button.");
    // The last report and what closes it come at once.
    EXPECT_EQ(desktop.reports, texts);
    EXPECT_EQ(form.Report.selStart, form.Report.text.size());
    EXPECT_EQ(form.GraphBox.content, PictureContent::kTransform);
    EXPECT_EQ(form.Label[0].caption, "Decompress");
  }

  void GoDecompress(std::string_view outcome, const std::optional<Region>& region) {
    form.mnuDecompress_Click();
    const auto kind = KindOfExtension(outcome);
    const bool stays = kind == FileKind::kAwc || !kind;
    const Bytes file = kind ? Expected(*kind, 1, stays ? std::nullopt : region).file : Bytes();
    WriteFile(Path("file"), file);
    if (!Runs(outcome)) return;
    const DecompressResult expected = marovia::Decompress(file, *kind);
    std::vector<std::string> texts = {"Decompressing..."};
    AppendPasses(texts, expected.passes, "decoded");
    texts.insert(texts.end(), {"Inverse transforming...", "Image decompressed."});
    EXPECT_EQ(desktop.reports, texts);
    EXPECT_EQ(Reconstructed(), expected.image);
    EXPECT_EQ(form.GraphBoxRec.raster, SampleImage(expected.image));
    EXPECT_EQ(form.GraphBox.raster, SampleImage(source));
    EXPECT_FALSE(desktop.busy);
    ExpectMeasures(expected.image, region);
  }

  void ExpectMeasures(const Image& image, const std::optional<Region>& region) {
    const ErrorMeasures measures = Measure(source, image, region);
    const MeasuredArea area = region ? MeasuredArea::kRegion : MeasuredArea::kImage;
    EXPECT_EQ(Compute(0), SupNormText(measures, area));
    EXPECT_EQ(Compute(1), PsnrText(measures, area));
    EXPECT_EQ(Compute(2), MeanSquareText(measures, area));
  }

  const Image source = Photograph(kSide, kSide);
};

TEST_F(Dispatch, EveryChoiceRunsItsCoderOrSaysWhyNotOrStaysSilent) {
  for (const bool withRegion : {false, true}) {
    // 256 picture coordinates over 128 lines: halves.
    if (withRegion) Drag(60, 40, 140, 120);
    const auto region = withRegion ? std::optional(Region{20, 30, 60, 70}) : std::nullopt;
    for (const auto& [method, coding, compressed, regional, decompressed] : kOutcomes) {
      SCOPED_TRACE(testing::Message() << method << coding << withRegion);
      form.OpMethod.Select(method);
      form.OpEntropyCode.Select(coding);
      const std::string_view lossless = method == 1 && coding == 1 ? "awg" : kNoLossless;
      form.txtBitRate.text = "0.0";
      GoCompress(lossless, region);
      GoDecompress(lossless, region);
      form.txtBitRate.text = "1";
      GoCompress(withRegion ? regional : compressed, region);
      GoDecompress(decompressed, region);
    }
  }
}

TEST_F(Dispatch, ATextThatReadsAsZeroIsLossless) {
  const std::pair<const char*, const char*> texts[] = {
      {"0", "awg"},    {"0.0", "awg"},     {"", "awg"},   {"word", "awg"},
      {"0,25", "awg"}, {"0.25abc", "awf"}, {" 1", "awf"}, {"-1", "awf"}};
  for (const auto& [text, extension] : texts) {
    Compress(FileKind::kAwf, text, "file");
    EXPECT_EQ(desktop.questions.back().defaultSuffix, extension) << text;
  }
}

TEST_F(Dispatch, GoWaitsForAModeAndGoesByTheFirstOptionOfAGroup) {
  desktop.questions.clear();
  Go("file");
  EXPECT_TRUE(desktop.questions.empty() && desktop.reports.empty());
  form.mnuDecompress_Click();
  for (OptionButton& option : form.OpMethod.options) option.selected = true;
  Go("file");
  EXPECT_EQ(desktop.questions.back().filter, "WDR binary compression (*.awb)|*.awb");
}

class Padding : public FormTest {
 protected:
  void RoundTrip(FileKind kind, const Image& source) {
    Load(source);
    form.txtLevels.text = "4";
    Compress(kind, CoderOf(kind).lossless ? "0" : "1", "a");
    Go("a");
  }
};

TEST_F(Padding, ImagesOfAnySizeComeBackWholeAndAreMeasuredAndSavedAtTheirOwnSize) {
  form.state.padToFit = true;
  for (const auto& [rows, cols] : {std::pair{50, 33}, {3, 5}, {1, 1}, {2, 70}}) {
    const Image source = Photograph(rows, cols);
    RoundTrip(FileKind::kAwg, source);
    EXPECT_EQ(Reconstructed(), source);
    EXPECT_EQ(Compute(0) + Compute(1), "Sup-norm error:  0Error computing PSNR.");
    Save("a.bmp");
    EXPECT_EQ(ReadImage(FileBytes(Path("a.bmp"))).image, source);
  }
  const Image source = Photograph(75, 110);
  Load(source);
  form.txtLevels.text = "4";
  Drag(30, 30, 90, 90);
  Compress(FileKind::kAwf, "2", "a");
  EXPECT_TRUE(Reconstructed().SameShape(source));  // the mask
  Go("a");
  EXPECT_GT(*Measure(source, Reconstructed()).psnr, 20);
}

TEST_F(Padding, WithoutItTheLoadSaysSoAndTheImageIsCodedAsItIs) {
  Load(Photograph(50, 36));
  EXPECT_TRUE(form.Report.text.starts_with("The sides, 36 x 50, are no multiples of 16"));
  const Bytes expected = Expected(FileKind::kAwf, 1).file;
  RoundTrip(FileKind::kAwf, *form.state.SourceImage);
  EXPECT_EQ(FileBytes(Path("a")), expected);
  EXPECT_EQ(form.Report.text, "Image decompressed.");

  RoundTrip(FileKind::kAwg, Photograph(3, 5));  // untransformed
  EXPECT_EQ(form.txtLevels.text, "0");
  EXPECT_EQ(Reconstructed(), *form.state.SourceImage);
  RoundTrip(FileKind::kAwb, Photograph(2, 64));
  EXPECT_EQ(form.Label[0].caption, "Compress");
}

TEST_F(Padding, TheHiddenTransformModeTransformsShowsAndInverts) {
  form.state.padToFit = true;
  using enum WaveletKind;
  for (const auto& [label, wavelet] : {std::pair{"DD 5/3 Integer", kInteger53},
                                       {"DD 2+2,2 Integer", kInteger22},
                                       {"daub 9/7", kInteger22}}) {
    const Image source = Photograph(50, 33);
    Load(source);
    form.cmbWavelet.text = label;
    form.Click(form.cmbWavelet);
    EXPECT_EQ(form.state.WaveletKind, wavelet) << label;
    form.Click(form.mnuTransformImage);
    form.Click(form.cmdBegin[0]);
    EXPECT_EQ(form.state.TransformArray->Rows(), 56);  // a side of 33 bears 3 levels
    const Image transform = SampleCoefficients(*form.state.TransformArray);
    EXPECT_TRUE(form.GraphBox.raster == transform && form.OpDisplayTransform.selected);
    form.Click(form.OpDisplayImage);
    EXPECT_TRUE(form.GraphBox.raster == SampleImage(source) && !form.OpDisplayTransform.enabled);
    form.Click(form.OpDisplayTransform);
    EXPECT_EQ(form.GraphBox.raster, transform);
    form.Click(form.OpTransform[1]);
    form.Click(form.cmdBegin[0]);
    EXPECT_EQ(Reconstructed(), source) << label;
    EXPECT_TRUE(form.GraphBox.raster == form.GraphBoxRec.raster && !form.GraphBox.raster.Empty());
    EXPECT_TRUE(form.OpTransform[0].selected && !form.OpDisplayTransform.enabled && !desktop.busy);
  }
}

}  // namespace
}  // namespace marovia::test
