#include "tests/window/window_test.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QGroupBox>
#include <QMessageBox>
#include <QMimeData>
#include <QRadioButton>

#include "window/tool_window.h"

namespace marovia::test {

QPoint PixelOf(const QWidget& picture, QPoint coordinate) {
  const auto [left, top, factor] = PlaceOfPicture(picture);
  const QPointF pixel = QPointF(left, top) + (QPointF(coordinate) - QPointF(0.5, 0.5)) * factor;
  const QPointF middle = pixel / picture.devicePixelRatioF();
  return {static_cast<int>(std::floor(middle.x())), static_cast<int>(std::floor(middle.y()))};
}

void ExpectShows(QWidget& picture, const Image& raster) {
  ASSERT_EQ(raster.Rows(), 256);
  const QImage shown = picture.grab().toImage();
  const PicturePlace place = PlaceOfPicture(picture);
  const int side = 256 * place.factor;
  int wrong = 0;
  for (int y = place.top; y < place.top + side; ++y) {
    for (int x = place.left; x < place.left + side; ++x) {
      const PicturePoint at = place.CoordinateAt(x + 0.5, y + 0.5);
      wrong += qGray(shown.pixel(x, y)) != raster(at.row - 1, at.col - 1) ? 1 : 0;
    }
  }
  EXPECT_EQ(wrong, 0);
}

WindowTest::WindowTest() {
  QDir::setCurrent(folder.path());
  window.show();
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

WindowTest::~WindowTest() {
  QDir::setCurrent(QDir::rootPath());
}

void WindowTest::Type(const char* name, const QString& text) {
  auto& edit = Find<QLineEdit>(name);
  edit.selectAll();
  QTest::keyClicks(&edit, text);
}

void WindowTest::AnswerFileQuestion(const QString& name, bool replace) {
  asked = false;
  answerer_.disconnect();
  QObject::connect(&answerer_, &QTimer::timeout, [this, name, replace] {
    QWidget* open = QApplication::activeModalWidget();
    if (open == nullptr) window.activateWindow();  // as a desktop would
    if (auto* box = qobject_cast<QMessageBox*>(open)) {
      asked = true;
      QAbstractButton* button = box->button(replace ? QMessageBox::Yes : QMessageBox::No);
      QTest::mouseClick(button != nullptr ? button : box->buttons().first(), Qt::LeftButton);
    } else if (auto* dialog = qobject_cast<QFileDialog*>(open)) {
      filters = dialog->nameFilters();
      // After a refusal the question is there again.
      if (asked) return dialog->reject();
      auto& edit = FindIn<QLineEdit>(*dialog, "fileNameEdit");
      edit.setText(name);
      QTest::keyClick(&edit, Qt::Key_Return);
      if (replace && !dialog->isVisible()) answerer_.setInterval(1);
    }
  });
  answerer_.start(10);
}

void WindowTest::Load(const Image& image) {
  const QString name = Path("source.bmp");
  WriteFile(name.toStdString(), WriteBmp(image));
  AnswerFileQuestion(name);
  Menu("mnuGetImage");
  answerer_.stop();
  window.activateWindow();
  EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
}

void WindowTest::Choose(const std::string& number, const QString& rate) {
  for (const char* group : {"OpMethod", "OpEntropyCode"}) Click((group + number).c_str());
  Type("txtBitRate", rate);
}

void WindowTest::DragPicture(QPoint from, QPoint to) {
  QWidget& view = Source();
  const auto at = [&view](QPoint place) { return PixelOf(view, place); };
  QTest::mousePress(&view, Qt::LeftButton, {}, at(from));
  QTest::mouseMove(&view, at((from + to) / 2));
  QTest::mouseMove(&view, at(to));
  QTest::mouseRelease(&view, Qt::LeftButton, {}, at(to));
}

namespace {

TEST_F(WindowTest, StartsWithWhatIsPublicAndEndsWithoutItsTemporaryFiles) {
  EXPECT_EQ(window.width(), 800);
  EXPECT_FALSE(Find<QAction>("mnuTransformImage").isVisible());
  EXPECT_FALSE(Find<QAction>("mnuCompress").isEnabled());
  EXPECT_TRUE(Form().state.padToFit && Form().state.exactRate);
  for (const char* name : {"a.wti", "b.rim", "c.wtr", "d.awf"})
    QFile(Path(name)).open(QIODevice::WriteOnly);
  MakeMainWindow(true).reset();
  EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files), QStringList{"d.awf"});
}

TEST_F(WindowTest, TabGoesDownThePanelAndEverythingHasAName) {
  Load(Photograph(64, 64));
  Menu("mnuCompress");
  Find<QRadioButton>("OpMethod(1)").click();
  Source().setFocus();
  const char* order[] = {"OpDisplayImage", "GraphBoxRec",      "cmdStudio",  "Report",
                         "OpMethod(1)",    "OpEntropyCode(0)", "txtBitRate", "txtROIPercent",
                         "cmbWavelet",     "txtLevels",        "cmdBegin(0)"};
  for (const char* name : order) {
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(QApplication::focusWidget()->objectName().toStdString(), name);
  }
  for (const QWidget* widget : window.findChildren<QWidget*>()) {
    if ((widget->focusPolicy() & Qt::TabFocus) == 0) continue;
    auto* accessible = QAccessible::queryAccessibleInterface(const_cast<QWidget*>(widget));
    EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty())
        << widget->objectName().toStdString();
    const bool picture = widget == &Source() || widget == &Reconstruction();
    EXPECT_EQ(accessible->role() == QAccessible::Graphic, picture);
  }
}

