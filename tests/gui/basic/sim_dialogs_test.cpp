#include "core/basic/basic_fields.h"
#include "core/database/directory_codec.h"
#include "gui/basic/sim_dir_dialog.h"
#include "tests/support/basic_main.h"

#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

namespace rk4::gui {
namespace {

using test::child;
using test::whenDialogOpens;

const char kNoAckA[] = "Directory A has phone numbers but the Acknowledge Code is empty.  Calls from this directory "
                       "cannot be stopped without an Acknowledge code.  Do you want to enter the code now?";

class SimDialogsTest : public test::BasicMainTest {
  protected:
    // Plays the phone number dialog that `button` opens: types `number`, presses OK.
    static void addNumber(QPushButton* button, const QString& number)
    {
        whenDialogOpens([number](QDialog* dialog) {
            ASSERT_EQ(dialog->objectName(), "phoneNumberDialog");
            child<QLineEdit>(dialog, "numberEdit")->setText(number);
            child<QPushButton>(dialog, "okButton")->click();
        });
        button->click();
    }
};

TEST_F(SimDialogsTest, TwoNumbersAddedToDirectoryAInBasicModeBecomeTwoDialLines)
{
    EXPECT_FALSE(action("actionDirA")->isVisible());
    QAction* directories = action("actionSimDir");
    ASSERT_TRUE(directories->isVisible());

    QStringList listed;
    QString filled;
    whenDialogOpens([&](QDialog* dialog) {
        ASSERT_EQ(dialog->objectName(), "simDirDialog");
        addNumber(child<QPushButton>(dialog, "insertButtonA"), "555-1234");
        child<QListWidget>(dialog, "numberListA")->setCurrentRow(1);
        addNumber(child<QPushButton>(dialog, "insertButtonA"), "1 800 555 0100");
        auto* list = child<QListWidget>(dialog, "numberListA");
        for (int i = 0; i < 3; ++i)
            listed << list->item(i)->text();
        filled = child<QLabel>(dialog, "fillLabelA")->text();
        prompter.expect(kNoAckA, Answer::No);
        child<QPushButton>(dialog, "okButton")->click();
    });
    directories->trigger();

    EXPECT_EQ(listed, (QStringList{" 1  5551234", " 2  18005550100", " 3  empty"}));
    EXPECT_EQ(filled, "9% filled"); // (7 + 3 + 11 + 3) * 100 / 256
    EXPECT_EQ(SimpleDirectoryNumbers(space.image.dir[0]), (std::vector<std::string>{"5551234", "18005550100"}));
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(SimDialogsTest, AdvancedOpensTheFullEditorOnDirectoryBAndCancelledTheBasicDialogAsks)
{
    bool fullEditor = false;
    whenDialogOpens([&](QDialog* dialog) {
        addNumber(child<QPushButton>(dialog, "insertButtonB"), "5559876");
        whenDialogOpens([&](QDialog* host) {
            fullEditor = host->findChild<QWidget*>("dirWindowB") != nullptr;
            // Leaving the full editor unchanged closes it without a question.
            child<QPushButton>(host, "exitButton")->click();
        });
        child<QPushButton>(dialog, "advancedButtonB")->click();
        EXPECT_EQ(child<QListWidget>(dialog, "numberListB")->item(0)->text(), " 1  5559876");
        child<QLineEdit>(dialog, "cycleEditB")->setText("0");
        child<QPushButton>(dialog, "okButton")->click(); // refused: the dialog stays
        EXPECT_TRUE(dialog->isVisible());
        EXPECT_EQ(dialog->focusWidget(), child<QLineEdit>(dialog, "cycleEditB"));
        prompter.expect("All changes made to the Directories will be lost.", Answer::No);
        child<QPushButton>(dialog, "cancelButton")->click();
    });
    action("actionSimDir")->trigger();

    EXPECT_TRUE(fullEditor);
    EXPECT_EQ(prompter.texts().front(), "The Cycle interval cannot be less than 1 min.");
    // The number went into the image for the full editor; the cycle was dropped.
    EXPECT_EQ(DecodeDirectory(space.image.dir[1])[0].parameter[0], "5559876");
    EXPECT_EQ(space.image.group[1].shortTimer, 20);
    EXPECT_TRUE(action("actionSave")->isEnabled());
    EXPECT_TRUE(prompter.finished());
}

TEST_F(SimDialogsTest, OutputTimerSwitchedToSecondsIsClampedInTheField)
{
    space.image.hardware.port[11].timer = 5000;
    space.image.hardware.port[11].scaleFlags = 0x02;
    QString shown;
    whenDialogOpens([&](QDialog* dialog) {
        ASSERT_EQ(dialog->objectName(), "simoutDialog");
        EXPECT_FALSE(child<QLineEdit>(dialog, "offCodeEdit4")->isEnabled()); // a timed output
        child<QRadioButton>(dialog, "secRadio4")->click();
        shown = child<QLineEdit>(dialog, "timerEdit4")->text();
        child<QPushButton>(dialog, "okButton")->click();
    });
    action("actionSimout")->trigger();
    EXPECT_EQ(shown, "1638");
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"Timer is out of range, it has been set to maximum for seconds: 1638."});
    EXPECT_EQ(space.image.hardware.port[11].timer, 65520);
    EXPECT_EQ(space.image.hardware.port[11].scaleFlags & 0x02, 0);
}

} // namespace
} // namespace rk4::gui
