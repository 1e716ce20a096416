// A desktop without a display: a queue of answers to file questions, and a log of what was asked,
// shown and focused.
#pragma once

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "app/desktop.h"

namespace marovia::test {

class FakeDesktop : public Desktop {
 public:
  // The answers to the next questions; a question without one is cancelled.
  std::deque<std::filesystem::path> answers;
  UnitsPerPixel units;

  std::vector<FileDialog> questions;
  std::vector<std::string> reports;   // each text that Report showed
  std::vector<std::string> repaints;  // the names of all controls, in order
  std::vector<std::string> focused;
  std::vector<StudioRequest> studios;
  std::vector<std::string> helpShown;
  std::vector<Pointer> pointers;

  std::optional<std::filesystem::path> ChooseFile(const FileDialog& dialog) override {
    questions.push_back(dialog);
    if (answers.empty()) return std::nullopt;
    const auto answer = answers.front();
    answers.pop_front();
    return answer;
  }
  void SetPointer(Pointer pointer) override { pointers.push_back(pointer); }
  void Repaint(const Control& control) override {
    repaints.emplace_back(control.name);
    if (control.name == "Report") reports.push_back(static_cast<const TextBox&>(control).text);
  }
  void SetFocus(const Control& control) override { focused.emplace_back(control.name); }
  void ShowStudio(const StudioRequest& request) override { studios.push_back(request); }
  void ShowHelp(const std::filesystem::path& file, int command) override {
    helpShown.push_back(file.string() + " " + std::to_string(command));
  }
  [[nodiscard]] std::filesystem::path ProgramFolder() const override { return "/programs/marovia"; }
  [[nodiscard]] UnitsPerPixel PictureUnits() const override { return units; }

  [[nodiscard]] bool IsBusy() const {
    return !pointers.empty() && pointers.back() == Pointer::kBusy;
  }
};

}  // namespace marovia::test
