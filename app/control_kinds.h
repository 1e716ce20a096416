// The kinds of controls as plain values: what a view reads to show one, and writes after an edit.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "marovia/image.h"

#include "measures/region.h"

namespace marovia {

inline constexpr int kTwipsPerPixel = 15;  // of 96 to the inch

class frmMain;
// What a click on a control leads to.
using Handler = void (*)(frmMain& form);

// Where a control stands in its container, in twips. Only what a rule moves or stacks is placed; a
// view with layouts of its own may ignore all of it.
struct Place {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;
  friend bool operator==(const Place&, const Place&) = default;
};

// The name, with its index in an array of controls ("OpMethod(0)"), is unique in the form.
struct Control {
  explicit Control(std::string_view itsName) : name(itsName) {}

  std::string_view name;
  std::string spokenName;  // for who hears the form, where no caption beside it says enough
  std::string hint;        // for who lets the pointer rest on it
  bool enabled = true;
  bool visible = true;
  Place place;
  Handler handler = nullptr;
  friend bool operator==(const Control&, const Control&) = default;
};

struct CaptionedControl : Control {
  CaptionedControl(std::string_view itsName, std::string itsCaption)
      : Control(itsName), caption(std::move(itsCaption)) {}

  std::string caption;
};

// In the captions of menus and buttons "&" stands before the letter that reaches them.
struct TextLabel : CaptionedControl {
  using CaptionedControl::CaptionedControl;
};
struct Button : CaptionedControl {
  Button(std::string_view itsName, std::string itsCaption, Handler itsHandler)
      : CaptionedControl(itsName, std::move(itsCaption)) {
    handler = itsHandler;
  }
};
struct MenuItem : CaptionedControl {
  MenuItem(std::string_view itsName, std::string itsCaption, Handler itsHandler = nullptr,
           std::string_view itsKeys = {})
      : CaptionedControl(itsName, std::move(itsCaption)), keys(itsKeys) {
    handler = itsHandler;
  }

  std::string_view keys;  // that choose it from anywhere: "Ctrl+O"
};
struct FrameBox : CaptionedControl {
  using CaptionedControl::CaptionedControl;
};
struct OptionButton : CaptionedControl {
  using CaptionedControl::CaptionedControl;
  bool selected = false;
};
struct CheckBox : CaptionedControl {
  using CaptionedControl::CaptionedControl;
  bool checked = false;
};

struct TextBox : Control {
  explicit TextBox(std::string_view itsName, std::string itsText = {})
      : Control(itsName), text(std::move(itsText)) {}

  std::string text;
  std::size_t selStart = 0;
  std::size_t selLength = 0;
};

struct ComboBox : Control {
  ComboBox(std::string_view itsName, std::string itsText, Handler itsHandler)
      : Control(itsName), text(std::move(itsText)) {
    handler = itsHandler;
  }

  std::string text;
  std::vector<std::string> list;
};

// Options of which at most one is selected; the first at the start. Each is heard as what they
// choose and its caption.
template <std::size_t N>
struct OptionGroup {
  OptionGroup(const std::string& chosenThing, std::array<OptionButton, N> itsOptions)
      : options(std::move(itsOptions)) {
    for (OptionButton& option : options) option.spokenName = chosenThing + " " + option.caption;
    Select(0);
  }

  OptionButton& operator[](std::size_t i) { return options[i]; }
  const OptionButton& operator[](std::size_t i) const { return options[i]; }

  void Select(std::size_t chosen) {
    for (std::size_t i = 0; i < N; ++i) options[i].selected = i == chosen;
  }
  // Where the control is one of them.
  void Select(const Control& control) {
    for (std::size_t i = 0; i < N; ++i)
      if (&options[i] == &control) Select(i);
  }
  // The first selected option, or N.
  [[nodiscard]] std::size_t Selected() const {
    std::size_t i = 0;
    while (i < N && !options[i].selected) ++i;
    return i;
  }

  std::array<OptionButton, N> options;
};

struct Colour {
  unsigned char red = 0;
  unsigned char green = 0;
  unsigned char blue = 0;
  friend bool operator==(const Colour&, const Colour&) = default;
};

// A rectangle in the units in which the mouse is reported.
struct Outline {
  PictureRectangle corners;
  Colour colour;
  friend bool operator==(const Outline&, const Outline&) = default;
};

// A coordinate of a picture: 1 to 256 on its pixels, 0 before the first.
struct PicturePoint {
  int row = 0;
  int col = 0;
  friend bool operator==(const PicturePoint&, const PicturePoint&) = default;
};

enum class PictureContent { kNothing, kImage, kTransform };

enum class PictureKey { kLeft, kRight, kUp, kDown, kCorner, kGiveUp };

// The meaning of a key by its name: "Left", "Space", "Esc".
std::optional<PictureKey> PictureKeyOf(std::string_view name);

struct PictureBox : Control {
  PictureBox(std::string_view itsName, std::string itsSpokenName, std::string itsPlaceholder)
      : Control(itsName), placeholder(std::move(itsPlaceholder)) {
    spokenName = std::move(itsSpokenName);
  }

  // For who hears the form: what an empty picture waits for, or where the arrow keys stand.
  [[nodiscard]] std::string Description() const {
    if (raster.Empty()) return placeholder;
    if (!crosshair) return {};
    return "Crosshair at row " + std::to_string(crosshair->row) + ", column " +
           std::to_string(crosshair->col);
  }

  friend bool operator==(const PictureBox&, const PictureBox&) = default;

  PictureContent content = PictureContent::kNothing;
  std::string placeholder;  // in place of an empty picture
  bool drawnOn = false;     // a region can be drawn on it

  // 256 x 256, or empty where nothing is shown. Pixel (r, c) stands at the picture's coordinate
  // (c + 1, r + 1): its coordinates run from 1 to 256.
  Image raster;
  std::optional<Outline> outline;
  // Where the arrow keys stand.
  std::optional<PicturePoint> crosshair;
};

}  // namespace marovia
