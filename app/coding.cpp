// A run of a coder, in steps between which the form reads its controls and says what happens.
#include <algorithm>

#include "app/frm_main.h"
#include "base/number_text.h"
#include "codec/coders.h"
#include "codec/compression.h"
#include "codec/decompression.h"
#include "format/file_header.h"
#include "format/geometry.h"
#include "wavelet/catalogue.h"

namespace marovia {
namespace {

constexpr const char* kRateHeld = "Bpp value too large, decompressing at largest possible rate.";

// The rate at which a file was made; "0" for a lossless one.
std::string RateText(const FileInfo& info) {
  if (!info.budget) return "0";
  return TrimmedNumberText(*info.budget / (static_cast<double>(info.rows) * info.cols));
}

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
void frmMain::Compress_ASWDR_Binary_Ver2()         { Compress(FileKind::kAwc, Emphasis::kNone); }
void frmMain::DeCompress_ASWDR_Binary_Ver2()       { DeCompress(FileKind::kAwc); }
// clang-format on

void frmMain::Compress(FileKind kind, Emphasis emphasis) {
  RequireImage();
  const Coder& coder = CoderOf(kind);
  if (coder.method == ScanMethod::kAswdr) SendMessage("");
  std::string fileName;
  if (SetCompressedFileName(fileName, coder.extension) == -1) return;
  OfFile(fileName, [&] { CompressInto(fileName, coder, emphasis); });
}

// Nothing is written before the run is over, so that one that fails leaves an earlier file whole.
void frmMain::CompressInto(const std::string& fileName, const Coder& coder, Emphasis emphasis) {
  Compression run(coder, *state.SourceImage, state.WaveletKind, state.padToFit);
  if (!WriteHeaderStart(run, coder)) return;
  const BusyPointer busy(desktop_);
  WriteTransform(run, coder);
  if (emphasis == Emphasis::kRegion) SetRegion(run);

  const auto report = [this](const PassReport& pass) {
    desktop_.Tell([&] {
      ReportData(static_cast<std::int16_t>(pass.pass), pass.threshold, pass.significant, pass.bits);
    });
  };
  PassReport closing;
  desktop_.Work([&] {
    closing = run.WritePasses(report);
    WriteChosenFile(fileName, run.File());
  });
  state.packedFile = fileName;
  report(closing);
  ReportCompressedFile(fileName, coder);
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
  SendMessage("Transforming image...");
  const Grid<float>& coefficients =
      coder.lossless ? TransformTheImageLossless(run) : TransformTheImage(run);
  desktop_.Work([&] {
    run.SubtractMean();
    state.TransformArray = coefficients;
    run.ChooseThreshold();
  });
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
  Image mask;
  desktop_.Work([&] { mask = run.SetRegion(region, share); });
  std::ranges::for_each(mask.Samples(), [](std::uint8_t& sample) { sample *= 255; });
  state.ReconstructedImage = Cropped(mask, {state.NumRows, state.NumCols});
  DisplayImageRec();
}

void frmMain::DeCompress(FileKind kind) {
  std::string fileName;
  if (GetCompressedFileName(fileName, Extension(kind)) == -1) return;
  SendMessage("Decompressing...");
  OfFile(fileName, [&] {
    Decode(ReadChosenFile(fileName), kind, Extent::kAtRate);
    state.packedFile = fileName;
  });
}

void frmMain::Decode(ByteView file, FileKind kind, Extent extent) {
  const BusyPointer busy(desktop_);
  Decompression run(file, kind, kDefaultMaxPixels);
  ShowHeader(run.Info());
  const Coder& coder = run.TheCoder();
  const bool held =
      coder.HasBudget() && extent == Extent::kAtRate &&
      run.HoldBudget(Budget(LeadingNumber(txtBitRate.text), run.Info().rows, run.Info().cols));
  if (held) report_.Append(kRateHeld + std::string("\r\n"));

  const PassListener report = ReadingReporter();
  PassReport closing;
  desktop_.Work([&] { closing = run.ReadPasses(report); });
  report(closing);
  SendMessage("Inverse transforming...");
  coder.lossless ? InvertTheTransformQuantLossless(run) : InvertTheTransformQuant(run);
  SendMessage("Image decompressed.");
  if (held) report_.Append(std::string("\r\n") + kRateHeld);
  if (run.Truncated())
    report_.Append("\r\nThe file is cut short: bits that were asked for are missing.");
}

void frmMain::ShowHeader(const FileInfo& info) {
  state.WaveletKind = info.wavelet;
  ResetWaveletLabel();
  txtLevels.text = TrimmedNumberText(info.levels);
  desktop_.Repaint(txtLevels);
  state.decodedSides = {info.rows, info.cols};
}

void frmMain::OpenCompressedFile(const std::string& fileName, FileKind kind) {
  SendMessage("Decompressing...");
  const Bytes bytes = ReadChosenFile(fileName);
  const Coder& coder = CoderOf(kind);
  const int method = coder.method == ScanMethod::kAswdr ? coder.version : 0;
  OpMethod.Select(static_cast<std::size_t>(method));
  OpEntropyCode.Select(coder.IsArithmetic() ? 1 : 0);
  txtBitRate.text = RateText(Inspect(bytes, kind));
  mnuDecompress.enabled = true;
  mnuDecompress_Click();
  Decode(bytes, kind, Extent::kWhole);
  state.packedFile = fileName;
}

// A kind that the form's choices do not have: they stay as they are.
void frmMain::OpenContextFile(const std::string& fileName) {
  SendMessage("Decompressing...");
  const Bytes file = ReadChosenFile(fileName);
  const BusyPointer busy(desktop_);
  ShowHeader(Inspect(file, FileKind::kAwh));
  DecompressOptions options;
  options.onPass = ReadingReporter();
  Image image;
  desktop_.Work([&] { image = marovia::Decompress(file, FileKind::kAwh, options).image; });
  TakeReconstruction(std::move(image));
  SendMessage("Image decompressed.");
  state.packedFile = fileName;
}

PassListener frmMain::ReadingReporter() {
  return [this](const PassReport& pass) {
    desktop_.Tell([&] {
      ReportDataRec(static_cast<std::int16_t>(pass.pass), pass.threshold, pass.significant,
                    pass.bits);
    });
  };
}

// A file can be decompressed before any image is loaded; there is no source to show then.
void frmMain::TakeReconstruction(Image image) {
  state.ReconstructedImage = std::move(image);
  if (!state.SourceImage->Empty()) DisplayImage(1);
  DisplayImageRec();
}

const Grid<float>& frmMain::TransformTheImage(Compression& run) {
  const Grid<float>* coefficients = nullptr;
  desktop_.Work([&] { coefficients = &run.Transform(); });
  ShowCoefficients(*coefficients);
  return *coefficients;
}

const Grid<float>& frmMain::TransformTheImageLossless(Compression& run) {
  return TransformTheImage(run);
}

void frmMain::InvertTheTransformQuant(Decompression& run) {
  Image image;
  desktop_.Work([&] { image = run.Invert(); });
  TakeReconstruction(std::move(image));
}

void frmMain::InvertTheTransformQuantLossless(Decompression& run) {
  InvertTheTransformQuant(run);
}

void frmMain::cmbWavelet_Click() {
  if (const auto wavelet = WaveletOfLabel(cmbWavelet.text)) state.WaveletKind = *wavelet;
}

void frmMain::ResetWaveletLabel() {
  cmbWavelet.text = WaveletLabel(state.WaveletKind);
  desktop_.Repaint(cmbWavelet);
}

std::int16_t frmMain::SupportOfWavelet() const {
  return static_cast<std::int16_t>(marovia::SupportOfWavelet(state.WaveletKind));
}

Sides frmMain::SidesForLevels() const {
  const Sides sides{state.NumRows, state.NumCols};
  return state.padToFit ? PaddedSides(sides, 0) : sides;
}

std::int16_t frmMain::SetNumberOfLevels() {
  RequireImage();
  const auto [rows, cols] = SidesForLevels();
  const LevelChoice choice =
      marovia::SetNumberOfLevels(txtLevels.text, rows, cols, state.WaveletKind);
  if (!choice.message.empty()) {
    report_.Note(choice.message);
    desktop_.SetFocus(txtLevels);
  } else if (choice.held) {
    txtLevels.text = TrimmedNumberText(choice.levels);
    desktop_.Repaint(txtLevels);
  }
  return static_cast<std::int16_t>(choice.levels);
}

std::int16_t frmMain::SetNumberOfLevelsLossless() {
  return SetNumberOfLevels();
}

}  // namespace marovia
