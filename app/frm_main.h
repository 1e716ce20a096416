// The form: everything that a user does in the window, without the window.
//
//   FakeDesktop or the Qt window -> frmMain(desktop) -> Form_Load()
//
// An edit is stored in its control's value (txtBitRate.text, OpMethod.Select(1), ...), then the
// control's handler is called, if it has one; Click does both for what is clicked. After any
// handler every control may have changed. A menu item is its control with its handler
// (app/controls.h), and its place in the view.
// An action that fails ends with one sentence in Report; all else is as before it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "marovia/codec.h"

#include "app/controls.h"
#include "app/desktop.h"
#include "app/region_drag.h"
#include "app/report_box.h"
#include "format/geometry.h"

namespace marovia {

class Compression;
class Decompression;
struct Coder;

using Controls = ControlsOf<frmMain>;

// What the form's procedures share besides its controls.
struct AppState {
  marovia::WaveletKind WaveletKind = marovia::WaveletKind::kInteger53;
  RegionDrag region;

  // The loaded image, 0 x 0 before the first load.
  std::int16_t NumRows = 0;
  std::int16_t NumCols = 0;
  SharedValue<Image> SourceImage;

  // The transform of the last forward transform or compression, and the picture of the last
  // inverse transform, decompression or region; zeros of the image's shape after a load. A padded
  // transform and a decompressed file of another image have shapes of their own.
  SharedValue<Grid<float>> TransformArray;
  SharedValue<Image> ReconstructedImage;
  // Of the picture whose bit rate the reports of a decompression give.
  Sides decodedSides;

  // Where the image came from, and the compressed file that was written or read last. File
  // questions propose names after theirs.
  std::filesystem::path sourceFile;
  std::filesystem::path packedFile;

  // Whether sides are padded to what the levels need, and the file tells the true size. Without it
  // such images are coded as they are and do not come back faithfully.
  bool padToFit = false;
  // Whether a budget is the rate times the pixels, rounded once. Without it, it is the bits of a
  // row, rounded, times the rows.
  bool exactRate = false;
};

// NOLINTNEXTLINE(readability-identifier-naming): the form bears this name
class frmMain : public Controls {
 public:
  // The desktop must outlive the form.
  explicit frmMain(Desktop& desktop) : desktop_(desktop) {}

  AppState state;

  // Start and end.
  void Form_Load();
  void Form_Unload();
  void InitializeGlobalVariables();
  void InitializeSideBox();
  void InitializeWaveletLabels();
  void CreatePublicVersionOfForm();

  // A click as a view sees it: on an option or a check box it sets the mark; then the control's
  // handler runs, if it has one. So does a choice in a list that is stored already.
  void Click(const Control& control);

  // Handlers.
  void mnuGetImage_Click();
  void mnuSaveReconstructedImage_Click();
  void mnuTransformImage_Click();
  void mnuCompress_Click();
  void mnuDecompress_Click();
  void mnuErrormeasures_Click();
  void mnuHelp_Click();
  void cmdBegin_Click(std::int16_t index);
  void cmbWavelet_Click();
  void OpDisplayImage_Click();
  void OpDisplayTransform_Click();
  // Button 1 is the left one; a move gives the sum of those held down. Positions in the units of
  // Desktop::PictureUnits.
  void GraphBox_MouseDown(std::int16_t button, std::int16_t shift, float x, float y);
  void GraphBox_MouseMove(std::int16_t button, std::int16_t shift, float x, float y);
  void GraphBox_MouseUp(std::int16_t button, std::int16_t shift, float x, float y);
  // The press before was no beginning of a region: what it did is taken back.
  void GraphBox_DblClick();
  // A rectangle without a mouse: an arrow brings up a crosshair (a long step moves it 16 at a
  // time), kCorner sets one corner and then the other. False where the key means nothing.
  bool GraphBox_KeyDown(PictureKey key, bool longStep);
  void GraphBox_LostFocus();
  void cmdStudio_Click();

  // The same as a view sees it, of either picture: a mouse handler gets its coordinate, a key is
  // known by its name ("Left", "Space"). A double-click, and Enter where a region has no use for
  // it, open the studio.
  using MouseHandler = void (frmMain::*)(std::int16_t, std::int16_t, float, float);
  void Picture_Mouse(const PictureBox& picture, MouseHandler handler, unsigned buttons,
                     PicturePoint at);
  void Picture_DblClick(const PictureBox& picture);
  bool Picture_KeyDown(const PictureBox& picture, std::string_view name, bool longStep);

  // A file by its name alone, dropped or named at the start: an image is loaded, a compressed file
  // decompressed whole, with the options set to what it was made with. Of several the images come
  // first, since a load takes the reconstruction away.
  void OpenFile(const std::filesystem::path& file);
  void OpenFiles(std::vector<std::filesystem::path> files);
  // How the text of txtBitRate is read: "0.25 bits per pixel: 8192 bytes", "lossless", or why a
  // rate of 0 is not. The bytes only while an image is loaded.
  [[nodiscard]] std::string RateHint() const;
  // What stands above the pictures: "Source: 512 x 512 pixels".
  [[nodiscard]] std::string SourceCaption() const;
  [[nodiscard]] std::string ReconstructionCaption() const;

  // Reports.
  void SendMessage(std::string_view text);
  void ReportData(std::int16_t pass, float threshold, std::int32_t significantCount,
                  std::int32_t bitCount);
  void ReportDataRec(std::int16_t pass, float threshold, std::int32_t significantCount,
                     std::int32_t bitCount);
  void ReportROICoordinates();

