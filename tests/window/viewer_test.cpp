#include "tests/window/window_test.h"
#include "window/tool_window.h"

namespace marovia::test {
namespace {

QWidget* OpenedViewer(const QWidget& window) {
  return window.findChild<QWidget*>("Viewer");
}

TEST_F(WindowTest, WithoutAReconstructionTheViewerShowsTheSourceAlone) {
  Load(Photograph(300, 200));
  QTest::mouseDClick(&Source(), Qt::LeftButton, {}, PixelOf(Source(), {30, 60}));
  ASSERT_NE(OpenedViewer(window), nullptr);
  EXPECT_NE(OpenedViewer(window)->findChild<QWidget*>("Wipe"), nullptr);
  EXPECT_EQ(OpenedViewer(window)->findChild<QWidget*>("Difference"), nullptr);
}

TEST(ViewerWindow, WipesDiffersReadsOutAndScrollsTogether) {
  Image source(400, 300, 100);
  Image reconstruction = source;
  reconstruction(200, 150) = 110;
  QWidget parent;
  ShowViewer({source, reconstruction, true}, &parent);
  QWidget& viewer = *OpenedViewer(parent);
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&viewer));
  auto& wipe = *viewer.findChild<QAbstractScrollArea*>("Wipe");
  auto& difference = *viewer.findChild<QAbstractScrollArea*>("Difference");

  // Row 200, column 150 is the middle of the image, which is the middle of the pane.
  const QPoint middle(difference.viewport()->width() / 2, difference.viewport()->height() / 2);
  const auto grey = [](QAbstractScrollArea& pane, QPoint at) {
    return qGray(pane.viewport()->grab().toImage().pixel(at));
  };
  viewer.findChild<QSpinBox*>("Gain")->setValue(8);
  EXPECT_EQ(grey(difference, middle), 128 + 8 * 10);
  EXPECT_EQ(grey(difference, middle + QPoint(3, 3)), 128);
  auto& split = *viewer.findChild<QSlider*>("Split");
  split.setValue(100);
  EXPECT_EQ(grey(wipe, middle), 100);
  split.setValue(0);
  EXPECT_EQ(grey(wipe, middle), 110);
  // All the way left the handle stands where the image begins.
  QTest::mousePress(wipe.viewport(), Qt::LeftButton, {}, {middle.x() - 150, 50});
  QTest::mouseMove(wipe.viewport(), {wipe.viewport()->width() / 4, 50});
  QTest::mouseRelease(wipe.viewport(), Qt::LeftButton, {}, {wipe.viewport()->width() / 4, 50});
  EXPECT_NEAR(split.value(), 25, 1);

  QTest::mouseMove(difference.viewport(), middle);
  EXPECT_EQ(viewer.findChild<QLabel*>("Readout")->text(),
            "Row 200, column 150:   source 100   reconstruction 110   difference 10");

  QTest::keyClick(&viewer, Qt::Key_Plus, Qt::ControlModifier);
  QTest::keyClick(&viewer, Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_EQ(viewer.findChild<QLabel*>("ZoomLabel")->text(), "400 %");
  difference.horizontalScrollBar()->setValue(17);
  EXPECT_EQ(wipe.horizontalScrollBar()->value(), 17);
  wipe.verticalScrollBar()->setValue(23);
  EXPECT_EQ(difference.verticalScrollBar()->value(), 23);
}

}  // namespace
}  // namespace marovia::test
