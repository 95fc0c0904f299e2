#include "core/points/point_editor.h"
#include "gui/points/points_win.h"
#include "tests/support/main_fixture.h"

#include <QCheckBox>
#include <QComboBox>
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

class PointsWinTest : public test::MainTest {
  protected:
    PointsWin* openPoints()
    {
        child<QAction>(main.get(), "actionPoints")->trigger();
        return main->findChild<PointsWin*>("pointsWindow");
    }
};

TEST_F(PointsWinTest, PortAssignedToAnEmptySlotAndEditedIsWrittenOnExit)
{
    QAction* points = child<QAction>(main.get(), "actionPoints");
    ASSERT_TRUE(points->isEnabled());
    PointsWin* window = openPoints();
    ASSERT_NE(window, nullptr);
    EXPECT_FALSE(points->isEnabled());
    EXPECT_FALSE(child<QAction>(main.get(), "actionInputs")->isEnabled());

    auto* list = child<QListWidget>(window, "pointList");
    ASSERT_EQ(list->count(), 30);
    list->setCurrentRow(4);
    whenDialogOpens([](QDialog* chooser) {
        EXPECT_EQ(chooser->objectName(), "NewPointDialog");
        auto* ports = child<QListWidget>(chooser, "portList");
        EXPECT_EQ(ports->count(), 17);
        EXPECT_EQ(ports->currentRow(), 16);
        ports->setCurrentRow(2);
        whenDialogOpens([](QDialog* digital) {
            EXPECT_EQ(digital->objectName(), "DigitalPointDialog");
            EXPECT_EQ(child<QListWidget>(digital, "portList")->currentRow(), 2);
            child<QLineEdit>(digital, "nameEdit")->setText("BACK DOOR");
            child<QComboBox>(digital, "groupCombo")->setCurrentIndex(2);
            child<QCheckBox>(digital, "enabledCheck")->setChecked(true);
            child<QLineEdit>(digital, "codeEdit")->setText("12E");
            child<QPushButton>(digital, "exitButton")->click();
            EXPECT_TRUE(digital->isVisible()) << "a refusal keeps the dialog open";
            EXPECT_EQ(child<QLineEdit>(digital, "codeEdit")->selectedText(), "12E");
            child<QLineEdit>(digital, "codeEdit")->setText("12#");
            child<QPushButton>(digital, "exitButton")->click();
        });
        child<QPushButton>(chooser, "okButton")->click();
    });
    QTest::keyClick(list, Qt::Key_Return);

    EXPECT_EQ(list->item(4)->text().toStdString(),
              " 5  BACK DOOR         DIGITAL    I/P 3  Normal: High, Group 3, Tag: 12#");
    EXPECT_EQ(space.image.alm[4].type, kPointUnused) << "the image waits for Exit";

    QTest::mouseClick(child<QPushButton>(window, "exitButton"), Qt::LeftButton);
    flushDeletes();
    const PointRecord& stored = space.image.alm[4];
    EXPECT_EQ(stored.type, kPointDigital);
    EXPECT_EQ(stored.port, 2);
    EXPECT_EQ(stored.groupMask, 4);
    EXPECT_EQ(stored.inactive, 0);
    EXPECT_EQ(nameText(stored.name), "BACK DOOR       ");
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(points->isEnabled());
    EXPECT_EQ(main->findChild<PointsWin*>("pointsWindow"), nullptr);
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"Invalid digit found in the DTMF code, use 0-9, *, #, A, B, C and D only."});
}

TEST_F(PointsWinTest, MovingAPointReopensTheEditorOfItsNewPort)
{
    space.image.alm[0].type = kPointDigital;
    space.image.alm[0].inactive = 0;
    space.image.alm[0].groupMask = 1;
    space.image.group[1].ackOut = 2;
    PointsWin* window = openPoints();
    ASSERT_NE(window, nullptr);
    prompter.expect("Changing the port will delete existing settings - Continue?", Answer::Yes);
    whenDialogOpens([](QDialog* digital) {
        auto* ports = child<QListWidget>(digital, "portList");
        ports->setCurrentRow(9); // output 2: group 2's acknowledge output
        EXPECT_EQ(ports->currentRow(), 0) << "a refused port is not taken";
        whenDialogOpens([](QDialog* output) {
            EXPECT_EQ(output->objectName(), "OutputPointDialog");
            EXPECT_EQ(child<QListWidget>(output, "portList")->currentRow(), 10);
            child<QPushButton>(output, "cancelButton")->click();
        });
        ports->setCurrentRow(10);
    });
    child<QPushButton>(window, "editButton")->click();

    EXPECT_EQ(prompter.texts()[0], "This output is being used for a special function and cannot be used as a point.");
    EXPECT_TRUE(child<QListWidget>(window, "pointList")->item(0)->text().contains("ON/OFF OUT O/P 3"));
    EXPECT_TRUE(prompter.finished());
}

