#include "core/basic/simple_check.h"
#include "gui/basic/simple_warning_dialog.h"
#include "gui/shell/main_window.h"
#include "tests/support/gui_helpers.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <QAction>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>

#include <gtest/gtest.h>

using namespace rk4;
using rk4::test::child;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;
using rk4::test::whenDialogOpens;

namespace {

const char kToBasic[] =
    "Changing to the Basic mode will remove some programming options.\nDo you want to see a summary of these "
    "limitations?";

QStringList rows(QListWidget* list)
{
    QStringList texts;
    for (int i = 0; i < list->count(); ++i)
        texts << list->item(i)->text();
    return texts;
}

} // namespace

TEST(SimpleWarningDialog, SwitchingAnAdvancedImageThatBreaksThreeRulesListsThemAndConvertAllMakesItBasic)
{
    TempDir dir;
    Workspace space(dir.path());
    ScriptedPrompter prompter;
    gui::Main window(space, &prompter);
    QApplication::processEvents();
    prompter.clear();
    // The Advanced template breaks the alarm and output rules; group 4 adds a third.
    space.image.group[3].enabled = 1;

    QStringList listed;
    QString explanation;
    bool rulesShown = false;
    whenDialogOpens([&](QDialog* rules) {
        rulesShown = rules->objectName() == "simpleRulesDialog";
        whenDialogOpens([&](QDialog* dialog) {
            ASSERT_EQ(dialog->objectName(), "simpleWarningDialog");
            auto* list = child<QListWidget>(dialog, "problemList");
            listed = rows(list);
            list->setCurrentRow(2);
            explanation = child<QLabel>(dialog, "explanationLabel")->text();
            child<QPushButton>(dialog, "convertAllButton")->click();
        });
        child<QPushButton>(rules, "okButton")->click();
    });
    prompter.expect(kToBasic, Answer::Yes).expect(kConversionWizardQuestion, Answer::No);
    window.findChild<QAction*>("actionMode")->trigger();

    EXPECT_TRUE(rulesShown);
    EXPECT_EQ(listed,
              (QStringList{"Point 1, 2, 3, 4, 5, 6, 7 and 8 are not set for digital operation.",
                           "Point 9, 10 and 11 are not set up as outputs.", "Group 4 is enabled and should not be."}));
    EXPECT_TRUE(explanation.startsWith("Only Groups 1 and 2 are used in Basic mode.")) << explanation.toStdString();
    EXPECT_TRUE(space.basicMode());
    EXPECT_EQ(CheckForSimple(space.image).problems, 0u);
    EXPECT_TRUE(window.findChild<QAction*>("actionMode")->isChecked());
    EXPECT_TRUE(prompter.finished());
}
