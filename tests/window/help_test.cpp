#include "tests/window/window_test.h"
#include "window/tool_window.h"

namespace marovia::test {
namespace {

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
  QTest::keyClicks(&search, "mid-grey");
  QTest::keyClick(&search, Qt::Key_Return);
  EXPECT_EQ(page.textCursor().selectedText().toLower(), "mid-grey");
  // The only place is found again from the top.
  FindIn<QAction>(help, "Find Next").trigger();
  EXPECT_TRUE(page.textCursor().hasSelection());
}

}  // namespace
}  // namespace marovia::test
