// A loaded form on a desktop without a display, a folder of its own, and the hands of a user.
#pragma once

#include <deque>

#include "app/frm_main.h"
#include "codec/coders.h"
#include "tests/support/testing.h"

namespace marovia::test {

// A queue of answers to file questions, and a log of what was asked, shown and focused.
class FakeDesktop : public Desktop {
 public:
  // A question without an answer is cancelled.
  std::deque<fs::path> answers;
  UnitsPerPixel units;

  std::vector<FileDialog> questions;
  std::vector<std::string> reports;  // each text that Report showed
  std::vector<std::string> focused;
  std::vector<StudioRequest> studios;
  std::string help;
  bool busy = false;

  std::optional<fs::path> ChooseFile(const FileDialog& dialog) override {
    questions.push_back(dialog);
    if (answers.empty()) return std::nullopt;
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void SetPointer(Pointer pointer) override { busy = pointer == Pointer::kBusy; }
  void Repaint(const Control& control) override {
    if (control.name == "Report") reports.push_back(static_cast<const TextBox&>(control).text);
  }
  void SetFocus(const Control& control) override { focused.emplace_back(control.name); }
  void ShowStudio(const StudioRequest& request) override { studios.push_back(request); }
  void ShowHelp(const fs::path& file, int command) override {
    help = file.string() + " " + std::to_string(command);
  }
  [[nodiscard]] fs::path ProgramFolder() const override { return "/programs/marovia"; }
  [[nodiscard]] UnitsPerPixel PictureUnits() const override { return units; }
};

constexpr std::int16_t kLeft = 1;
constexpr std::int16_t kRight = 2;

class FormTest : public testing::Test {
 protected:
  FormTest() { form.Form_Load(); }

  [[nodiscard]] fs::path Path(const std::string& name) const { return folder.Path() / name; }

  // Writes the image as a BMP and loads it through the menu.
  void Load(const Image& image);
  void LoadFile(const fs::path& file);
  void Save(const std::string& name);
  // Method and coding of a kind, and the rate's text.
  void Choose(const Coder& coder, const std::string& rate);
  void Choose(const Coder& coder) { Choose(coder, coder.lossless ? "0" : "1"); }
  // Go under the answer `name`.
  void Go(const std::string& name);
  void Compress(FileKind kind, const std::string& rate, const std::string& name);
  void Decompress(FileKind kind, const std::string& rate, const std::string& name);
  // What a measure says.
  std::string Compute(std::size_t measure);
  void Drag(float x1, float y1, float x2, float y2);
  // What the library makes of the loaded image with the settings of the start, unpadded.
  [[nodiscard]] CompressResult Expected(FileKind kind, double rate,
                                        const std::optional<Region>& region = {}) const;
  [[nodiscard]] bool InForce() const { return form.state.region.IsInForce(); }
  [[nodiscard]] const Image& Reconstructed() const { return *form.state.ReconstructedImage; }

  TemporaryFolder folder;
  FakeDesktop desktop;
  frmMain form{desktop};
};

}  // namespace marovia::test
