// All controls of the form, as they are when it is created, with the handlers of its clicks.
#pragma once

#include <array>
#include <cstdint>

#include "app/control_kinds.h"
#include "app/file_dialog.h"

namespace marovia {

// The form is what derives from it: its handlers are named here before it is whole.
template <class Form>
struct ControlsOf {
  template <void (Form::*method)()>
  static void Run(Form& form) {
    (form.*method)();
  }
  template <std::int16_t index>
  static void Begin(Form& form) {
    form.cmdBegin_Click(index);
  }

  Place window;
  FileDialog dialog;

  MenuItem mnuFile{"mnuFile", "&File"};
  MenuItem mnuGetImage{"mnuGetImage", "&Get Image", Run<&Form::mnuGetImage_Click>, "Ctrl+O"};
  MenuItem mnuSeparator{"mnuSeparator", "-"};
  MenuItem mnuSaveReconstructedImage{"mnuSaveReconstructedImage", "&Save Reconstructed Image",
                                     Run<&Form::mnuSaveReconstructedImage_Click>, "Ctrl+S"};
  MenuItem mnuTransformImage =
      Disabled(MenuItem{"mnuTransformImage", "&Transform ", Run<&Form::mnuTransformImage_Click>});
  MenuItem mnuCompress =
      Disabled(MenuItem{"mnuCompress", "&Compress", Run<&Form::mnuCompress_Click>});
  MenuItem mnuDecompress =
      Disabled(MenuItem{"mnuDecompress", "&Decompress", Run<&Form::mnuDecompress_Click>});
  MenuItem mnuErrormeasures{"mnuErrormeasures", "&Error measures",
                            Run<&Form::mnuErrormeasures_Click>};
  MenuItem mnuHelp{"mnuHelp", "&Help", Run<&Form::mnuHelp_Click>, "F1"};

  PictureBox GraphBox = DrawnOn(
      PictureBox{"GraphBox", "Source picture",
                 "Drop an image or a compressed file here, or choose Get Image in the File menu."});
  PictureBox GraphBoxRec{"GraphBoxRec", "Reconstructed picture",
                         "Decompressing shows its picture here."};
  OptionButton OpDisplayTransform =
      Spoken(Disabled(Running(OptionButton{"OpDisplayTransform", "Transform"},
                              Run<&Form::OpDisplayTransform_Click>)),
             "Show the transform");
  OptionButton OpDisplayImage = Spoken(
      Selected(Running(OptionButton{"OpDisplayImage", "Image"}, Run<&Form::OpDisplayImage_Click>)),
      "Show the image");
  Button cmdStudio = Disabled(
      Hinted(Button{"cmdStudio", "Studio...", Run<&Form::cmdStudio_Click>},
             "See what each rate is worth, pixel by pixel (also a double-click on a picture)"));
  TextBox Report = Spoken(TextBox{"Report"}, "Report");

  // The side panel: Frame2 holds the two containers frProc, of which at most one is in view.
  FrameBox Frame2 = Placed(FrameBox{"Frame2", ""}, {.width = 3900, .height = 6615});
  std::array<FrameBox, 2> frProc{FrameBox{"frProc(0)", ""}, FrameBox{"frProc(1)", ""}};
  // While none is.
  TextLabel howToBegin{
      "howToBegin",
      "Load an image, then choose <b>Compress</b>, <b>Decompress</b> or <b>Error measures</b> "
      "above."};

