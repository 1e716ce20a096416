#include <algorithm>
#include <cctype>
#include <vector>

#include "app/frm_main.h"
#include "base/number_text.h"
#include "codec/coders.h"
#include "coding/file_header.h"

namespace marovia {
namespace {

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

// The rate at which a file was made; "0" for a lossless one.
std::string RateText(const FileInfo& info) {
  if (!info.budget) return "0";
  return TrimmedNumberText(*info.budget / (static_cast<double>(info.rows) * info.cols));
}

}  // namespace

void frmMain::OpenFiles(std::vector<std::filesystem::path> files) {
  std::stable_partition(files.begin(), files.end(), IsImageName);
  for (const std::filesystem::path& file : files) OpenFile(file);
}

void frmMain::OpenFile(const std::filesystem::path& file) {
  Act([this, &file] {
    lastFolder_ = file.parent_path();
    if (IsImageName(file)) {
      dialog.fileName = file.string();
      LoadChosenImage();
    } else if (const auto kind = KindOfExtension(LowerExtension(file))) {
      *kind == FileKind::kAwh ? OpenContextFile(file.string())
                              : OpenCompressedFile(file.string(), *kind);
    } else {
      Note(file.filename().string() +
           ": neither an image (bmp, pgm) nor a compressed file (awb, awa, awd, awf, awg, awh).");
    }
  });
}

void frmMain::OpenCompressedFile(const std::string& fileName, FileKind kind) {
  SendMessage("Decompressing...");
  const Bytes bytes = ReadChosenFile(fileName);
  const Coder& coder = CoderOf(kind);
  OpMethod.Select(coder.method == ScanMethod::kAswdr ? coder.version : 0);
  OpEntropyCode.Select(coder.IsArithmetic() ? 1 : 0);
  txtBitRate.text = RateText(Inspect(bytes, kind));
  mnuDecompress.enabled = true;
  mnuDecompress_Click();
  Decode(bytes, kind, Extent::kWhole);
}

}  // namespace marovia
