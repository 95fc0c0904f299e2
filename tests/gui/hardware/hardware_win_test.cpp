#include "gui/hardware/hardware_win.h"
#include "tests/support/main_fixture.h"

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace rk4::gui {
namespace {

using test::child;
using test::whenDialogOpens;

const char kLostInputs[] = "All changes made to the hardware inputs will be lost.";

class HardwareWinTest : public test::MainTest {
  protected:
    HardwareWin* openInputs()
    {
        child<QAction>(main.get(), "actionInputs")->trigger();
        return main->findChild<HardwareWin*>("inputsWindow");
    }
};

TEST_F(HardwareWinTest, PortEditedThroughItsDialogIsWrittenOnExit)
{
    QAction* inputs = child<QAction>(main.get(), "actionInputs");
    QAction* outputs = child<QAction>(main.get(), "actionOutputs");
    ASSERT_TRUE(inputs->isEnabled());
    HardwareWin* window = openInputs();
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(inputs->isEnabled());
    EXPECT_FALSE(outputs->isEnabled());
    EXPECT_FALSE(child<QAction>(main.get(), "actionSave")->isEnabled());

    auto* list = child<QListWidget>(window, "portList");
    list->setCurrentRow(2);
    whenDialogOpens([](QDialog* dialog) {
        EXPECT_EQ(dialog->objectName(), "DigitalDialog");
        child<QLineEdit>(dialog, "debounceEdit")->setText("1");
        child<QRadioButton>(dialog, "debounceSecRadio")->click(); // completes the text to 1.000
        EXPECT_EQ(child<QLineEdit>(dialog, "debounceEdit")->text(), "1.000");
        child<QRadioButton>(dialog, "normallyLowRadio")->click();
        child<QPushButton>(dialog, "okButton")->click();
    });
    QTest::keyClick(list, Qt::Key_Return);

    EXPECT_EQ(list->item(2)->text().toStdString(), " 3   DIGITAL       1.000 sec  Normally Low Input");
    EXPECT_FALSE(space.DatabaseChanged);

    QTest::mouseClick(child<QPushButton>(window, "exitButton"), Qt::LeftButton);
    flushDeletes();
    EXPECT_EQ(space.image.hardware.port[2].debounce, 40);
    EXPECT_EQ(space.image.hardware.port[2].typeFlags, 0x80);
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(inputs->isEnabled());
    EXPECT_TRUE(child<QAction>(main.get(), "actionSave")->isEnabled());
    EXPECT_EQ(main->findChild<HardwareWin*>("inputsWindow"), nullptr);
    EXPECT_TRUE(prompter.messages().empty());
}

TEST_F(HardwareWinTest, CancelWithEditsAndGoingBackKeepsTheWindowAndTheEdits)
{
    HardwareWin* window = openInputs();
    ASSERT_NE(window, nullptr);
    whenDialogOpens([](QDialog* dialog) {
        child<QLineEdit>(dialog, "debounceEdit")->setText("2.5");
        child<QPushButton>(dialog, "okButton")->click();
    });
    child<QPushButton>(window, "editButton")->click();

    prompter.expect(kLostInputs, Answer::Cancel);
    child<QPushButton>(window, "cancelButton")->click();
    flushDeletes();
    ASSERT_EQ(main->findChild<HardwareWin*>("inputsWindow"), window);
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(child<QListWidget>(window, "portList")->item(0)->text().contains("2.500 sec"));
    EXPECT_EQ(space.image.hardware.port[0].debounce, 2);
    EXPECT_FALSE(child<QAction>(main.get(), "actionInputs")->isEnabled());

    // Closing the main window leaves the editor the same way: discard, then close.
    prompter.expect(kLostInputs, Answer::No);
    main->close();
    EXPECT_EQ(space.image.hardware.port[0].debounce, 2);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(HardwareWinTest, TypeChangeReopensTheNewTypesDialogAndRefusalsKeepItOpen)
{
    prompter.expect("Changing input type will delete existing settings - Continue?", Answer::Yes);
    HardwareWin* window = openInputs();
    ASSERT_NE(window, nullptr);
    whenDialogOpens([](QDialog* digital) {
        whenDialogOpens([](QDialog* watchdog) {
            EXPECT_EQ(watchdog->objectName(), "WdogDialog");
            auto* timer = child<QLineEdit>(watchdog, "timerEdit");
            EXPECT_EQ(timer->text(), "10");
            EXPECT_EQ(child<QLabel>(watchdog, "timerStepLabel")->text(), "1 min steps");
            timer->setText("70000");
            child<QPushButton>(watchdog, "okButton")->click();
            EXPECT_TRUE(watchdog->isVisible()) << "a refusal keeps the dialog open";
            EXPECT_EQ(timer->selectedText(), "70000");
            child<QPushButton>(watchdog, "cancelButton")->click();
        });
        child<QComboBox>(digital, "typeCombo")->setCurrentIndex(1);
    });
    child<QPushButton>(window, "editButton")->click();

    EXPECT_TRUE(prompter.saw("The watchdog interval cannot be greater than 65535 min."));
    EXPECT_TRUE(child<QListWidget>(window, "portList")->item(0)->text().startsWith(" 1   WATCHDOG"));
    EXPECT_TRUE(prompter.finished());
}

} // namespace
} // namespace rk4::gui
