#include "gui/directory/dir_win.h"
#include "tests/support/main_fixture.h"

#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

namespace rk4::gui {
namespace {

using test::child;
using test::whenDialogOpens;

class DirWinTest : public test::MainTest {
  protected:
    DirWin* openDirectory(char letter)
    {
        child<QAction>(main.get(), QString("actionDir%1").arg(letter).toLatin1().constData())->trigger();
        return main->findChild<DirWin*>(QString("dirWindow%1").arg(letter));
    }
    void click(QWidget* parent, const char* name)
    {
        QTest::mouseClick(child<QPushButton>(parent, name), Qt::LeftButton);
    }
};

TEST_F(DirWinTest, ALineComposedInTheLineEditorReachesTheImageOnExit)
{
    DirWin* window = openDirectory('A');
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(child<QAction>(main.get(), "actionDirA")->isEnabled());
    EXPECT_TRUE(child<QAction>(main.get(), "actionDirB")->isEnabled());
    EXPECT_FALSE(child<QAction>(main.get(), "actionSave")->isEnabled());
    EXPECT_FALSE(child<QAction>(main.get(), "actionProgram")->isEnabled());

    auto* list = child<QListWidget>(window, "lineList");
    ASSERT_EQ(list->count(), 20);
    whenDialogOpens([this](QDialog* dialog) {
        EXPECT_EQ(dialog->windowTitle(), "EDITING DIRECTORY A - LINE 1");
        click(dialog, "DirDial");
        auto* number = child<QLineEdit>(dialog, "parameter1");
        EXPECT_TRUE(number->isEnabled());
        EXPECT_EQ(number->text(), "0000");
        number->selectAll();
        QTest::keyClicks(number, "5551234");
        QTest::keyClick(number, Qt::Key_Return); // to the next entry, not out of the dialog
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_TRUE(child<QPushButton>(dialog, "select2")->isChecked());
        click(dialog, "DirVoice");
        EXPECT_EQ(child<QPushButton>(dialog, "select2")->text(), " [VOICE]");
        EXPECT_FALSE(child<QLineEdit>(dialog, "parameter2")->isEnabled());
        click(dialog, "okButton");
    });
    QTest::keyClick(list, Qt::Key_Return);

    EXPECT_EQ(list->item(0)->text().trimmed(), "1   [DIAL]5551234 [VOICE]");
    EXPECT_EQ(list->item(1)->text().trimmed(), "2") << "the insertion place";
    EXPECT_TRUE(child<QLabel>(window, "headingLabel")->text().endsWith("% USED = 4"));
    EXPECT_FALSE(space.DatabaseChanged);

    click(window, "exitButton");
    flushDeletes();
    const auto& bytes = space.image.dir[0].dirText;
    EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 11), std::string("P5551234V&\0", 11));
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(child<QAction>(main.get(), "actionDirA")->isEnabled());
    EXPECT_TRUE(child<QAction>(main.get(), "actionSave")->isEnabled());
    EXPECT_TRUE(prompter.messages().empty());
}

TEST_F(DirWinTest, RefusalsKeepTheLineEditorOpenAndCancelAsksAboutTheLine)
{
    const char kLostLine[] = "All changes made to this Directory line will be lost.";
    DirWin* window = openDirectory('C');
    ASSERT_NE(window, nullptr);
    whenDialogOpens([this, kLostLine](QDialog* dialog) {
        click(dialog, "DirDial");
        child<QLineEdit>(dialog, "parameter1")->setText("911");
        click(dialog, "select2");
        click(dialog, "DirAlert");
        prompter.clear();
        click(dialog, "okButton");
        EXPECT_EQ(prompter.texts(), std::vector<std::string>{"Not a valid phone number -  The first digits cannot be "
                                                             "911.\nThis will result in an Emergency call."});
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(child<QLineEdit>(dialog, "parameter1")->selectedText(), "911");

        prompter.expect(kLostLine, Answer::Cancel).expect(kLostLine, Answer::No);
        click(dialog, "cancelButton");
        EXPECT_TRUE(dialog->isVisible()) << "going back keeps the editor";
        QTest::keyClick(dialog, Qt::Key_Escape);
    });
    click(window, "editButton");
    EXPECT_TRUE(prompter.finished());
    EXPECT_TRUE(window->core().lines()[0].empty());
}

} // namespace
} // namespace rk4::gui
