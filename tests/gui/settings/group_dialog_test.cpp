#include "gui/settings/group_dialog.h"
#include "tests/support/main_fixture.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace rk4::gui {
namespace {

using test::child;
using test::whenDialogOpens;

using GroupDialogTest = test::MainTest;

TEST_F(GroupDialogTest, RefusedOkKeepsTheDialogOpenOnTheFieldAndAcceptedOkWrites)
{
    QAction* group2 = child<QAction>(main.get(), "actionGroup2");
    ASSERT_TRUE(group2->isEnabled());
    bool played = false;
    whenDialogOpens([&](QDialog* dialog) {
        EXPECT_EQ(dialog->objectName(), "GroupDialog");
        EXPECT_EQ(dialog->windowTitle(), "Group 2");
        EXPECT_FALSE(group2->isEnabled());
        EXPECT_FALSE(child<QAction>(main.get(), "actionPoints")->isEnabled());

        auto* cycles = child<QLineEdit>(dialog, "shortCyclesEdit");
        cycles->setText("10");
        child<QComboBox>(dialog, "ackOutCombo")->setCurrentIndex(3);
        child<QPushButton>(dialog, "okButton")->click();
        EXPECT_TRUE(dialog->isVisible()) << "a refusal keeps the dialog open";
        // The port notice comes before the limits are checked.
        EXPECT_EQ(prompter.texts(),
                  (std::vector<std::string>{
                      "Output 3 will be changed from an on/off type to a timed type for the Acknowledge Output.",
                      "Short Cycles is too large, maximum is 9."}));
        EXPECT_EQ(cycles->selectedText(), "10");
        EXPECT_EQ(space.image.group[1].shortCycles, 5);

        prompter.clear();
        cycles->setText("9");
        child<QPushButton>(dialog, "okButton")->click();
        EXPECT_FALSE(dialog->isVisible());
        played = true;
    });
    group2->trigger();
    ASSERT_TRUE(played);

    EXPECT_EQ(space.image.group[1].shortCycles, 9);
    EXPECT_EQ(space.image.group[1].ackOut, 3);
    EXPECT_EQ(space.image.hardware.port[kInputCount + 2].timer, 400);
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(group2->isEnabled());
    EXPECT_TRUE(child<QAction>(main.get(), "actionPoints")->isEnabled());
}

} // namespace
} // namespace rk4::gui
