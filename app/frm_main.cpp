#include "app/frm_main.h"

#include <exception>
#include <new>

#include "marovia/error.h"

namespace marovia {

void frmMain::Act(const std::function<void()>& action) {
  // A handler called by another is part of that one's action.
  if (acting_) return action();
  const Controls earlierControls = *this;
  const AppState earlierState = state;
  acting_ = true;
  lead_.clear();
  file_.clear();
  std::string failure;
  try {
    action();
  } catch (const std::bad_alloc&) {
    failure = FailureText("There is not enough memory.");
  } catch (const std::exception& error) {
    failure = FailureText(error.what());
  }
  acting_ = false;
  if (failure.empty()) return;
  static_cast<Controls&>(*this) = earlierControls;
  state = earlierState;
  dragging_ = false;
  SetPointer(Pointer::kDefault);
  Note(failure);
}

std::string frmMain::FailureText(std::string_view what) const {
  std::string text = lead_.empty() ? "" : lead_ + "\r\n";
  if (!file_.empty()) text += std::filesystem::path(file_).filename().string() + ": ";
  text += what;
  if (!text.ends_with('.')) text += '.';
  return text;
}

void frmMain::SetPointer(Pointer pointer) {
  if (pointer == pointer_) return;
  pointer_ = pointer;
  desktop_.SetPointer(pointer);
}

void frmMain::RequireImage() const {
  if (state.SourceImage->Empty())
    Fail(Errc::kInvalidArgument, "There is no image yet; Get Image in the File menu loads one.");
}

}  // namespace marovia