  // In frProc(0): transform, compress and decompress.
  std::array<TextLabel, 5> Label{
      TextLabel{"Label(0)", "Compress/Decompress"}, TextLabel{"Label(1)", "Levels:"},
      TextLabel{"Label(2)", "Wavelet:"}, TextLabel{"Label(3)", "Bit rate (bpp):"},
      TextLabel{"Label(4)", "Percentage of bits to ROI:"}};
  // Before a mode is chosen the frames are those of the two that the first label names.
  std::array<FrameBox, 3> Frame{
      Hidden(Placed(FrameBox{"Frame(0)", "Transform type"}, {.height = 735})),
      Placed(FrameBox{"Frame(1)", "Coding properties"}, {.height = 2415}),
      Placed(FrameBox{"Frame(2)", ""}, {.height = 1095})};
  OptionGroup<2> OpTransform{
      "Transform type",
      {OptionButton{"OpTransform(0)", "Forward "}, OptionButton{"OpTransform(1)", "Inverse "}}};
  FrameBox Frame3 = Placed(FrameBox{"Frame3", ""}, {.height = 1335});
  TextLabel Label2 = Placed(TextLabel{"Label2", "Method:"},
                            {.left = 120, .top = 180, .width = 735, .height = 255});
  OptionGroup<3> OpMethod{"Method",
                          {Placed(OptionButton{"OpMethod(0)", "WDR"},
                                  {.left = 240, .top = 450, .width = 855, .height = 255}),
                           Placed(OptionButton{"OpMethod(1)", "ASWDR"},
                                  {.left = 240, .top = 720, .width = 1095, .height = 255}),
                           Placed(OptionButton{"OpMethod(2)", "ASWDR_2"},
                                  {.left = 240, .top = 990, .width = 1335, .height = 255})}};
  TextLabel Label1{"Label1", "Symbol Encoding:"};
  OptionGroup<2> OpEntropyCode{
      "Symbol encoding",
      {OptionButton{"OpEntropyCode(0)", "Binary"}, OptionButton{"OpEntropyCode(1)", "Arithmetic"}}};
  TextBox txtBitRate{"txtBitRate", "0.25"};
  TextBox txtROIPercent{"txtROIPercent", ".9"};
  ComboBox cmbWavelet{"cmbWavelet", "DD 2+2,2 Integer", Run<&Form::cmbWavelet_Click>};
  TextBox txtLevels{"txtLevels", "4"};

  // In frProc(1): the error measures.
  TextLabel Label3{"Label3", "Error measures"};
  OptionGroup<3> OpErrorMeasure{
      "Measure",
      {OptionButton{"OpErrorMeasure(0)", "Sup"}, OptionButton{"OpErrorMeasure(1)", "PSNR"},
       OptionButton{"OpErrorMeasure(2)", "RMS"}}};
  CheckBox chkROIErrorOnly =
      Disabled(CheckBox{"chkROIErrorOnly", "Restrict to Region of Interest"});

  // One at the foot of each container.
  std::array<Button, 2> cmdBegin{Button{"cmdBegin(0)", "Go", Begin<0>},
                                 Button{"cmdBegin(1)", "Compute", Begin<1>}};

  // The two options beside each other, of which one is selected.
  void SelectDisplay(const OptionButton& chosen) {
    for (OptionButton* option : {&OpDisplayImage, &OpDisplayTransform})
      option->selected = option == &chosen;
  }
  // An option is selected in place of the others of its group; a check box turns.
  void SetMark(const Control& control) {
    OpTransform.Select(control);
    OpMethod.Select(control);
    OpEntropyCode.Select(control);
    OpErrorMeasure.Select(control);
    if (&control == &OpDisplayImage) SelectDisplay(OpDisplayImage);
    if (&control == &OpDisplayTransform) SelectDisplay(OpDisplayTransform);
    if (&control == &chkROIErrorOnly) chkROIErrorOnly.checked = !chkROIErrorOnly.checked;
  }
  // Which container of the side panel is in view, from 1; 0 for none.
  [[nodiscard]] int PanelInView() const {
    const auto inView = [this](const FrameBox& panel) {
      return panel.place.top < Frame2.place.height;
    };
    return inView(frProc[0]) ? 1 : inView(frProc[1]) ? 2 : 0;
  }

 private:
  template <class T>
  static T Disabled(T control) {
    control.enabled = false;
    return control;
  }
  template <class T>
  static T Hidden(T control) {
    control.visible = false;
    return control;
  }
  template <class T>
  static T Spoken(T control, const char* spokenName) {
    control.spokenName = spokenName;
    return control;
  }
  template <class T>
  static T Hinted(T control, const char* hint) {
    control.hint = hint;
    return control;
  }
  template <class T>
  static T Running(T control, Handler handler) {
    control.handler = handler;
    return control;
  }
  static PictureBox DrawnOn(PictureBox picture) {
    picture.drawnOn = true;
    return picture;
  }
  static OptionButton Selected(OptionButton option) {
    option.selected = true;
    return option;
  }
  template <class T>
  static T Placed(T control, Place place) {
    control.place = place;
    return control;
  }
};

}  // namespace marovia
