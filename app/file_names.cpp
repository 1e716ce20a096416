#include <array>

#include "app/frm_main.h"
#include "files/input_file.h"
#include "files/output_file.h"

namespace marovia {
namespace {

struct CompressedFilter {
  std::string_view extension;
  std::string_view filter;
};

constexpr std::array kCompressedFilters = {
    CompressedFilter{"awb", "WDR binary compression (*.awb)|*.awb"},
    CompressedFilter{"awa", "WDR arith. compression (*.awa)|*.awa"},
    CompressedFilter{"awc", "ASWDR_Ver2 binary compression (*.awc)|*.awc"},
    CompressedFilter{"awd", "ASWDR_Ver1 binary compression (*.awd)|*.awd"},
    CompressedFilter{"awf", "ASWDR_Ver1 arith. compression (*.awf)|*.awf"},
    CompressedFilter{"awg", "ASWDR_V1 lossless arith. compression (*.awg)|*.awg"},
};

// A whole path is never "-", which would be a standard stream.
std::string WholePath(const std::string& fileName) {
  return std::filesystem::absolute(fileName).string();
}

}  // namespace

std::filesystem::path FolderOfProgramFiles(const std::filesystem::path& program) {
  if (exists(program / "Marovia.HLP")) return program;
  return (program / ".." / "share" / "marovia").lexically_normal();
}

// The file question is the open form even where a file is about to be written: the flag that asks
// before one is replaced is what guards it.
std::int16_t frmMain::SetCompressedFileName(std::string& fileName, std::string_view extension) {
  dialog.proposedName = NameAfter(state.sourceFile, std::string(".").append(extension));
  return AskForCompressedFile(fileName, extension, "Compress to", kAskBeforeReplacing);
}

std::int16_t frmMain::GetCompressedFileName(std::string& fileName, std::string_view extension) {
  const bool fits = state.packedFile.extension() == "." + std::string(extension) &&
                    state.packedFile.parent_path() == lastFolder_;
  dialog.proposedName = fits ? state.packedFile.filename().string() : "";
  return AskForCompressedFile(fileName, extension, "Decompress", kFileMustExist);
}

std::int16_t frmMain::AskForCompressedFile(std::string& fileName, std::string_view extension,
                                           std::string_view title, int flags) {
  for (const CompressedFilter& row : kCompressedFilters) {
    if (row.extension == extension) dialog.filter = row.filter;
  }
  dialog.defaultSuffix = extension;
  dialog.writesFile = (flags & kAskBeforeReplacing) != 0;
  if (!AskForFile(DialogForm::kOpen, title, flags)) return -1;
  fileName = dialog.fileName;
  return 1;
}

bool frmMain::AskForFile(DialogForm form, std::string_view title, int flags) {
  dialog.form = form;
  dialog.title = title;
  dialog.flags = flags;
  dialog.fileName.clear();
  dialog.initialFolder = lastFolder_.empty() ? desktop_.PicturesFolder() : lastFolder_;
  const auto chosen = desktop_.ChooseFile(dialog);
  if (!chosen) return false;
  lastFolder_ = chosen->parent_path();
  dialog.fileName = chosen->string();
  return true;
}

Bytes frmMain::ReadChosenFile(const std::string& fileName) {
  file_ = fileName;
  return ReadInput(WholePath(fileName), kDefaultMaxPixels);
}

// Either all of it gets there, or an earlier file of that name stays as it was.
void frmMain::WriteChosenFile(const std::string& fileName, ByteView bytes) {
  file_ = fileName;
  OutputFile(WholePath(fileName), true).Put(bytes);
}

}  // namespace marovia
