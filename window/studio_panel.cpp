#include "window/studio_panel.h"

#include "codec/coders.h"
#include "wavelet/catalogue.h"
#include "window/curve_view.h"
#include "window/make.h"

namespace marovia {
namespace {

constexpr int kWidth = 320;

QLabel* Value(const char* name) {
  auto* label = Make<QLabel>();
  label->setObjectName(name);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse);
  return label;
}

void ShowNumber(QDoubleSpinBox& box, double value) {
  const QSignalBlocker quiet(box);
  box.setValue(value);
}

QString PsnrText(const std::optional<ErrorMeasures>& measures) {
  if (!measures) return "-";
  return measures->psnr ? QString::number(*measures->psnr, 'f', 2) + " dB" : "identical";
}

}  // namespace

StudioPanel::StudioPanel(Session& session) : session_(session), curve_(Make<CurveView>(session)) {
  setObjectName("Panel");
  setFixedWidth(kWidth);
  auto* others = Make<QCheckBox>(tr("Other kinds beside it"));
  others->setObjectName("Compare");
  connect(others, &QCheckBox::toggled, [this](bool on) {
    const auto kinds = AllKinds();
    session_.Compare(on ? std::set<FileKind>(kinds.begin(), kinds.end()) : std::set<FileKind>());
    ShowCurve();
  });
  curve_->onBytes = [this](std::int64_t bytes) { onBytes(bytes); };
  auto* column =
      Fill(this, QBoxLayout::TopToBottom, {Figures(), curve_, others, Coding(), RegionTools()});
  column->setStretch(1, 1);
  column->setContentsMargins(kMargin, 0, 0, 0);
  ShowRegion();
}

QDoubleSpinBox* StudioPanel::Number(const char* name, const QString& spoken, const QString& unit,
                                    int digits, std::function<void(double)> set) {
  auto* box = Make<QDoubleSpinBox>();
  box->setObjectName(name);
  box->setAccessibleName(spoken);
  box->setRange(0, 1e10);
  box->setDecimals(digits);
  box->setSuffix(unit);
  box->setKeyboardTracking(false);
  box->setGroupSeparatorShown(true);
  box->setStepType(QAbstractSpinBox::AdaptiveDecimalStepType);
  connect(box, &QDoubleSpinBox::valueChanged, std::move(set));
  return box;
}

QWidget* StudioPanel::Figures() {
  const auto scale = [this] { return session_.Scale(); };
  bytes_ = Number("Bytes", tr("Size in bytes"), tr(" bytes"), 0, [=, this](double value) {
    onBytes(scale().Held(static_cast<std::int64_t>(value)));
  });
  rate_ = Number("Rate", tr("Bits per pixel"), tr(" bpp"), 3,
                 [=, this](double value) { onBytes(scale().BytesOfRate(value)); });
  ratio_ = Number("Ratio", tr("Compression ratio"), tr(" : 1"), 1,
                  [=, this](double value) { onBytes(scale().BytesOfRatio(value)); });
  psnr_ = Number("Psnr", tr("PSNR in decibels"), tr(" dB"), 2,
                 [this](double value) { session_.Find(value); });
  psnr_->setSpecialValueText(tr("identical"));
  similarity_ = Value("Similarity");
  auto* figures = Make<QWidget>();
  auto* form = Make<QFormLayout>(figures);
  form->setContentsMargins(0, 0, 0, 0);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->addRow(tr("Si&ze"), bytes_);
  form->addRow(tr("&Rate"), rate_);
  form->addRow(tr("R&atio"), ratio_);
  form->addRow(tr("&PSNR"), psnr_);
  form->addRow(tr("SSIM"), similarity_);
  return figures;
}

QWidget* StudioPanel::Coding() {
  kind_ = Make<QComboBox>();
  kind_->setObjectName("Kind");
  for (const Coder& coder : AllCoders())
    kind_->addItem(Text(coder.extension) + " - " + Text(coder.name), static_cast<int>(coder.kind));
  kind_->view()->setTextElideMode(Qt::ElideNone);
  kind_->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  wavelet_ = Make<QComboBox>();
  wavelet_->setObjectName("Wavelet");
  wavelet_->addItem(tr("The best"), 0);
  for (const WaveletKind wavelet : kWaveletsAsListed)
    wavelet_->addItem(Text(WaveletLabel(wavelet)), static_cast<int>(wavelet));
  levels_ = Make<QSpinBox>();
  levels_->setObjectName("Levels");
  levels_->setRange(0, 12);
  levels_->setSpecialValueText(tr("The best"));
  cost_ = Value("Cost");
  cost_->setWordWrap(true);
  for (QComboBox* box : {kind_, wavelet_})
    connect(box, &QComboBox::activated, [this] { TakeRecipe(); });
  connect(levels_, &QSpinBox::valueChanged, [this] { TakeRecipe(); });
  coding_ = Make<QGroupBox>(tr("Coding"));
  auto* form = Make<QFormLayout>(coding_);
  form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  form->addRow(tr("&Kind"), kind_);
  form->addRow(tr("&Wavelet"), wavelet_);
  form->addRow(tr("&Levels"), levels_);
  form->addRow(cost_);
  return coding_;
}

