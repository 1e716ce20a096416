#include "codec/coders.h"

#include <algorithm>

#include "app/frm_main.h"
#include "base/number_text.h"
#include "codec/compression.h"
#include "codec/decompression.h"
#include "codec/geometry.h"
#include "coding/file_header.h"

namespace marovia {
namespace {

constexpr const char* kRateHeld = "Bpp value too large, decompressing at largest possible rate.";

}  // namespace

// clang-format off
void frmMain::Compress_WDR_Binary()                { Compress(FileKind::kAwb, Emphasis::kNone); }
void frmMain::Compress_WDR_Arithmetic()            { Compress(FileKind::kAwa, Emphasis::kNone); }
void frmMain::Compress_ASWDR_Binary_Ver1()         { Compress(FileKind::kAwd, Emphasis::kNone); }
void frmMain::Compress_ASWDR_Arithmetic_Ver1()     { Compress(FileKind::kAwf, Emphasis::kNone); }
void frmMain::Compress_ASWDR_Ver1_Lossless()       { Compress(FileKind::kAwg, Emphasis::kNone); }
void frmMain::Compress_WDR_Binary_ROI()            { Compress(FileKind::kAwb, Emphasis::kRegion); }
void frmMain::Compress_WDR_Arithmetic_ROI()        { Compress(FileKind::kAwa, Emphasis::kRegion); }
void frmMain::Compress_ASWDR_Binary_Ver1_ROI()     { Compress(FileKind::kAwd, Emphasis::kRegion); }
void frmMain::Compress_ASWDR_Arithmetic_Ver1_ROI() { Compress(FileKind::kAwf, Emphasis::kRegion); }
void frmMain::Compress_ASWDR_Ver1_Lossless_ROI()   { Compress(FileKind::kAwg, Emphasis::kRegion); }
void frmMain::DeCompress_WDR_Binary()              { DeCompress(FileKind::kAwb); }
void frmMain::DeCompress_WDR_Arithmetic()          { DeCompress(FileKind::kAwa); }
void frmMain::DeCompress_ASWDR_Binary_Ver1()       { DeCompress(FileKind::kAwd); }
void frmMain::DeCompress_ASWDR_Arithmetic_Ver1()   { DeCompress(FileKind::kAwf); }
void frmMain::DeCompress_ASWDR_Ver1_Lossless()     { DeCompress(FileKind::kAwg); }
void frmMain::Compress_ASWDR_Binary_Ver2()         { Note("Procedure not available yet."); }
void frmMain::DeCompress_ASWDR_Binary_Ver2()       { Note("Procedure not available yet."); }
// clang-format on

void frmMain::Compress(FileKind kind, Emphasis emphasis) {
  RequireImage();
  const Coder& coder = CoderOf(kind);
  if (coder.method == ScanMethod::kAswdr) SendMessage("");
  std::string fileName;
  if (SetCompressedFileName(fileName, coder.extension) == -1) return;
  CompressInto(fileName, coder, emphasis);
}

// Nothing is written before the run is over, so that one that fails leaves an earlier file whole.
void frmMain::CompressInto(const std::string& fileName, const Coder& coder, Emphasis emphasis) {
  file_ = fileName;
  Compression run(coder, *state.SourceImage, state.WaveletKind, state.padToFit);
  if (!WriteHeaderStart(run, coder)) return;
  WriteTransform(run, coder);
  if (emphasis == Emphasis::kRegion) SetRegion(run);

  const auto report = [this](const PassReport& pass) {
    ReportData(static_cast<std::int16_t>(pass.pass), pass.threshold, pass.significant, pass.bits);
  };
  const PassReport closing = run.WritePasses(report);
  WriteChosenFile(fileName, run.File());
  state.packedFile = fileName;
  report(closing);
  ReportCompressedFile(fileName, coder);
  SetPointer(Pointer::kDefault);
  mnuDecompress.enabled = true;
  mnuDecompress_Click();
}

// False where the number of levels was refused.
bool frmMain::WriteHeaderStart(Compression& run, const Coder& coder) {
  if (coder.HasBudget())
    run.SetBudget(Budget(LeadingNumber(txtBitRate.text), state.NumRows, state.NumCols));
  const std::int16_t levels = coder.lossless ? SetNumberOfLevelsLossless() : SetNumberOfLevels();
  if (levels < 0) return false;
  run.SetLevels(levels);
  return true;
}

void frmMain::WriteTransform(Compression& run, const Coder& coder) {
  SetPointer(Pointer::kBusy);
  SendMessage("Transforming image...");
  const Grid<float>& coefficients =
      coder.lossless ? TransformTheImageLossless(run) : TransformTheImage(run);
  run.SubtractMean();
  state.TransformArray = coefficients;
  run.ChooseThreshold();
}

std::int32_t frmMain::Budget(double rate, int rows, int cols) const {
  const Sides sides{rows, cols};
  return state.exactRate ? BitBudget(rate, sides) : BitBudgetOfRows(rate, sides);
}

// The mask is shown in place of a reconstruction, white where the coefficients belong to the
// region, without what padding added to it.
void frmMain::SetRegion(Compression& run) {
  const Region region = GetROICoordinates();
  const auto share = static_cast<float>(std::clamp(LeadingNumber(txtROIPercent.text), -1.0, 1.0));
  if (const float held = HeldShare(share); held != share) {
    txtROIPercent.text = TrimmedNumberText(held);
    desktop_.Repaint(txtROIPercent);
  }
  Image mask = run.SetRegion(region, share);
  std::ranges::for_each(mask.Samples(), [](std::uint8_t& sample) { sample *= 255; });
  state.ReconstructedImage = Cropped(mask, {state.NumRows, state.NumCols});
  DisplayImageRec();
}

void frmMain::DeCompress(FileKind kind) {
  std::string fileName;
  if (GetCompressedFileName(fileName, Extension(kind)) == -1) return;
  SendMessage("Decompressing...");
  Decode(ReadChosenFile(fileName), kind, Extent::kAtRate);
}

void frmMain::Decode(ByteView file, FileKind kind, Extent extent) {
  SetPointer(Pointer::kBusy);
  Decompression run(file, kind, kDefaultMaxPixels);
  ShowHeader(run.Info());
  const Coder& coder = run.TheCoder();
  const bool held =
      coder.HasBudget() && extent == Extent::kAtRate &&
      run.HoldBudget(Budget(LeadingNumber(txtBitRate.text), run.Info().rows, run.Info().cols));
  if (held) AppendToReport(kRateHeld + std::string("\r\n"));

  const auto report = [this](const PassReport& pass) {
    ReportDataRec(static_cast<std::int16_t>(pass.pass), pass.threshold, pass.significant,
                  pass.bits);
  };
  report(run.ReadPasses(report));
  SendMessage("Inverse transforming...");
  coder.lossless ? InvertTheTransformQuantLossless(run) : InvertTheTransformQuant(run);
  SendMessage("Image decompressed.");
  if (held) AppendToReport(std::string("\r\n") + kRateHeld);
  if (run.Truncated())
    AppendToReport("\r\nThe file is cut short: bits that were asked for are missing.");
  state.packedFile = file_;
  SetPointer(Pointer::kDefault);
}

void frmMain::ShowHeader(const FileInfo& info) {
  state.WaveletKind = info.wavelet;
  ResetWaveletLabel();
  txtLevels.text = TrimmedNumberText(info.levels);
  desktop_.Repaint(txtLevels);
  state.decodedRows = info.rows;
  state.decodedCols = info.cols;
}

}  // namespace marovia
