// What Go and Compute lead to, for every combination of the options, as a user sees it: a file of
// some kind, a picture, a message, or nothing.
#include <span>

#include "tests/app/form_test.h"

namespace marovia::test {
namespace {

constexpr std::string_view kNoLossless = "Lossless encoding not available for this option.";
constexpr std::string_view kNotYet = "Procedure not available yet.";
constexpr std::string_view kNoRegionYet = "ROI version of this procedure not available yet.";
constexpr std::string_view kUntouched = "as it was";

// A kind of file by its extension, a message, or the report box as it was.
struct Outcome {
  const char* method;
  const char* coding;
  std::string_view lossyWhole;
  std::string_view lossyRegion;
  std::string_view losslessWhole;
  std::string_view losslessRegion;
};

constexpr Outcome kCompressing[] = {
    {"WDR", "Binary", "awb", "awb", kNoLossless, kNoLossless},
    {"WDR", "Arithmetic", "awa", "awa", kNoLossless, kNoLossless},
    {"ASWDR", "Binary", "awd", "awd", kNoLossless, kNoLossless},
    {"ASWDR", "Arithmetic", "awf", "awf", "awg", "awg"},
    {"ASWDR_2", "Binary", "awc", kNoRegionYet, kNoLossless, kNoLossless},
    {"ASWDR_2", "Arithmetic", kNotYet, kNotYet, kNoLossless, kNoLossless},
};
constexpr Outcome kDecompressing[] = {
    {"WDR", "Binary", "awb", "awb", kNoLossless, kNoLossless},
    {"WDR", "Arithmetic", "awa", "awa", kNoLossless, kNoLossless},
    {"ASWDR", "Binary", "awd", "awd", kNoLossless, kNoLossless},
    {"ASWDR", "Arithmetic", "awf", "awf", "awg", "awg"},
    {"ASWDR_2", "Binary", "awc", "awc", kNoLossless, kNoLossless},
    {"ASWDR_2", "Arithmetic", kUntouched, kUntouched, kNoLossless, kNoLossless},
};

std::string_view At(const Outcome& outcome, bool lossless, bool region) {
  if (lossless) return region ? outcome.losslessRegion : outcome.losslessWhole;
  return region ? outcome.lossyRegion : outcome.lossyWhole;
}

template <std::size_t N>
void SelectByCaption(OptionGroup<N>& group, std::string_view caption) {
  for (std::size_t i = 0; i < N; ++i) {
    if (group[i].caption == caption) group.Select(i);
  }
}

class Dispatch : public FormTest {
 protected:
  void Choose(const Outcome& outcome, bool lossless, bool region) {
    SelectByCaption(form.OpMethod, outcome.method);
    SelectByCaption(form.OpEntropyCode, outcome.coding);
    form.txtBitRate.text = lossless ? "0.0" : "1";
    form.OpDisplayImage_Click();
    if ((form.state.region.IsInForce()) != region) Drag(20, 20, 90, 90);
    form.Report.text = kUntouched;
  }

  [[nodiscard]] CompressResult Expected(FileKind kind, bool region) const {
    CompressOptions options{.kind = kind,
                            .wavelet = WaveletKind::kInteger53,
                            .levels = 4,
                            .rate = 1,
                            .region = {},
                            .pad = false};
    if (region) options.region = form.GetROICoordinates();
    return marovia::Compress(*form.state.SourceImage, options);
  }

  // Go under the answer `name`; whether the user was asked for a file.
  bool Go(const std::string& name) {
    desktop.questions.clear();
    desktop.answers = {Path(name)};
    form.cmdBegin_Click(0);
    return !desktop.questions.empty();
  }

  void GoCompress(std::string_view outcome, bool region) {
    form.mnuCompress_Click();
    const auto kind = KindOfExtension(outcome);
    EXPECT_EQ(Go("file"), kind.has_value());
    if (!kind) {
      EXPECT_EQ(form.Report.text, outcome);
      return;
    }
    EXPECT_EQ(FileBytes(Path("file")), Expected(*kind, region).file);
    std::filesystem::remove(Path("file"));
  }

  void GoDecompress(std::string_view outcome) {
    form.mnuDecompress_Click();
    const auto kind = KindOfExtension(outcome);
    if (!kind) {
      EXPECT_FALSE(Go("file"));
      EXPECT_EQ(form.Report.text, outcome);
      return;
    }
    const Bytes file = Expected(*kind, false).file;
    WriteFile(Path("file"), file);
    EXPECT_TRUE(Go("file"));
    EXPECT_EQ(*form.state.ReconstructedImage, marovia::Decompress(file, *kind).image);
  }

  template <class Play>
  void ForEveryCombination(std::span<const Outcome> table, Play play) {
    Load(Photograph(32, 32));
    for (const Outcome& row : table) {
      for (const bool lossless : {false, true}) {
        for (const bool region : {false, true}) {
          SCOPED_TRACE(std::string(row.method) + " " + row.coding + (lossless ? " lossless" : "") +
                       (region ? " region" : ""));
          Choose(row, lossless, region);
          play(At(row, lossless, region), region);
        }
      }
    }
  }
};

TEST_F(Dispatch, EveryChoiceCompressesToItsKindOrSaysWhyNot) {
  ForEveryCombination(
      kCompressing, [this](std::string_view outcome, bool region) { GoCompress(outcome, region); });
}

TEST_F(Dispatch, EveryChoiceDecompressesItsKindOrSaysWhyNotOrStaysSilent) {
  ForEveryCombination(kDecompressing,
                      [this](std::string_view outcome, bool) { GoDecompress(outcome); });
}

TEST_F(Dispatch, RateTextsThatReadAsZeroAreLossless) {
  Load(Photograph(32, 32));
  struct Case {
    const char* text;
    const char* extension;
  };
  for (const auto& [text, extension] :
       {Case{"0", "awg"}, Case{"0.0", "awg"}, Case{"", "awg"}, Case{"word", "awg"},
        Case{"0,25", "awg"}, Case{"0.25abc", "awf"}, Case{" 1", "awf"}, Case{"-1", "awf"}}) {
    Compress(FileKind::kAwf, text, "file");
    EXPECT_EQ(desktop.questions.back().defaultSuffix, extension) << text;
  }
}

TEST_F(Dispatch, GoDoesNothingBeforeAModeIsChosen) {
  Load(Photograph(32, 32));
  desktop.questions.clear();
  desktop.answers = {Path("file")};
  form.cmdBegin_Click(0);
  EXPECT_TRUE(desktop.questions.empty());
  EXPECT_TRUE(desktop.reports.empty());
}

TEST_F(Dispatch, AnOptionGroupGoesByItsFirstSelectedOption) {
  Load(Photograph(32, 32));
  form.mnuDecompress_Click();
  for (OptionButton& option : form.OpMethod.options) option.selected = true;
  form.cmdBegin_Click(0);
  EXPECT_EQ(desktop.questions.back().filter, "WDR binary compression (*.awb)|*.awb");
  EXPECT_EQ(desktop.questions.back().flags, 4096);
}

}  // namespace
}  // namespace marovia::test
