#include "tests/window/window_test.h"
#include "window/tool_window.h"

namespace marovia::test {
namespace {

TEST(Help, SearchesAndGoesBackAndForward) {
  QWidget parent;
  ShowHelpWindow(MAROVIA_ROOT "/help/Marovia.HLP", &parent);
  auto& help = *parent.findChild<QWidget*>("Help");
  auto& page = *help.findChild<QTextBrowser*>("HelpPage");
  auto& back = *help.findChild<QAction*>("Back");
  EXPECT_FALSE(back.isEnabled());

  // Every link of the page leads somewhere.
  QStringList links;
  for (auto block = page.document()->begin(); block.isValid(); block = block.next()) {
    for (auto part = block.begin(); !part.atEnd(); ++part) {
      const QString link = part.fragment().charFormat().anchorHref();
      if (!link.isEmpty()) links << link;
    }
  }
  ASSERT_GT(links.size(), 11);
  const QString text = page.toHtml();
  for (const QString& link : links)
    EXPECT_TRUE(text.contains("name=\"" + link.mid(1) + "\"")) << link.toStdString();

  page.setSource(QUrl(links[4]));
  EXPECT_TRUE(back.isEnabled());
  back.trigger();
  EXPECT_TRUE(help.findChild<QAction*>("Forward")->isEnabled());

  auto& search = *help.findChild<QLineEdit*>("HelpSearch");
  QTest::keyClicks(&search, "mid-grey");
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_EQ(page.textCursor().selectedText().toLower(), "mid-grey");
  const int first = page.textCursor().position();
  // The only place is found again from the top.
  help.findChild<QAction*>("Find Next")->trigger();
  EXPECT_EQ(page.textCursor().position(), first);
}

TEST_F(WindowTest, F1OpensTheHelpAndSaysWhereItIsMissing) {
  QTest::keyClick(&window, Qt::Key_F1);
  EXPECT_TRUE(QTest::qWaitFor([&] { return window.findChild<QWidget*>("Help") != nullptr; }));
  EXPECT_TRUE(FindIn<QTextBrowser>(Find<QWidget>("Help"), "HelpPage").isVisible());
}

}  // namespace
}  // namespace marovia::test