TEST_F(PointsWinTest, CalibrationAndSpokenUnitsFromTheAnalogEditorAreStoredInThePoint)
{
    space.image.hardware.port[3].typeFlags = 0x10;
    space.image.alm[2].type = kPointAnalog;
    space.image.alm[2].port = 3;
    ApplyTypeDefaults(space.image.alm[2]);
    space.cfg.bytes[1] = 1; // limits in counts
    PointsWin* window = openPoints();
    ASSERT_NE(window, nullptr);
    child<QListWidget>(window, "pointList")->setCurrentRow(2);
    whenDialogOpens([](QDialog* analog) {
        EXPECT_EQ(analog->objectName(), "AnalogPointDialog");
        EXPECT_EQ(child<QLabel>(analog, "unitsLabel")->text(), "(none)");
        whenDialogOpens([](QDialog* units) {
            EXPECT_EQ(units->windowTitle(), "Spoken Units");
            child<QComboBox>(units, "multiplierCombo")->setCurrentIndex(2);
            child<QComboBox>(units, "unitCombo")->setCurrentIndex(19);
            child<QComboBox>(units, "rateCombo")->setCurrentIndex(3);
            EXPECT_EQ(child<QLabel>(units, "spokenLabel")->text(), "12.5 THOUSAND KILOWATTS PER HOUR");
            EXPECT_FALSE(child<QLabel>(units, "newerUnitNote")->isHidden());
            units->accept();
        });
        child<QPushButton>(analog, "unitsButton")->click();
        EXPECT_EQ(child<QLabel>(analog, "unitsLabel")->text(), "THOUSAND KILOWATTS PER HOUR");
        whenDialogOpens([](QDialog* calibration) {
            EXPECT_EQ(calibration->windowTitle(), "Calibration");
            EXPECT_EQ(child<QLabel>(calibration, "lowResetLabel")->text(), "+034.5");
            auto* maximum = child<QLineEdit>(calibration, "decimalMaximumEdit");
            maximum->setText("0.8");
            child<QLineEdit>(calibration, "decimalMinimumEdit")->setText("0.2");
            child<QPushButton>(calibration, "okButton")->click();
            EXPECT_TRUE(calibration->isVisible()) << "equal integer parts are refused";
            child<QLineEdit>(calibration, "decimalMinimumEdit")->setText("0");
            maximum->setText("50.5");
            child<QLineEdit>(calibration, "lowSetpointEdit")->setText("10");
            child<QLineEdit>(calibration, "highSetpointEdit")->setText("40");
            child<QPushButton>(calibration, "okButton")->click();
        });
        child<QPushButton>(analog, "calibrateButton")->click();
        child<QPushButton>(analog, "exitButton")->click();
    });
    child<QPushButton>(window, "editButton")->click();
    EXPECT_EQ(prompter.texts(), std::vector<std::string>{"The Decimal Minimum and Decimal Maximum cannot be equal."});
    const PointRecord& point = window->core().copy()[2];
    EXPECT_EQ(point.decimalPlaces, 2);
    EXPECT_EQ(point.unitSelector, (std::array<std::uint8_t, 3>{2, 19, 3}));
    EXPECT_EQ(point.decimalMaximum, 5050);
    EXPECT_EQ(point.lowSetpoint, 50); // 10 * 255 / 50.5 = 50.5
    EXPECT_TRUE(child<QListWidget>(window, "pointList")->item(2)->text().contains("Range: 0.00 to 50.50"));
}

} // namespace
} // namespace rk4::gui
