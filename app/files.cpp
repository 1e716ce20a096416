// Files by name or by question: images loaded and saved, compressed files named and opened.
#include <algorithm>
#include <cctype>
#include <utility>

#include "marovia/error.h"

#include "app/form_pgm.h"
#include "app/frm_main.h"
#include "base/checked.h"
#include "codec/coders.h"
#include "image/bmp.h"

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

std::string LowerExtension(const std::filesystem::path& file) {
  std::string extension = file.extension().string();
  if (!extension.empty()) extension.erase(0, 1);
  std::ranges::transform(extension, extension.begin(),
                         [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return extension;
}

bool IsImageName(const std::filesystem::path& file) {
  const std::string extension = LowerExtension(file);
  return extension == "pgm" || extension == "bmp";
}

// "awb, awa, ..."
std::string KnownExtensions() {
  std::string known;
  for (const Coder& coder : AllCoders()) {
    if (!known.empty()) known += ", ";
    known += coder.extension;
  }
  return known;
}

}  // namespace

// The file question is the open form even where a file is about to be written: the flag that asks
// before one is replaced is what guards it.
std::int16_t frmMain::SetCompressedFileName(std::string& fileName, std::string_view extension) {
  dialog.proposedName = NameAfter(state.sourceFile, std::string(".").append(extension));
  return AskForCompressedFile(fileName, extension, "Compress to", kAskBeforeReplacing);
}

std::int16_t frmMain::GetCompressedFileName(std::string& fileName, std::string_view extension) {
  const bool fits = state.packedFile.extension() == "." + std::string(extension) &&
                    state.packedFile.parent_path() == question_.Folder();
  dialog.proposedName = fits ? state.packedFile.filename().string() : "";
  return AskForCompressedFile(fileName, extension, "Decompress", kFileMustExist);
}

std::int16_t frmMain::AskForCompressedFile(std::string& fileName, std::string_view extension,
                                           std::string_view title, int flags) {
  if (const auto kind = KindOfExtension(extension)) dialog.filter = CoderOf(*kind).filter;
  dialog.defaultSuffix = extension;
  dialog.writesFile = (flags & kAskBeforeReplacing) != 0;
  if (!question_.Ask(DialogForm::kOpen, title, flags)) return -1;
  fileName = dialog.fileName;
  return 1;
}

void frmMain::OpenFiles(std::vector<std::filesystem::path> files) {
  std::stable_partition(files.begin(), files.end(), IsImageName);
  for (const std::filesystem::path& file : files) OpenFile(file);
}

void frmMain::OpenFile(const std::filesystem::path& file) {
  Act([this, &file] {
    question_.SetFolder(file.parent_path());
    if (IsImageName(file)) {
      dialog.fileName = file.string();
      LoadChosenImage();
    } else if (const auto kind = KindOfExtension(LowerExtension(file))) {
      OfFile(file.string(), [&] {
        *kind == FileKind::kAwh ? OpenContextFile(file.string())
                                : OpenCompressedFile(file.string(), *kind);
      });
    } else {
      report_.Note(file.filename().string() +
                   ": neither an image (bmp, pgm) nor a compressed file (" + KnownExtensions() +
                   ").");
    }
  });
}

void frmMain::GetTheImage() {
  dialog.filter = "Windows bitmap|*.bmp|PGM file|*.pgm";
  dialog.defaultSuffix = "bmp";
  dialog.writesFile = false;
  dialog.proposedName.clear();
  if (question_.Ask(DialogForm::kOpen, "Get Image", kAskBeforeReplacing)) LoadChosenImage();
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
  const auto load = [&] {
    LoadedImage loaded;
    desktop_.Work([&] { loaded = ReadBmp(ReadChosenFile(fileName), kDefaultMaxPixels); });
    TakeSourceImage(fileName, std::move(loaded.image), std::move(loaded.alteration));
  };
  OfFile(fileName, load, "Error loading file.");
  DisplayImage(1);
}

void frmMain::TakeSourceImage(const std::string& fileName, Image image, std::string alteration) {
  state.sourceFile = fileName;
  state.NumRows = ToInt16(image.Rows());
  state.NumCols = ToInt16(image.Cols());
  state.TransformArray = Grid<float>(image.Rows(), image.Cols());
  state.ReconstructedImage = Image(image.Rows(), image.Cols());

  std::string notes = alteration.empty() ? "" : "The image was read with its " + alteration + ".";
  if (!state.padToFit && !BearsLevels(image)) {
    if (!notes.empty()) notes += "\r\n";
    notes += "The sides, " + SizeText(image) +
             ", are no multiples of 16: the image is coded as it is and comes back unfaithful.";
  }
  state.SourceImage = std::move(image);
  report_.DropNote();
  if (!notes.empty()) report_.Note(notes);
}

void frmMain::SaveTheReconstructedImage() {
  if (state.ReconstructedImage->Empty())
    Fail(Errc::kInvalidArgument, "There is no reconstructed image yet; decompressing makes one.");
  dialog.filter = "Windows Bitmap file|*.bmp|PGM file (*.pgm)|*.pgm";
  dialog.defaultSuffix = "bmp";
  dialog.writesFile = true;
  const bool decoded = !state.packedFile.empty();
  dialog.proposedName = NameAfter(decoded ? state.packedFile : state.sourceFile, "_decoded");
  if (!question_.Ask(DialogForm::kSave, "Save Reconstructed Image", kAskBeforeReplacing)) return;
  const std::string suffix = SuffixOf(dialog.fileName);
  if (suffix == "PGM") SaveRecImage(dialog.fileName);
  if (suffix == "BMP") SaveRecImageAsBmp(dialog.fileName);
}

void frmMain::SaveRecImage(const std::string& fileName) {
  const auto write = [&] { WriteChosenFile(fileName, WriteFormPgm(*state.ReconstructedImage)); };
  OfFile(fileName, [&] { desktop_.Work(write); });
  report_.DropNote();
}

void frmMain::SaveRecImageAsBmp(const std::string& fileName) {
  const auto write = [&] { WriteChosenFile(fileName, WriteBmp(*state.ReconstructedImage)); };
  OfFile(
      fileName, [&] { desktop_.Work(write); }, "Error saving file.");
  report_.DropNote();
}

}  // namespace marovia
