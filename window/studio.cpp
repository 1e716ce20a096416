#include "window/studio.h"

#include <cmath>

#include "window/picture_files.h"
#include "window/studio_window.h"
#include "window/theme.h"

namespace marovia {
namespace {

constexpr int kMostRecent = 8;

}  // namespace

Studio::Studio() {
  setObjectName("Studio");
  setWindowTitle(tr("Marovia Studio"));
  setAttribute(Qt::WA_DeleteOnClose);
  setAcceptDrops(true);
  MakeFileMenu();
  MakeEditMenu();
  MakeViewMenu();
  MakeHelpMenu();
  MakeBar();
  auto* left = Column({stage_, RateBar()});
  static_cast<QBoxLayout*>(left->layout())->setStretch(0, 1);
  auto* panel = Make<QScrollArea>();
  panel->setWidget(panel_);
  panel->setWidgetResizable(true);
  panel->setFrameShape(QFrame::NoFrame);
  panel->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  panel->setFixedWidth(panel_->width() + panel->verticalScrollBar()->sizeHint().width());
  setCentralWidget(Row({left, panel}));
  static_cast<QBoxLayout*>(centralWidget()->layout())->setStretch(0, 1);
  centralWidget()->layout()->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  readout_->setObjectName("Readout");
  progress_->setMaximumWidth(160);
  progress_->hide();
  statusBar()->addWidget(readout_);
  statusBar()->addPermanentWidget(progress_);
  Connect();
  Restore();
}

void Studio::Connect() {
  session_.onSource = [this] {
    const Subject& subject = session_.TheSubject();
    setWindowTitle(subject.name.isEmpty() ? tr("Marovia Studio")
                                          : tr("%1 - Marovia Studio").arg(subject.name));
    stage_->SetSource(session_.Source());
    if (!subject.note.isEmpty()) Tell(tr("Read with its %1.").arg(subject.note));
  };
  session_.onMaster = [this] { ShowMaster(); };
  session_.onPicture = [this] { ShowPicture(); };
  session_.onMeasures = [this] { panel_->ShowMeasures(); };
  session_.onCurve = [this] { panel_->ShowCurve(); };
  session_.onFound = [this](std::int64_t bytes) { SetBytes(bytes); };
  session_.onFailure = [this](const QString& what) {
    QMessageBox::warning(this, tr("Marovia Studio"), what);
  };
  session_.onProgress = [this](double part) {
    progress_->setVisible(part < 1);
    progress_->setValue(qRound(100 * part));
  };
  panel_->onBytes = [this](std::int64_t bytes) { SetBytes(bytes); };
  panel_->onRecipe = [this](const Recipe& recipe) {
    stage_->SetRegion(recipe.region);
    session_.Recode(recipe);
  };
  panel_->onDraw = [this](bool drawing) { stage_->SetDrawing(drawing); };
  stage_->onReadout = [this](const QString& text) { readout_->setText(text); };
  stage_->onZoom = [this] { zoom_->setText(tr("%1 %").arg(qRound(100 * stage_->Scale()))); };
  stage_->onRegion = [this](const Region& region, bool done) {
    panel_->SetRegion(region);
    if (done) session_.Recode(panel_->TheRecipe());
  };
}

void Studio::Restore() {
  const QSettings settings = Settings();
  Recipe recipe;
  const auto kind = KindOfExtension(settings.value("kind").toString().toStdString());
  recipe.kind = kind.value_or(recipe.kind);
  panel_->SetRecipe(recipe);
  rate_ = std::max(settings.value("rate", kFirstRate).toDouble(), RateScale::kLeastRate);
  for (QAction* action : needPicture_) action->setEnabled(false);
  resize(QSize(1280, 800).boundedTo(RoomOnScreen(*this)));
  restoreGeometry(settings.value("geometry").toByteArray());
}

void Studio::closeEvent(QCloseEvent* event) {
  QSettings settings = Settings();
  settings.setValue("geometry", saveGeometry());
  settings.setValue("rate", rate_);
  settings.setValue("kind", Text(Extension(panel_->TheRecipe().kind)));
  QMainWindow::closeEvent(event);
}

void Studio::OpenFile(const QString& file) {
  Remember(file);
  session_.Open([file, recipe = RecipeWithoutRegion()] { return ReadSubject(file, recipe); });
}

// For another image.
Recipe Studio::RecipeWithoutRegion() {
  panel_->SetRegion({});
  stage_->SetRegion({});
  return panel_->TheRecipe();
}

void Studio::OpenRequest(const StudioRequest& request) {
  Subject subject;
  subject.name = QFileInfo(Text(request.sourceFile.string())).fileName();
  if (!request.source->Empty()) subject.source = request.source.Shared();
  subject.recipe = {request.kind, request.wavelet, request.levels, request.region, request.share};
  const double pixels = static_cast<double>(request.source->Size());
  subject.bytes = std::llround(request.rate * pixels / 8);
  panel_->SetRecipe(subject.recipe);
  stage_->SetRegion(request.region);
  session_.Open([subject, file = Text(request.packedFile.string())] {
    if (file.isEmpty()) return subject;
    Subject packed = ReadSubject(file, subject.recipe);
    packed.source = subject.source;
    packed.bytes = subject.bytes;
    return packed;
  });
}

void Studio::AskOpen() {
  const QString folder = Settings().value("folder").toString();
  const QString file =
      QFileDialog::getOpenFileName(this, tr("Open"), folder, OpenFilter(), nullptr);
  if (!file.isEmpty()) OpenFile(file);
}

void Studio::Remember(const QString& file) {
  QSettings settings = Settings();
  QStringList files = settings.value("recent").toStringList();
  const QString path = QFileInfo(file).absoluteFilePath();
  files.removeAll(path);
  files.prepend(path);
  settings.setValue("recent", files.mid(0, kMostRecent));
  settings.setValue("folder", QFileInfo(file).absolutePath());
}

void Studio::ListRecent() {
  recent_->clear();
  for (const QString& file : Settings().value("recent").toStringList())
    Add(recent_, QFileInfo(file).fileName(), {}, [this, file] {
      OpenFile(file);
    })->setToolTip(file);
}

void Studio::dragEnterEvent(QDragEnterEvent* event) {
  const QMimeData* offered = event->mimeData();
  if ((offered->hasUrls() || offered->hasImage()) && event->source() == nullptr)
    event->acceptProposedAction();
}

// Dropped, or from the clipboard.
void Studio::Take(const QMimeData* offered) {
  if (offered == nullptr) return;
  if (offered->hasUrls() && offered->urls().front().isLocalFile())
    return OpenFile(offered->urls().front().toLocalFile());
  const auto picture = offered->imageData().value<QImage>();
  if (picture.isNull()) return Tell(tr("There is no image on the clipboard."));
  session_.Open([picture, recipe = RecipeWithoutRegion(), name = tr("Pasted image")] {
    return Subject{.name = name,
                   .source = std::make_shared<const Image>(GreyOf(picture)),
                   .recipe = recipe,
                   .file = {}};
  });
}

// A name that may be written; empty where there is to be none.
QString Studio::AskSave(const QString& title, const QString& filter, const QString& name) {
  QFileDialog dialog(this, title, Settings().value("folder").toString(), filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(QFileInfo(name).suffix());
  dialog.selectFile(name);
  connect(&dialog, &QFileDialog::filterSelected, [&](const QString& chosen) {
    dialog.setDefaultSuffix(chosen.section("*.", 1).section(QRegularExpression("[ )]"), 0, 0));
  });
  if (dialog.exec() != QDialog::Accepted) return {};
  const QString file = dialog.selectedFiles().value(0);
  Settings().setValue("folder", QFileInfo(file).absolutePath());
  return file;
}

// Beside all else: a file system may take its time.
void Studio::Write(const QString& file, const std::function<void()>& write) {
  QThreadPool::globalInstance()->start([=, studio = QPointer<Studio>(this)] {
    QString told = tr("%1 is written.").arg(QFileInfo(file).fileName());
    try {
      write();
    } catch (const std::exception& error) {
      told = QString::fromUtf8(error.what());
    }
    QMetaObject::invokeMethod(qApp, [=] {
      if (studio) studio->Tell(told);
    });
  });
}

QString Studio::FileName() const {
  return QFileInfo(session_.TheSubject().name).completeBaseName() + "." +
         Text(Extension(session_.TheSight().look.file.kind));
}

void Studio::SaveFile() {
  const QString filter = tr("Compressed file (*.%1)").arg(QFileInfo(FileName()).suffix());
  const QString to = AskSave(tr("Save compressed file"), filter, FileName());
  if (to.isEmpty()) return;
  Write(to, [to, bytes = session_.TheSight().look.file.file] { WriteBytes(to, bytes); });
}

void Studio::SavePicture() {
  const QString name = QFileInfo(session_.TheSubject().name).completeBaseName() + "_decoded.png";
  const QString to = AskSave(tr("Save picture"), PictureFilter(), name);
  if (to.isEmpty()) return;
  Write(to, [to, picture = session_.TheSight().look.picture] { WritePicture(to, *picture); });
}

void Studio::DragFile() {
  const TruncateResult& file = session_.TheSight().look.file;
  if (file.file.empty()) return;
  const QString path = dragged_.filePath(FileName());
  WriteBytes(path, file.file);
  auto* urls = Make<QMimeData>();
  urls->setUrls({QUrl::fromLocalFile(path)});
  auto* drag = Make<QDrag>(this);
  drag->setMimeData(urls);
  drag->exec(Qt::CopyAction);
}

void Studio::SetBytes(std::int64_t bytes) {
  session_.LookAt(bytes);
  rate_ = session_.Scale().RateOf(session_.Asked());
  const QSignalBlocker quiet(slider_);
  slider_->setValue(qRound(session_.Scale().PartOf(session_.Asked()) * kSliderSteps));
  panel_->ShowBytes();
}

void Studio::SetView(View view) {
  view_ = view;
  const bool layered = view >= View::kDifference;
  gain_->setEnabled(layered);
  stage_->SetView(view);
  const Layer layer = view == View::kHeat         ? Layer::kMagnitude
                      : view == View::kDifference ? Layer::kDifference
                                                  : Layer::kNone;
  session_.SetLayer(layer, gain_->value());
}

// A longer master leaves the length that is looked at as it was.
void Studio::ShowMaster() {
  const RateScale& scale = session_.Scale();
  const auto rate = [&](std::int64_t bytes) {
    return tr("%1 bpp").arg(scale.RateOf(bytes), 0, 'g', 2);
  };
  slider_->setEnabled(true);
  least_->setText(rate(scale.Least()));
  most_->setText(rate(scale.most));
  panel_->ShowMaster();
  const std::int64_t wanted = session_.TheSubject().bytes;
  SetBytes(session_.Asked() > 0 ? session_.Asked()
           : wanted > 0         ? wanted
                                : scale.BytesOfRate(rate_));
}

void Studio::ShowPicture() {
  const Sight& sight = session_.TheSight();
  const auto bytes = std::ssize(sight.look.file.file);
  const QString caption = tr("%1 bytes, %2 bpp, %3 : 1")
                              .arg(QLocale().toString(static_cast<qlonglong>(bytes)))
                              .arg(session_.Scale().RateOf(bytes), 0, 'f', 3)
                              .arg(session_.Scale().RatioOf(bytes), 0, 'f', 1);
  stage_->SetPicture(sight.picture, sight.layer, caption);
  for (QAction* action : needPicture_) action->setEnabled(true);
}

namespace {

Studio& TheStudio() {
  for (QWidget* window : QApplication::topLevelWidgets()) {
    if (auto* studio = dynamic_cast<Studio*>(window)) return *studio;
  }
  SetTheme(Settings().value("theme").toString());
  return *Make<Studio>();
}

}  // namespace

QMainWindow* ShowStudio() {
  Studio& studio = TheStudio();
  studio.show();
  studio.raise();
  studio.activateWindow();
  return &studio;
}

void OpenInStudio(const QString& file) {
  ShowStudio();
  TheStudio().OpenFile(file);
}

void OpenInStudio(const StudioRequest& request) {
  ShowStudio();
  TheStudio().OpenRequest(request);
}

}  // namespace marovia
