#include "app/frm_main.h"

namespace marovia {

// A kind that the form's choices do not have: it is decoded whole, and they stay as they are.
void frmMain::OpenContextFile(const std::string& fileName) {
  SendMessage("Decompressing...");
  const Bytes file = ReadChosenFile(fileName);
  SetPointer(Pointer::kBusy);
  ShowHeader(Inspect(file, FileKind::kAwh));
  DecompressOptions options;
  options.onPass = [this](const PassReport& pass) {
    ReportDataRec(static_cast<std::int16_t>(pass.pass), pass.threshold, pass.significant,
                  pass.bits);
  };
  state.ReconstructedImage = Decompress(file, FileKind::kAwh, options).image;
  if (!state.SourceImage->Empty()) DisplayImage(1);
  DisplayImageRec();
  SendMessage("Image decompressed.");
  state.packedFile = file_;
  SetPointer(Pointer::kDefault);
}

}  // namespace marovia
