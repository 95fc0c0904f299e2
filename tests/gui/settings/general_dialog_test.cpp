#include "core/database/defaults.h"
#include "gui/link/pgm_dialog.h"
#include "tests/support/main_fixture.h"

#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>

namespace rk4::gui {
namespace {

using test::child;
using test::whenDialogOpens;

class GeneralDialogTest : public test::MainTest {
  protected:
    GeneralDialogTest()
    {
        DefaultValues(space.image);
        space.image.gen.accessCode = {'1', 0};
        space.DatabaseChanged = false;
    }
};

TEST_F(GeneralDialogTest, OkKeepsTheSettingsAndGivesTheRingOutputItsTiming)
{
    bool outputsOffWhileOpen = true;
    whenDialogOpens([&](QDialog* dialog) {
        ASSERT_EQ(dialog->objectName(), "GeneralDialog");
        outputsOffWhileOpen = !action("actionOutputs")->isEnabled() && !action("actionProgram")->isEnabled();
        child<QLineEdit>(dialog, "nameEdit")->setText("NORTH WELL");
        child<QComboBox>(dialog, "ringOutCombo")->setCurrentIndex(2);
        child<QPushButton>(dialog, "okButton")->click();
    });
    action("actionGeneral")->trigger();

    EXPECT_TRUE(outputsOffWhileOpen);
    EXPECT_EQ(nameText(space.image.gen.name), "NORTH WELL      ");
    EXPECT_EQ(space.image.gen.ringOut, 2);
    EXPECT_EQ(space.image.hardware.port[9], (HardwarePort{1, 2, 0, 0, 0, 80}));
    EXPECT_EQ(prompter.texts(),
              std::vector<std::string>{"Output 2 will be changed from an on/off type to timed for ringing."});
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_TRUE(action("actionGeneral")->isEnabled());
    EXPECT_TRUE(action("actionProgram")->isEnabled());
}

TEST_F(GeneralDialogTest, ARefusalKeepsTheDialogOpenOnTheOffendingOutput)
{
    space.image.group[6].alarmOut = 3;
    bool stayedOpen = false;
    bool focused = false;
    whenDialogOpens([&](QDialog* dialog) {
        auto* ring = child<QComboBox>(dialog, "ringOutCombo");
        ring->setCurrentIndex(3);
        child<QPushButton>(dialog, "okButton")->click();
        stayedOpen = dialog->isVisible();
        focused = dialog->focusWidget() == ring;
        prompter.expect("All changes made to General will be lost.", Answer::No);
        child<QPushButton>(dialog, "cancelButton")->click();
    });
    action("actionGeneral")->trigger();

    EXPECT_TRUE(stayedOpen);
    EXPECT_TRUE(focused);
    ASSERT_FALSE(prompter.messages().empty());
    EXPECT_EQ(prompter.messages()[0].text,
              "Conflict found! Output 3 is being used by Group 7 for Alarm Out  - both are not allowed.");
    EXPECT_EQ(space.image.gen.ringOut, 0);
    EXPECT_FALSE(space.DatabaseChanged);
    EXPECT_TRUE(prompter.finished());
}

TEST_F(GeneralDialogTest, ProgramsWriteOpensTheEditorOfTheModeWhenTheAccessCodeIsMissing)
{
    for (const auto& [basic, editorName] : {std::pair{false, "GeneralDialog"}, std::pair{true, "simGenDialog"}}) {
        space.image.gen.basicMode = basic;
        space.image.gen.accessCode[0] = 0;
        space.image.gen.securityLevel = 1;
        main->updateCommands();
        prompter.expectPrefix("The Access Code has not been entered in the General section.", Answer::Yes)
            .expect("Do you want to continue with programming?", Answer::No);
        QString shown;
        bool summaryOffered = false;
        whenDialogOpens([&](QDialog* program) {
            // The Summary question is asked only where the shell can show it.
            summaryOffered = static_cast<bool>(qobject_cast<PgmDialog*>(program)->session().openSummary);
            whenDialogOpens([&](QDialog* general) {
                shown = general->objectName();
                child<QLineEdit>(general, "accessCodeEdit")->setText("4321");
                child<QPushButton>(general, "okButton")->click();
            });
            child<QPushButton>(program, "sendDataButton")->click();
            child<QPushButton>(program, "doneButton")->click();
        });
        action("actionProgram")->trigger();

        EXPECT_EQ(shown, editorName);
        EXPECT_TRUE(summaryOffered);
        EXPECT_EQ(space.image.gen.accessCode, (DtmfCode{'4', '3', '2', '1', 0, 0, 0, 0})) << editorName;
        EXPECT_TRUE(prompter.finished()) << editorName;
    }
}

} // namespace
} // namespace rk4::gui