TEST_F(WindowTest, FileQuestionsOfferTheFiltersGiveTheSuffixAndAskBeforeReplacing) {
  Load(Photograph(64, 64));
  EXPECT_EQ(filters, (QStringList{"Windows bitmap (*.bmp)", "PGM file (*.pgm)"}));
  Menu("mnuCompress");
  Choose("(1)", "0.5");
  GoUnder("bare");
  EXPECT_EQ(filters, QStringList{"ASWDR_Ver1 arith. compression (*.awf)"});
  EXPECT_FALSE(asked);
  ASSERT_TRUE(QFile::exists(Path("bare.awf")));
  // A name that means something else does not come into question.
  for (const char* name : {"bare.awf", "source.bmp"}) {
    const std::string file = Path(name).toStdString();
    const Bytes before = FileBytes(file);
    Menu("mnuCompress");
    Type("txtBitRate", "1");
    GoUnder(name, false);
    EXPECT_TRUE(asked && FileBytes(file) == before);
  }
}

TEST_F(WindowTest, WhatIsClickedDuringARunIsDropped) {
  Load(Photograph(64, 64));
  Menu("mnuCompress");
  auto& option = Find<QWidget>("OpMethod(1)");
  const QPointF at = option.rect().center();
  for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease})
    QCoreApplication::postEvent(
        &option, new QMouseEvent(type, at, option.mapToGlobal(at), Qt::LeftButton, {}, {}));
  window.OpenFiles({Path("source.bmp").toStdString()});
  QApplication::processEvents();
  EXPECT_TRUE(Form().OpMethod[0].selected);
  Click("OpMethod(1)");
  EXPECT_TRUE(Form().OpMethod[1].selected);
}

TEST_F(WindowTest, EveryLabelFitsFromSmallLettersToLargeOnes) {
  const QFont usual = QApplication::font();
  for (const int points : {8, 12, 18}) {
    QApplication::setFont(QFont(usual.family(), points));
    const auto large = MakeMainWindow(true);
    large->show();
    large->OpenFiles({MAROVIA_ROOT "/Images/camera.pgm"});
    for (const char* page : {"mnuCompress", "mnuErrormeasures"}) {
      large->findChild<QAction*>(page)->trigger();
      QApplication::processEvents();
      for (const QWidget* widget : large->findChildren<QWidget*>()) {
        const bool measured = widget->isVisible() && !widget->objectName().startsWith("qt_");
        const QSize least = measured ? widget->minimumSizeHint() : QSize();
        EXPECT_EQ(widget->size().expandedTo(least), widget->size())
            << points << ' ' << widget->objectName().toStdString();
      }
    }
    EXPECT_LE(large->minimumSizeHint().width(), 1280);
    EXPECT_LE(large->minimumSizeHint().height(), 760);
  }
  QApplication::setFont(usual);
}

