#include "window/side_panel.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStackedWidget>

#include "app/frm_main.h"
#include "window/binds.h"
#include "window/make.h"

namespace marovia {
namespace {

// Of the widest page, so that the pictures stay where they are; wider fonts widen it.
constexpr int kPanelWidth = 248;
constexpr int kNumberWidth = 64;
constexpr int kRateWidth = 112;  // for what the bits of a file make a pixel

class PanelMaker {
 public:
  PanelMaker(frmMain& form, Binds& binds) : form_(form), binds_(binds) {}

  static QWidget& Start() {
    auto& page = Make<QWidget>();
    auto& column = Make<QVBoxLayout>(&page);
    auto& hint = MakeLabel("ModeHint",
                           "Load an image, then choose <b>Compress</b>, <b>Decompress</b> or "
                           "<b>Error measures</b> above.");
    hint.setWordWrap(true);
    column.addWidget(&hint);
    column.addStretch();
    return page;
  }

  QWidget& Coder() {
    auto& page = Make<QWidget>();
    auto& column = Make<QVBoxLayout>(&page);
    column.addWidget(&Heading(form_.Label[0]));
    column.addWidget(&TransformType());
    column.addWidget(&CodingProperties());
    column.addWidget(&Rate());
    column.addLayout(&WaveletAndLevels());
    column.addStretch();
    column.addWidget(&Begin(0));
    return page;
  }

  QWidget& Measures() {
    auto& page = Make<QWidget>();
    auto& column = Make<QVBoxLayout>(&page);
    column.addWidget(&Heading(form_.Label3));
    for (std::size_t i = 0; i < 3; ++i) {
      column.addWidget(&Option(form_.OpErrorMeasure, i, "Measure"));
    }
    auto& restrict = Make<QCheckBox>();
    binds_.Bind(restrict, form_.chkROIErrorOnly);
    column.addWidget(&restrict);
    column.addStretch();
    column.addWidget(&Begin(1));
    return page;
  }

 private:
  QLabel& Caption(const TextLabel& control, QWidget* buddy = nullptr) {
    auto& label = Make<QLabel>();
    label.setBuddy(buddy);
    binds_.Bind(label, control);
    if (buddy != nullptr) buddy->setAccessibleName(QString::fromStdString(control.caption));
    return label;
  }

  QLabel& Heading(const TextLabel& control) {
    auto& label = Caption(control);
    QFont font = label.font();
    font.setBold(true);
    font.setPointSizeF(font.pointSizeF() * 1.2);
    label.setFont(font);
    return label;
  }

  template <std::size_t N>
  QRadioButton& Option(OptionGroup<N>& group, std::size_t i, const QString& what) {
    auto& button = Make<QRadioButton>();
    button.setAccessibleName(what + " " + QString::fromStdString(group[i].caption).trimmed());
    binds_.Bind(button, group[i], [&group, i] { group.Select(i); });
    return button;
  }

  QLineEdit& Number(TextBox& control, int width = kNumberWidth) {
    auto& edit = Make<QLineEdit>();
    edit.setFixedWidth(width);
    edit.setAcceptDrops(false);
    binds_.Bind(edit, control);
    QObject::connect(&edit, &QLineEdit::returnPressed, [form = &form_, binds = &binds_] {
      binds->Run([form] { form->cmdBegin_Click(0); });
    });
    return edit;
  }

  QPushButton& Begin(std::int16_t index) {
    auto& button = Make<QPushButton>();
    binds_.Bind(button, form_.cmdBegin[static_cast<std::size_t>(index)],
                [form = &form_, index] { form->cmdBegin_Click(index); });
    return button;
  }

  QWidget& TransformType() {
    auto& box = Make<QGroupBox>();
    binds_.Bind(box, form_.Frame[0]);
    auto& row = Make<QHBoxLayout>(&box);
    for (std::size_t i = 0; i < 2; ++i) {
      row.addWidget(&Option(form_.OpTransform, i, "Transform type"));
    }
    return box;
  }

  // Each of the two groups has a widget of its own, in which its options exclude each other.
  QWidget& CodingProperties() {
    auto& box = Make<QGroupBox>();
    binds_.Bind(box, form_.Frame[1]);
    auto& column = Make<QVBoxLayout>(&box);
    column.addWidget(&Caption(form_.Label2));
    column.addWidget(&Options(form_.OpMethod, "Method"));
    column.addWidget(&Caption(form_.Label1));
    column.addWidget(&Options(form_.OpEntropyCode, "Symbol encoding"));
    return box;
  }

  template <std::size_t N>
  QWidget& Options(OptionGroup<N>& group, const QString& what) {
    auto& widget = Make<QWidget>();
    auto& grid = Make<QGridLayout>(&widget);
    grid.setContentsMargins(12, 0, 0, 0);
    for (std::size_t i = 0; i < N; ++i) {
      grid.addWidget(&Option(group, i, what), static_cast<int>(i / 2), static_cast<int>(i % 2));
    }
    grid.setColumnStretch(0, 2);
    grid.setColumnStretch(1, 3);
    return widget;
  }

  QWidget& Rate() {
    auto& box = Make<QGroupBox>();
    binds_.Bind(box, form_.Frame[2]);
    auto& rate = Number(form_.txtBitRate, kRateWidth);
    auto& share = Number(form_.txtROIPercent);
    auto& hint = MakeLabel("RateHint");
    hint.setWordWrap(true);
    hint.setAlignment(Qt::AlignRight | Qt::AlignTop);
    binds_.Also([&hint, form = &form_] { hint.setText(QString::fromStdString(form->RateHint())); });
    auto& column = Make<QVBoxLayout>(&box);
    column.addLayout(&Row(Caption(form_.Label[3], &rate), rate));
    column.addWidget(&hint);
    column.addLayout(&Row(Caption(form_.Label[4], &share), share));
    return box;
  }

  static QLayout& Row(QWidget& caption, QWidget& edit) {
    auto& row = Make<QHBoxLayout>();
    row.addWidget(&caption, 1);
    row.addWidget(&edit);
    return row;
  }

  QLayout& WaveletAndLevels() {
    auto& wavelet = Make<QComboBox>();
    binds_.Bind(wavelet, form_.cmbWavelet, [form = &form_] { form->cmbWavelet_Click(); });
    auto& levels = Number(form_.txtLevels);
    auto& grid = Make<QGridLayout>();
    grid.addWidget(&Caption(form_.Label[2], &wavelet), 0, 0);
    grid.addWidget(&wavelet, 0, 1);
    grid.addWidget(&Caption(form_.Label[1], &levels), 1, 0);
    grid.addWidget(&levels, 1, 1);
    grid.setColumnStretch(1, 1);
    return grid;
  }

  frmMain& form_;
  Binds& binds_;
};

}  // namespace

QWidget& MakeSidePanel(frmMain& form, Binds& binds) {
  auto& panel = Make<QStackedWidget>();
  panel.setObjectName("Frame2");
  panel.setMinimumWidth(kPanelWidth);
  PanelMaker maker(form, binds);
  panel.addWidget(&PanelMaker::Start());
  panel.addWidget(&maker.Coder());
  panel.addWidget(&maker.Measures());
  for (int i = 0; i < panel.count(); ++i) panel.widget(i)->layout()->setContentsMargins(0, 0, 0, 0);
  binds.Also([&panel, &form] {
    int page = 0;
    for (int i = 0; i < 2; ++i)
      if (form.frProc[static_cast<std::size_t>(i)].place.top < form.Frame2.place.height)
        page = i + 1;
    panel.setCurrentIndex(page);
  });
  return panel;
}

}  // namespace marovia
