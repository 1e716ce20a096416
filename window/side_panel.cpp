#include "window/main_window.h"

namespace marovia {
namespace {

// Of the widest page, so that the pictures stay where they are; wider fonts widen it.
constexpr int kPanelWidth = 248;
// Digits that a field has room for.
constexpr int kNumberDigits = 6;
constexpr int kRateDigits = 12;  // for what the bits of a file make a pixel

QWidget* Heading(Binds& binds, const TextLabel& control) {
  auto* label = binds.New<QLabel>(control);
  QFont font = label->font();
  font.setBold(true);
  font.setPointSizeF(font.pointSizeF() * 1.2);
  label->setFont(font);
  return label;
}

QWidget* Box(Binds& binds, const FrameBox& control, std::initializer_list<QWidget*> parts) {
  auto* box = binds.New<QGroupBox>(control);
  Fill(box, QBoxLayout::TopToBottom, parts);
  return box;
}

// In a widget of their own, in which they exclude each other.
QWidget* Options(Binds& binds, std::span<const OptionButton> options,
                 QBoxLayout::Direction direction = QBoxLayout::LeftToRight) {
  auto* widget = Make<QWidget>();
  auto* layout = Fill(widget, direction, {});
  layout->setContentsMargins(direction == QBoxLayout::LeftToRight ? 12 : 0, 0, 0, 0);
  for (const OptionButton& option : options)
    layout->addWidget(binds.New<QRadioButton>(option, &option.selected), 2 + layout->count());
  // Tab leads to the first while the marked one is hidden.
  binds.Also([options, first = widget->findChild<QRadioButton*>()] {
    const auto seen = [](const OptionButton& option) { return option.selected && option.visible; };
    if (std::ranges::none_of(options, seen)) first->setFocusPolicy(Qt::StrongFocus);
  });
  return widget;
}

QWidget* Field(Binds& binds, const TextLabel& control, QWidget* field) {
  auto* caption = binds.New<QLabel>(control);
  caption->setBuddy(field);
  return Row({caption, Room(), field});
}

// Enter in it is Go.
QWidget* Number(Binds& binds, TextBox& control, int digits = kNumberDigits) {
  auto* edit = binds.New<QLineEdit>(control);
  edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QString(digits, '0')) + 3 * kMargin);
  edit->setAcceptDrops(false);
  QObject::connect(edit, &QLineEdit::returnPressed,
                   [&binds] { binds.Click(binds.Form().cmdBegin[0]); });
  return edit;
}

QWidget* CoderPage(Binds& binds, frmMain& form) {
  auto* hint = binds.New<QLabel>("RateHint", &frmMain::RateHint);
  hint->setWordWrap(true);
  hint->setAlignment(Qt::AlignRight | Qt::AlignTop);
  auto* method = Options(binds, form.OpMethod.options);
  auto* coding = Options(binds, form.OpEntropyCode.options);
  auto* rate = Field(binds, form.Label[3], Number(binds, form.txtBitRate, kRateDigits));
  auto* share = Field(binds, form.Label[4], Number(binds, form.txtROIPercent));
  return Column(
      {Heading(binds, form.Label[0]),
       Box(binds, form.Frame[0], {Options(binds, form.OpTransform.options)}),
       Box(binds, form.Frame[1],
           {binds.New<QLabel>(form.Label2), method, binds.New<QLabel>(form.Label1), coding}),
       Box(binds, form.Frame[2], {rate, hint, share}),
       Field(binds, form.Label[2], binds.New<QComboBox>(form.cmbWavelet)),
       Field(binds, form.Label[1], Number(binds, form.txtLevels)), Room(),
       binds.New<QPushButton>(form.cmdBegin[0])});
}

QWidget* MeasuresPage(Binds& binds, frmMain& form) {
  return Column({Heading(binds, form.Label3),
                 Options(binds, form.OpErrorMeasure.options, QBoxLayout::TopToBottom),
                 binds.New<QCheckBox>(form.chkROIErrorOnly, &form.chkROIErrorOnly.checked), Room(),
                 binds.New<QPushButton>(form.cmdBegin[1])});
}

}  // namespace

QWidget* MakeSidePanel(Binds& binds) {
  auto* hint = binds.New<QLabel>(binds.Form().howToBegin);
  hint->setWordWrap(true);
  hint->setMinimumWidth(kPanelWidth);
  auto* panel = Make<QStackedWidget>();
  panel->setObjectName("Frame2");
  panel->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  panel->addWidget(Column({hint, Room()}));
  panel->addWidget(CoderPage(binds, binds.Form()));
  panel->addWidget(MeasuresPage(binds, binds.Form()));
  binds.Also([panel, &binds] { panel->setCurrentIndex(binds.Form().PanelInView()); });
  return panel;
}

}  // namespace marovia