TEST_F(WindowTest, DroppedFilesLoadAndDecompress) {
  const Bytes ranked = Compress(Photograph(96, 80), {.kind = FileKind::kAwc}).file;
  WriteFile(Path("a.awc").toStdString(), ranked);
  QMimeData mime;
  mime.setUrls(
      {QUrl::fromLocalFile(MAROVIA_ROOT "/Images/camera.pgm"), QUrl::fromLocalFile(Path("a.awc"))});
  const Qt::DropActions offered = Qt::MoveAction | Qt::CopyAction;
  QDragEnterEvent enter({10, 10}, offered, &mime, Qt::LeftButton, Qt::ShiftModifier);
  QApplication::sendEvent(&window, &enter);
  ASSERT_TRUE(enter.isAccepted());
  QDropEvent drop({10, 10}, offered, &mime, Qt::LeftButton, Qt::ShiftModifier);
  ASSERT_EQ(drop.proposedAction(), Qt::MoveAction);
  QApplication::sendEvent(&window, &drop);
  EXPECT_EQ(drop.dropAction(), Qt::CopyAction);
  EXPECT_EQ(Form().state.NumRows, 512);
  EXPECT_EQ(*Form().state.ReconstructedImage, Decompress(ranked, FileKind::kAwc).image);
  ExpectShows(Reconstruction(), Form().GraphBoxRec.raster);
  // No button shows that it is chosen, but the keyboard still gets to the others.
  EXPECT_FALSE(Find<QWidget>("OpMethod(2)").isVisible());
  EXPECT_EQ(Find<QWidget>("OpMethod(0)").focusPolicy(), Qt::StrongFocus);
}

TEST_F(WindowTest, TheHelpLeadsWhereItsLinksSayAndFindsWords) {
  QTest::keyClick(&window, Qt::Key_F1);
  ASSERT_TRUE(QTest::qWaitFor([&] { return window.findChild<QWidget*>("Help") != nullptr; }));
  EXPECT_TRUE(Find<QTextBrowser>("HelpPage").isVisible());  // which says where it is missing
  ShowHelpWindow(MAROVIA_ROOT "/help/Marovia.HLP", &Reconstruction());
  auto& help = FindIn<QWidget>(Reconstruction(), "Help");
  auto& page = FindIn<QTextBrowser>(help, "HelpPage");
  QStringList links;
  for (auto block = page.document()->begin(); block.isValid(); block = block.next())
    for (auto part = block.begin(); !part.atEnd(); ++part)
      links << part.fragment().charFormat().anchorHref();
  links.removeAll("");
  ASSERT_GT(links.size(), 11);
  for (const QString& link : links)
    EXPECT_TRUE(page.toHtml().contains("name=\"" + link.mid(1) + "\"")) << link.toStdString();
  page.setSource(QUrl(links[4]));
  FindIn<QAction>(help, "Back").trigger();
  EXPECT_TRUE(FindIn<QAction>(help, "Forward").isEnabled());

  auto& search = FindIn<QLineEdit>(help, "HelpSearch");
  QTest::keyClicks(&search, "flawless");
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_EQ(page.textCursor().selectedText().toLower(), "flawless");
  // The only place is found again from the top.
  FindIn<QAction>(help, "Find Next").trigger();
  EXPECT_TRUE(page.textCursor().hasSelection());
}

}  // namespace
}  // namespace marovia::test

// Fonts are kept by the system's library to the end; the leak checker of the asan preset asks here.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:libfontconfig";
}

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  testing::InitGoogleTest(&argc, argv);
  QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
  const QApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
