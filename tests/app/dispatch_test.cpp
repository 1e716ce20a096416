// What Go and Compute lead to, for every combination of the options, as a user sees it: a file of
// some kind with every text that the report shows on the way, a message, or nothing.
#include "marovia/measures.h"

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

// A kind of file by its extension, a message, or the report box as it was.
struct Outcome {
  std::size_t method, coding;
  bool lossless;
  std::string_view compressed, withRegion, decompressed;
};
constexpr Outcome kOutcomes[] = {
    {0, 0, false, "awb", "awb", "awb"},
    {0, 1, false, "awa", "awa", "awa"},
    {1, 0, false, "awd", "awd", "awd"},
    {1, 1, false, "awf", "awf", "awf"},
    {2, 0, false, "awc", kNoRegionYet, "awc"},
    {2, 1, false, kNotYet, kNotYet, kUntouched},
    {0, 0, true, kNoLossless, kNoLossless, kNoLossless},
    {0, 1, true, kNoLossless, kNoLossless, kNoLossless},
    {1, 0, true, kNoLossless, kNoLossless, kNoLossless},
    {1, 1, true, "awg", "awg", "awg"},
    {2, 0, true, kNoLossless, kNoLossless, kNoLossless},
    {2, 1, true, kNoLossless, kNoLossless, kNoLossless},
};

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
    EXPECT_EQ(*form.state.ReconstructedImage, expected.image);
    EXPECT_EQ(form.GraphBoxRec.raster, SampleImage(expected.image));
    EXPECT_EQ(form.GraphBox.raster, SampleImage(source));
    EXPECT_FALSE(desktop.IsBusy());
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
    for (const Outcome& row : kOutcomes) {
      SCOPED_TRACE(testing::Message() << row.method << row.coding << row.lossless << withRegion);
      form.OpMethod.Select(row.method);
      form.OpEntropyCode.Select(row.coding);
      form.txtBitRate.text = row.lossless ? "0.0" : "1";
      GoCompress(withRegion ? row.withRegion : row.compressed, region);
      GoDecompress(row.decompressed, region);
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

}  // namespace
}  // namespace marovia::test
