#include <algorithm>
#include <cctype>
#include <utility>

#include "app/frm_main.h"
#include "base/checked.h"
#include "image/bmp.h"
#include "image/form_pgm.h"

namespace marovia {
namespace {

// Sides that are multiples of this bear the default of 4 levels unpadded.
constexpr int kFaithfulUnit = 16;

// The last three characters, upper-cased, whatever stands before them.
std::string SuffixOf(const std::string& fileName) {
  std::string suffix = fileName.substr(fileName.size() - std::min<std::size_t>(fileName.size(), 3));
  std::ranges::transform(suffix, suffix.begin(),
                         [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return suffix;
}

bool BearsLevels(const Image& image) {
  return image.Rows() % kFaithfulUnit == 0 && image.Cols() % kFaithfulUnit == 0;
}

}  // namespace

void frmMain::GetTheImage() {
  dialog.filter = "Windows bitmap|*.bmp|PGM file|*.pgm";
  dialog.defaultSuffix = "bmp";
  dialog.writesFile = false;
  dialog.proposedName.clear();
  if (AskForFile(DialogForm::kOpen, "Get Image", kAskBeforeReplacing)) LoadChosenImage();
}

void frmMain::LoadChosenImage() {
  const std::string suffix = SuffixOf(dialog.fileName);
  if (suffix == "PGM") LoadImage();
  if (suffix == "BMP") LoadBMPImage(dialog.fileName);
}

void frmMain::LoadImage() {
  DisplayImage(0);
}

void frmMain::LoadBMPImage(const std::string& fileName) {
  DisplayBMPImage(fileName);
}

void frmMain::DisplayBMPImage(const std::string& fileName) {
  lead_ = "Error loading file.";
  LoadedImage loaded = ReadBmp(ReadChosenFile(fileName), kDefaultMaxPixels);
  TakeSourceImage(std::move(loaded.image), std::move(loaded.alteration));
  DisplayImage(1);
}

void frmMain::TakeSourceImage(Image image, std::string alteration) {
  state.sourceFile = file_;
  state.NumRows = ToInt16(image.Rows());
  state.NumCols = ToInt16(image.Cols());
  state.LastRow = static_cast<std::int16_t>(state.NumRows - 1);
  state.LastCol = static_cast<std::int16_t>(state.NumCols - 1);
  state.decodedRows = state.NumRows;
  state.decodedCols = state.NumCols;
  state.TransformArray = Grid<float>(image.Rows(), image.Cols());
  state.ReconstructedImage = Image(image.Rows(), image.Cols());

  std::string notes = alteration.empty() ? "" : "The image was read with its " + alteration + ".";
  if (!state.padToFit && !BearsLevels(image)) {
    if (!notes.empty()) notes += "\r\n";
    notes += "The sides, " + SizeText(image) +
             ", are no multiples of 16: the image is coded as it is and comes back unfaithful.";
  }
  state.SourceImage = std::move(image);
  DropNote();
  if (!notes.empty()) Note(notes);
}

void frmMain::SaveTheReconstructedImage() {
  if (state.ReconstructedImage->Empty())
    Fail(Errc::kInvalidArgument, "There is no reconstructed image yet; decompressing makes one.");
  dialog.filter = "Windows Bitmap file|*.bmp|PGM file (*.pgm)|*.pgm";
  dialog.defaultSuffix = "bmp";
  dialog.writesFile = true;
  const bool decoded = !state.packedFile.empty();
  dialog.proposedName = NameAfter(decoded ? state.packedFile : state.sourceFile, "_decoded");
  if (!AskForFile(DialogForm::kSave, "Save Reconstructed Image", kAskBeforeReplacing)) return;
  const std::string suffix = SuffixOf(dialog.fileName);
  if (suffix == "PGM") SaveRecImage(dialog.fileName);
  if (suffix == "BMP") SaveRecImageAsBmp(dialog.fileName);
}

void frmMain::SaveRecImage(const std::string& fileName) {
  WriteChosenFile(fileName, WriteFormPgm(*state.ReconstructedImage));
  DropNote();
}

void frmMain::SaveRecImageAsBmp(const std::string& fileName) {
  lead_ = "Error saving file.";
  WriteChosenFile(fileName, WriteBmp(*state.ReconstructedImage));
  DropNote();
}

}  // namespace marovia
