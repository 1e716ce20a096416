// The box that says what happened.
#pragma once

#include <string>
#include <string_view>

#include "app/desktop.h"

namespace marovia {

class ReportBox {
 public:
  // Both must outlive it.
  ReportBox(TextBox& box, Desktop& desktop) : box_(box), desktop_(desktop) {}

  void Show(std::string_view text) { Put(std::string(text), 0, 0); }
  // What is selected comes into view.
  void Append(std::string_view text) {
    std::string all = box_.text + std::string(text);
    const std::size_t length = all.size();
    Put(std::move(all), 0, length);
  }
  // With the cursor behind it.
  void Close(std::string_view text) {
    std::string all = box_.text + std::string(text);
    const std::size_t length = all.size();
    Put(std::move(all), length, 0);
  }

  // A message that the next good load or save takes away, if it still shows.
  void Note(std::string_view text) {
    Show(text);
    note_ = text;
  }
  void DropNote() {
    if (!note_.empty() && box_.text == note_) Show("");
    note_.clear();
  }

 private:
  void Put(std::string text, std::size_t selStart, std::size_t selLength) {
    box_.text = std::move(text);
    box_.selStart = selStart;
    box_.selLength = selLength;
    desktop_.Repaint(box_);
  }

  TextBox& box_;
  Desktop& desktop_;
  std::string note_;
};

}  // namespace marovia
