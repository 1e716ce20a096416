#include "tests/app/form_test.h"

#include <fstream>
#include <iterator>
#include <unistd.h>

#include "codec/coders.h"

namespace marovia::test {

namespace fs = std::filesystem;

Bytes FileBytes(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteFile(const fs::path& file, ByteView bytes) {
  std::ofstream stream(file, std::ios::binary);
  for (const std::uint8_t byte : bytes) stream.put(static_cast<char>(byte));
}

Image Photograph(int rows, int cols) {
  const Image whole = ReadImage(FileBytes(MAROVIA_TEST_DATA "/../../Images/camera.pgm")).image;
  Image part(rows, cols);
  for (int r = 0; r < rows; ++r) {
    for (int c = 0; c < cols; ++c) part(r, c) = whole(r + 90, c + 200);
  }
  return part;
}

FormTest::FormTest() {
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  folder = fs::path(testing::TempDir()) /
           (std::string("form-") + test->name() + "-" + std::to_string(::getpid()));
  fs::create_directories(folder);
  form.Form_Load();
}

FormTest::~FormTest() {
  std::error_code ignored;
  fs::remove_all(folder, ignored);
}

void FormTest::Load(const Image& image, const std::string& name) {
  WriteFile(Path(name), WriteBmp(image));
  LoadFile(Path(name));
}

void FormTest::LoadFile(const fs::path& file) {
  desktop.answers = {file};
  form.mnuGetImage_Click();
}

void FormTest::Choose(FileKind kind, std::string rate) {
  const Coder& coder = CoderOf(kind);
  form.OpMethod.Select(coder.method == ScanMethod::kAswdr ? coder.version : 0);
  form.OpEntropyCode.Select(coder.IsArithmetic() ? 1 : 0);
  form.txtBitRate.text = std::move(rate);
}

void FormTest::Compress(FileKind kind, const std::string& rate, const std::string& name) {
  Choose(kind, rate);
  form.mnuCompress_Click();
  desktop.answers = {Path(name)};
  form.cmdBegin_Click(0);
}

void FormTest::Decompress(FileKind kind, const std::string& rate, const std::string& name) {
  Choose(kind, rate);
  form.mnuDecompress_Click();
  desktop.answers = {Path(name)};
  form.cmdBegin_Click(0);
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
