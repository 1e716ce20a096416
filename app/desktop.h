// How the form reaches what is outside it.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "marovia/types.h"

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

// What the studio is to begin with: the source, coded as the form is set, or a compressed file
// beside the source it may have.
struct StudioRequest {
  SharedValue<Image> source = {};
  std::filesystem::path sourceFile = {};
  std::filesystem::path packedFile = {};  // empty where the source is to be coded
  FileKind kind = FileKind::kAwh;
  std::optional<WaveletKind> wavelet = {};
  std::optional<int> levels = {};
  double rate = 0;  // bits per pixel
  std::optional<Region> region = {};
  float share = 0.9F;
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
  // Does what takes long, and comes back when it is done; a view may paint meanwhile, but takes no
  // input. What the work throws is thrown here.
  virtual void Work(const std::function<void()>& work) { work(); }
  // What is said and shown in the middle of such work, or outside of it.
  virtual void Tell(const std::function<void()>& news) { news(); }
  virtual void ShowStudio(const StudioRequest& request) = 0;
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