  // Files. Deletes what matches in the current folder; never fails. Not for a chosen name.
  static void SafeKill(const std::string& pattern);
  // 1 with the chosen name, or -1 with the name as it was.
  std::int16_t SetCompressedFileName(std::string& fileName, std::string_view extension);
  std::int16_t GetCompressedFileName(std::string& fileName, std::string_view extension);
  void GetTheImage();
  void LoadImage();
  void LoadBMPImage(const std::string& fileName);
  void DisplayBMPImage(const std::string& fileName);
  void SaveTheReconstructedImage();
  void SaveRecImage(const std::string& fileName);
  void SaveRecImageAsBmp(const std::string& fileName);

  // Pictures. Mode 0 reads the chosen PGM first.
  void DisplayImage(std::int16_t mode);
  void DisplayImageWaveletTransform();
  void DisplayImageRec();

  // Levels and wavelet. The number of levels, or -1 where it was refused.
  std::int16_t SetNumberOfLevels();
  std::int16_t SetNumberOfLevelsLossless();
  void ResetWaveletLabel();
  [[nodiscard]] std::int16_t SupportOfWavelet() const;

  // Transforms: of the panel, and as steps of a run.
  void TransformTheImage();
  void InvertTheTransform();
  const Grid<float>& TransformTheImage(Compression& run);
  const Grid<float>& TransformTheImageLossless(Compression& run);
  void InvertTheTransformQuant(Decompression& run);
  void InvertTheTransformQuantLossless(Decompression& run);

  // Measures and region. A `which` of 0 is the PSNR, any other the root mean square error.
  void ComputeSupNormError();
  void ComputeMSEorPSNR(std::int16_t which);
  [[nodiscard]] Region GetROICoordinates() const;

  // What Go leads to.
  void Compress_WDR_Binary();
  void Compress_WDR_Arithmetic();
  void Compress_ASWDR_Binary_Ver1();
  void Compress_ASWDR_Arithmetic_Ver1();
  void Compress_ASWDR_Ver1_Lossless();
  void Compress_WDR_Binary_ROI();
  void Compress_WDR_Arithmetic_ROI();
  void Compress_ASWDR_Binary_Ver1_ROI();
  void Compress_ASWDR_Arithmetic_Ver1_ROI();
  void Compress_ASWDR_Ver1_Lossless_ROI();
  void DeCompress_WDR_Binary();
  void DeCompress_WDR_Arithmetic();
  void DeCompress_ASWDR_Binary_Ver1();
  void DeCompress_ASWDR_Arithmetic_Ver1();
  void DeCompress_ASWDR_Ver1_Lossless();
  // Of the hidden choice; files made so open by name all the same.
  void Compress_ASWDR_Binary_Ver2();
  void DeCompress_ASWDR_Binary_Ver2();

 private:
  enum class Emphasis { kNone, kRegion };
  enum class Extent { kAtRate, kWhole };

  // Runs an action of the user. Where it throws, its changes are taken back.
  void Act(const std::function<void()>& action);
  // Error kInvalidArgument.
  void RequireImage() const;

  void ShowPanel(std::string_view mode, bool transformType, bool coding, bool bitRate);
  void GoTransform();
  void GoCoder();
  void Compute();

  void ReportCompressedFile(const std::string& fileName, const Coder& coder);

  std::int16_t AskForCompressedFile(std::string& fileName, std::string_view extension,
                                    std::string_view title, int flags);
  void LoadChosenImage();
  void TakeSourceImage(const std::string& fileName, Image image, std::string alteration);

  void ShowCoefficients(const Grid<float>& coefficients);
  void RefreshGraphBox();
  void ShowStudio();
  [[nodiscard]] StudioRequest RequestOfStudio() const;
  [[nodiscard]] Sides SidesForLevels() const;

  void Draw(RegionDrag::Step step, float x, float y);
  void DrawAtCrosshair(RegionDrag::Step step);
  void MoveCrosshair(PictureKey key, bool longStep);
  void SetCorner();
  void PutCrosshairAway();

  [[nodiscard]] std::string LosslessHint() const;
  // The bits of a picture at a rate. Error kOverflow where they leave 32 bits.
  [[nodiscard]] std::int32_t Budget(double rate, int rows, int cols) const;
  void Compress(FileKind kind, Emphasis emphasis);
  void CompressInto(const std::string& fileName, const Coder& coder, Emphasis emphasis);
  bool WriteHeaderStart(Compression& run, const Coder& coder);
  void WriteTransform(Compression& run, const Coder& coder);
  void SetRegion(Compression& run);
  void DeCompress(FileKind kind);
  void Decode(ByteView file, FileKind kind, Extent extent);
  void ShowHeader(const FileInfo& info);
  void OpenCompressedFile(const std::string& fileName, FileKind kind);
  void OpenContextFile(const std::string& fileName);
  PassListener ReadingReporter();
  void TakeReconstruction(Image image);

  Desktop& desktop_;
  ReportBox report_{Report, desktop_};
  FileQuestion question_{dialog, desktop_};
  bool acting_ = false;
  // The region, and where else it shows, before the mouse was pressed.
  std::optional<std::tuple<RegionDrag, CheckBox, TextBox>> beforePress_;
};

}  // namespace marovia
