// Whole runs of use, as a user makes them, with every text that the report box shows on the way.
#include <optional>
#include <ostream>
#include <vector>

#include "marovia/measures.h"

#include "base/number_text.h"
#include "image/sampling.h"
#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

using Texts = std::vector<std::string>;

constexpr int kSide = 128;

struct Run {
  FileKind kind;
  const char* rate;
  const char* file;
};

std::string PassText(const PassReport& pass, const char* verb) {
  return "Pass " + NumberText(pass.pass) + ".  Threshold = " + NumberText(pass.threshold) +
         ".\r\nNumber of significant values " + verb + ":  " + NumberText(pass.significant) +
         "\r\nBit rate:  " + NumberText(double{static_cast<double>(pass.bits)} / (kSide * kSide)) +
         "\r\n";
}

// What the box shows while reports are appended to `text`, ending in the closing one.
void AppendPasses(Texts& texts, std::string& text, const std::vector<PassReport>& passes,
                  const char* verb) {
  for (const PassReport& pass : passes) texts.push_back(text += PassText(pass, verb));
}

Texts CompressTexts(const CompressResult& result, bool aswdr, const std::string& path) {
  Texts texts;
  if (aswdr) texts.emplace_back("");
  texts.insert(texts.end(), {"Transforming image...", ""});
  std::string text;
  AppendPasses(texts, text, result.passes, "encoded");
  texts.push_back(text + (aswdr ? "\r\n" : "") + "Compressed file: " + path +
                  "\r\nTo decompress this file, press the GO button.");
  return texts;
}

Texts DecompressTexts(const DecompressResult& result) {
  Texts texts;
  std::string text;
  texts.push_back(text = "Decompressing...");
  AppendPasses(texts, text, result.passes, "decoded");
  texts.insert(texts.end(), {"Inverse transforming...", "Image decompressed."});
  return texts;
}

Texts MeasureTexts(const Image& a, const Image& b, const std::optional<Region>& region) {
  const ErrorMeasures measures = Measure(a, b, region);
  const std::string roi = region ? "ROI " : "";
  const std::string mean =
      region ? "Mean Square Error:  " + TrimmedNumberText(measures.meanSquareError)
             : "Root Mean Square Error:  " + TrimmedNumberText(measures.rootMeanSquare);
  const std::string psnr =
      measures.psnr ? "PSNR error:  " + TrimmedNumberText(*measures.psnr) : "Error computing PSNR.";
  return {roi + "Sup-norm error:  " + TrimmedNumberText(measures.supNorm), roi + psnr, roi + mean};
}

void PrintTo(const Run& run, std::ostream* stream) {
  *stream << run.file << " at " << run.rate;
}

class WholeRun : public FormTest, public testing::WithParamInterface<Run> {
 protected:
  [[nodiscard]] CompressResult Expected(const std::optional<Region>& region) const {
    return marovia::Compress(source, {.kind = GetParam().kind,
                                      .wavelet = WaveletKind::kInteger53,
                                      .levels = 4,
                                      .rate = LeadingNumber(GetParam().rate),
                                      .region = region,
                                      .share = 0.9F,
                                      .pad = false});
  }
  [[nodiscard]] bool IsAswdr() const {
    return GetParam().kind != FileKind::kAwb && GetParam().kind != FileKind::kAwa;
  }

  void CompressAndCheck(const std::string& name, const CompressResult& expected) {
    desktop.reports.clear();
    Compress(GetParam().kind, GetParam().rate, name);
    EXPECT_EQ(FileBytes(Path(name)), expected.file);
    EXPECT_EQ(desktop.reports, CompressTexts(expected, IsAswdr(), Path(name).string()));
    EXPECT_EQ(form.Report.selStart, form.Report.text.size());
    EXPECT_EQ(form.state.GraphBoxContent, 'T');
    EXPECT_EQ(form.Label[0].caption, "Decompress");
  }

  // Go again takes the file that was just made.
  void DecompressAndCheck(const std::string& name, const DecompressResult& expected) {
    desktop.reports.clear();
    desktop.answers = {Path(name)};
    form.cmdBegin_Click(0);
    EXPECT_EQ(desktop.reports, DecompressTexts(expected));
    EXPECT_EQ(*form.state.ReconstructedImage, expected.image);
    EXPECT_EQ(form.GraphBoxRec.raster, SampleImage(expected.image));
    EXPECT_EQ(form.GraphBox.raster, SampleImage(source));
    EXPECT_EQ(form.state.GraphBoxContent, 'I');
    EXPECT_FALSE(desktop.IsBusy());
  }

  void MeasureAndCheck(const Image& reconstruction, const std::optional<Region>& region) {
    EXPECT_EQ((Texts{Compute(0), Compute(1), Compute(2)}),
              MeasureTexts(source, reconstruction, region));
  }

  const Image source = Photograph(kSide, kSide);
};

TEST_P(WholeRun, LoadsCompressesDecompressesMeasuresAndFavoursARegion) {
  const std::string file = GetParam().file;
  Load(source);
  EXPECT_EQ(*form.state.SourceImage, source);
  EXPECT_EQ(form.GraphBox.raster, SampleImage(source));
  EXPECT_TRUE(desktop.reports.empty());

  const CompressResult whole = Expected({});
  CompressAndCheck(file, whole);
  const DecompressResult back = marovia::Decompress(whole.file, GetParam().kind);
  DecompressAndCheck(file, back);
  EXPECT_EQ(back.image == source, GetParam().kind == FileKind::kAwg);
  MeasureAndCheck(back.image, {});

  // 256 picture coordinates over 128 lines: halves.
  const Region region{20, 30, 60, 70};
  Drag(60, 40, 140, 120);
  EXPECT_EQ(form.Report.text, "Upper left corner: (20, 30)\r\nLower right corner: (60, 70)");
  const CompressResult favoured = Expected(region);
  EXPECT_NE(favoured.file, whole.file);
  CompressAndCheck("region-" + file, favoured);
  const Image regionBack = marovia::Decompress(favoured.file, GetParam().kind).image;
  DecompressAndCheck("region-" + file, marovia::Decompress(favoured.file, GetParam().kind));
  MeasureAndCheck(regionBack, region);
}

INSTANTIATE_TEST_SUITE_P(EveryCoder, WholeRun,
                         testing::Values(Run{FileKind::kAwb, "0.5", "p.awb"},
                                         Run{FileKind::kAwa, "0.5", "p.awa"},
                                         Run{FileKind::kAwd, "0.5", "p.awd"},
                                         Run{FileKind::kAwf, "0.5", "p.awf"},
                                         Run{FileKind::kAwg, "0", "p.awg"}),
                         [](const auto& test) { return std::string(test.param.file).substr(2); });

}  // namespace
}  // namespace marovia::test
