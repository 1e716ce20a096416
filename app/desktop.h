// How the form reaches what is outside it.
#pragma once

#include <filesystem>
#include <optional>

#include "app/control_kinds.h"
#include "app/file_dialog.h"
#include "app/viewing.h"

namespace marovia {

enum class Pointer { kDefault, kBusy };

// The units of mouse positions in the pictures: 1 x 1 where they are pixels, 15 x 15 for twips.
struct UnitsPerPixel {
  float vertical = 1;
  float horizontal = 1;
};

class Desktop {
 public:
  Desktop() = default;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;
  virtual ~Desktop() = default;

  // The file that the user chose; nothing where the question was cancelled or could not be put.
  virtual std::optional<std::filesystem::path> ChooseFile(const FileDialog& dialog) = 0;
  virtual void SetPointer(Pointer pointer) = 0;
  // Shows a control's new value at once, in the middle of a handler. After a handler any control
  // may differ.
  virtual void Repaint(const Control& control) = 0;
  virtual void SetFocus(const Control& control) = 0;
  // At full resolution.
  virtual void ShowViewer(const Comparison& images) = 0;
  // Command 3: from the contents.
  virtual void ShowHelp(const std::filesystem::path& file, int command) = 0;

  [[nodiscard]] virtual std::filesystem::path ProgramFolder() const = 0;
  // Where file questions start until a file was used. Need not be there.
  [[nodiscard]] virtual std::filesystem::path PicturesFolder() const {
    return ProgramFolder() / "Images";
  }
  [[nodiscard]] virtual UnitsPerPixel PictureUnits() const { return {}; }

 private:
  friend class BusyPointer;
  int busy_ = 0;  // pointers that live
};

// Shows the busy pointer while it lives; one inside another changes nothing.
class BusyPointer {
 public:
  explicit BusyPointer(Desktop& desktop) : desktop_(desktop) {
    if (desktop_.busy_++ == 0) desktop_.SetPointer(Pointer::kBusy);
  }
  BusyPointer(const BusyPointer&) = delete;
  BusyPointer& operator=(const BusyPointer&) = delete;
  ~BusyPointer() {
    if (--desktop_.busy_ == 0) desktop_.SetPointer(Pointer::kDefault);
  }

 private:
  Desktop& desktop_;
};

}  // namespace marovia
