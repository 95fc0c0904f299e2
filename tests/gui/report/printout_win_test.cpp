#include "gui/report/printout_win.h"
#include "tests/support/main_fixture.h"

#include <QMdiSubWindow>
#include <QTest>

#include <fstream>
#include <iterator>

namespace rk4::gui {
namespace {

class PrintoutWinTest : public test::MainTest {
  protected:
    PrintoutWin* openSummary()
    {
        main->findChild<QAction*>("actionSummary")->trigger();
        return main->findChild<PrintoutWin*>("printoutWin");
    }
    QAction* action(PrintoutWin* window, const char* name) { return window->findChild<QAction*>(name); }
    std::string title(PrintoutWin* window) { return window->core().draw().lines.at(1); }
};

TEST_F(PrintoutWinTest, PagesThroughAllWithKeysAndGreysTheEnds)
{
    PrintoutWin* window = openSummary();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle(), "SUMMARY");
    EXPECT_EQ(title(window), "Hardware Summary");
    QAction* next = action(window, "actionNextPage");
    QAction* last = action(window, "actionLastPage");
    EXPECT_TRUE(next->isEnabled());
    EXPECT_FALSE(last->isEnabled());
    // The Basic categories are not offered for an Advanced image.
    EXPECT_FALSE(action(window, "actionPrintAlarms")->isVisible());
    EXPECT_TRUE(action(window, "actionPrintPoints")->isVisible());

    QTest::keyClick(window, Qt::Key_PageDown);
    EXPECT_EQ(title(window), "Group Summary - Page 1");
    EXPECT_TRUE(last->isEnabled());
    for (int i = 0; i < 3; ++i)
        QTest::keyClick(window, Qt::Key_PageDown);
    EXPECT_EQ(title(window), "Points Summary - Page 1");
    QTest::keyClick(window, Qt::Key_PageDown);
    EXPECT_EQ(title(window), "Directory Summary - Page 1");
    EXPECT_FALSE(next->isEnabled());
    QTest::keyClick(window, Qt::Key_PageUp);
    EXPECT_EQ(title(window), "Points Summary - Page 1");

    action(window, "actionPrintWarnings")->trigger();
    EXPECT_EQ(title(window), "Warnings - Page 1");
    EXPECT_FALSE(next->isEnabled());
    EXPECT_FALSE(last->isEnabled());
}

TEST_F(PrintoutWinTest, ExportsThePagesAsAPdfAndTheProgrammingQuestionOpensTheWarnings)
{
    PrintoutWin* window = openSummary();
    ASSERT_NE(window, nullptr);
    const auto pdf = dir / "summary.pdf";
    prompter.fileChoice(pdf.string());
    action(window, "actionExportPdf")->trigger();
    std::ifstream in(pdf, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    EXPECT_EQ(bytes.rfind("%PDF", 0), 0u);
    // Hardware, two group pages, general, points and directories.
    EXPECT_NE(bytes.find("/Count 6"), std::string::npos);

    // The question before a write shows the warnings in the same window.
    window->CmPrintAll();
    main->showSummary(Category::Warnings);
    EXPECT_EQ(main->findChildren<PrintoutWin*>().size(), 1);
    EXPECT_EQ(title(window), "Warnings - Page 1");
}

TEST_F(PrintoutWinTest, APdfIsSavedThroughALinkAndNeverOverAFolder)
{
    PrintoutWin* window = openSummary();
    ASSERT_NE(window, nullptr);
    std::filesystem::create_directory(dir / "reports");
    std::filesystem::create_symlink("reports/latest.pdf", dir / "latest.pdf");
    prompter.fileChoice((dir / "latest.pdf").string());
    action(window, "actionExportPdf")->trigger();
    EXPECT_TRUE(std::filesystem::is_symlink(dir / "latest.pdf"));
    std::ifstream in(dir / "reports" / "latest.pdf", std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), {});
    EXPECT_EQ(bytes.rfind("%PDF", 0), 0u);
    EXPECT_TRUE(prompter.messages().empty());

    prompter.fileChoice((dir / "reports").string());
    action(window, "actionExportPdf")->trigger();
    EXPECT_TRUE(prompter.saw(" CANNOT OPEN FILE "));
    EXPECT_TRUE(std::filesystem::is_directory(dir / "reports"));
}

} // namespace
} // namespace rk4::gui
