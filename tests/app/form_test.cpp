#include "tests/app/form_test.h"

namespace marovia::test {

void FormTest::Load(const Image& image) {
  WriteFile(Path("source.bmp"), WriteBmp(image));
  LoadFile(Path("source.bmp"));
}

void FormTest::LoadFile(const fs::path& file) {
  desktop.answers = {file};
  form.mnuGetImage_Click();
}

void FormTest::Save(const std::string& name) {
  desktop.answers = {Path(name)};
  form.mnuSaveReconstructedImage_Click();
}

void FormTest::Choose(const Coder& coder, const std::string& rate) {
  const int version = coder.method == ScanMethod::kAswdr ? coder.version : 0;
  form.OpMethod.Select(static_cast<std::size_t>(version));
  form.OpEntropyCode.Select(coder.IsArithmetic() ? 1 : 0);
  form.txtBitRate.text = rate;
}

void FormTest::Go(const std::string& name) {
  desktop.answers = {Path(name)};
  form.cmdBegin_Click(0);
}

void FormTest::Compress(FileKind kind, const std::string& rate, const std::string& name) {
  Choose(CoderOf(kind), rate);
  form.mnuCompress_Click();
  Go(name);
}

void FormTest::Decompress(FileKind kind, const std::string& rate, const std::string& name) {
  Choose(CoderOf(kind), rate);
  form.mnuDecompress_Click();
  Go(name);
}

CompressResult FormTest::Expected(FileKind kind, double rate,
                                  const std::optional<Region>& region) const {
  return marovia::Compress(*form.state.SourceImage, {.kind = kind,
                                                     .wavelet = WaveletKind::kInteger53,
                                                     .levels = 4,
                                                     .rate = rate,
                                                     .region = region,
                                                     .share = 0.9F,
                                                     .pad = false});
}

std::string FormTest::Compute(std::size_t measure) {
  form.mnuErrormeasures_Click();
  form.OpErrorMeasure.Select(measure);
  form.cmdBegin_Click(1);
  return form.Report.text;
}

void FormTest::Drag(float x1, float y1, float x2, float y2) {
  form.GraphBox_MouseDown(kLeft, 0, x1, y1);
  form.GraphBox_MouseMove(kLeft, 0, (x1 + x2) / 2, (y1 + y2) / 2);
  form.GraphBox_MouseUp(kLeft, 0, x2, y2);
}

}  // namespace marovia::test