QWidget* StudioPanel::RegionTools() {
  draw_ = Make<QPushButton>(tr("&Draw"));
  draw_->setObjectName("DrawRegion");
  draw_->setCheckable(true);
  connect(draw_, &QAbstractButton::toggled, [this](bool on) { onDraw(on); });
  clear_ = Make<QPushButton>(tr("&Clear"));
  clear_->setObjectName("ClearRegion");
  connect(clear_, &QAbstractButton::clicked, [this] {
    recipe_.region.reset();
    draw_->setChecked(false);
    ShowRegion();
    onRecipe(recipe_);
  });
  share_ = Make<QSlider>(Qt::Horizontal);
  share_->setObjectName("Share");
  share_->setRange(1, 99);
  share_->setAccessibleName(tr("Share of the bits for the region"));
  connect(share_, &QSlider::valueChanged, [this](int value) {
    recipe_.share = static_cast<float>(value) / 100;
    ShowRegion();
    if (recipe_.region) onRecipe(recipe_);
  });
  inRegion_ = Value("InRegion");
  region_ = Make<QGroupBox>(tr("Region of interest"));
  Fill(region_, QBoxLayout::TopToBottom, {Row({draw_, clear_}), share_, inRegion_});
  return region_;
}

void StudioPanel::TakeRecipe() {
  recipe_.kind = static_cast<FileKind>(kind_->currentData().toInt());
  const int wavelet = wavelet_->currentData().toInt();
  recipe_.wavelet = wavelet == 0 ? std::nullopt : std::optional(static_cast<WaveletKind>(wavelet));
  recipe_.levels = levels_->value() == 0 ? std::nullopt : std::optional(levels_->value());
  onRecipe(recipe_);
}

void StudioPanel::SetRecipe(const Recipe& recipe) {
  const QSignalBlocker quietLevels(levels_);
  const QSignalBlocker quietShare(share_);
  recipe_ = recipe;
  kind_->setCurrentIndex(kind_->findData(static_cast<int>(recipe.kind)));
  wavelet_->setCurrentIndex(
      wavelet_->findData(recipe.wavelet ? static_cast<int>(*recipe.wavelet) : 0));
  levels_->setValue(recipe.levels.value_or(0));
  share_->setValue(qRound(100 * recipe.share));
  ShowRegion();
}

void StudioPanel::SetRegion(const std::optional<Region>& region) {
  recipe_.region = region;
  ShowRegion();
}

void StudioPanel::ShowMaster() {
  const bool hasSource = session_.TheSubject().source != nullptr;
  coding_->setEnabled(hasSource);
  region_->setEnabled(hasSource);
  psnr_->setEnabled(hasSource);
  const FileInfo& info = session_.Info();
  cost_->setText(tr("%1, %2 levels: %3 in %4 ms")
                     .arg(Text(WaveletLabel(info.wavelet)))
                     .arg(info.levels)
                     .arg(session_.TheSubject().file.empty() ? tr("coded") : tr("read"))
                     .arg(session_.CodingMilliseconds(), 0, 'f', 0));
  ShowBytes();
}

void StudioPanel::ShowBytes() {
  const RateScale& scale = session_.Scale();
  ShowNumber(*bytes_, static_cast<double>(session_.Asked()));
  ShowNumber(*rate_, scale.RateOf(session_.Asked()));
  ShowNumber(*ratio_, scale.RatioOf(session_.Asked()));
  curve_->update();
}

void StudioPanel::ShowMeasures() {
  const Look& look = session_.TheSight().look;
  ShowNumber(*psnr_, look.measures ? look.measures->psnr.value_or(0) : 0);
  similarity_->setText(look.similarity ? QString::number(*look.similarity, 'f', 4) : "-");
  ShowRegion();
  curve_->update();
}

void StudioPanel::ShowCurve() {
  curve_->update();
}

void StudioPanel::ShowRegion() {
  clear_->setEnabled(recipe_.region.has_value());
  const QString share = tr("%1 % of the bits").arg(qRound(100 * recipe_.share));
  const auto& inside = session_.TheSight().look.inRegion;
  inRegion_->setText(
      recipe_.region && inside ? tr("%1, PSNR inside %2").arg(share, PsnrText(inside)) : share);
}

}  // namespace marovia
