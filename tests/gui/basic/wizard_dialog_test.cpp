#include "core/basic/basic_fields.h"
#include "core/basic/simple_check.h"
#include "core/database/defaults.h"
#include "core/database/dtmf.h"
#include "gui/basic/wizard_dialog.h"
#include "tests/support/basic_main.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

namespace rk4::gui {
namespace {

using test::child;
using test::whenDialogOpens;

class WizardDialogTest : public test::BasicMainTest {
  protected:
    // The dialog's controls, as a technician would use them.
    struct Driver {
        QDialog* dialog;
        QString question() const { return child<QLabel>(dialog, "questionLabel")->text(); }
        void pick(int row) const
        {
            child<QRadioButton>(dialog, QString("choice%1").arg(row).toUtf8().constData())->click();
            forward();
        }
        void type(const QString& text) const
        {
            child<QLineEdit>(dialog, "entryEdit")->setText(text);
            forward();
        }
        void forward() const { child<QPushButton>(dialog, "forwardButton")->click(); }
        void yes() const { child<QPushButton>(dialog, "yesButton")->click(); }
        void no() const { child<QPushButton>(dialog, "noButton")->click(); }
    };
};

TEST_F(WizardDialogTest, RunWizardWalksToTheEndAndLeavesABasicImage)
{
    QAction* run = action("actionRunWizard");
    ASSERT_TRUE(run->isVisible());
    ASSERT_TRUE(run->isEnabled());

    QStringList seen;
    whenDialogOpens([&](QDialog* dialog) {
        ASSERT_EQ(dialog->objectName(), "wizardDialog");
        const Driver w{dialog};
        auto* back = child<QPushButton>(dialog, "backButton");
        auto* forward = child<QPushButton>(dialog, "forwardButton");
        EXPECT_EQ(child<QLabel>(dialog, "stepLabel")->text(), "Step 1 of 12");
        EXPECT_FALSE(back->isEnabled());
        w.pick(2);
        // A yes/no question: the choices give way to Yes and No.
        EXPECT_EQ(w.question(), "Do you want to set them all to use Directory A?");
        EXPECT_TRUE(child<QPushButton>(dialog, "yesButton")->isVisible());
        EXPECT_FALSE(forward->isEnabled());
        w.yes();
        w.no(); // not B as well
        EXPECT_EQ(child<QLabel>(dialog, "stepLabel")->text(), "Step 3 of 12");
        w.pick(1);
        w.no();
        w.type("2");
        w.pick(1);
        w.no(); // stays ON/OFF
        w.type("41");
        w.type("40");
        EXPECT_EQ(child<QLabel>(dialog, "titleLabel")->text(), "DIRECTORY A");
        w.type("555-1234");
        w.no();
        // A refused answer keeps the question.
        w.type("0");
        EXPECT_EQ(w.question(), "How many minutes would you like between callout cycles for Directory A");
        w.type("15");
        w.type("11");
        w.type("12");
        EXPECT_EQ(w.question(), "What Interrogate code would you like for the output controls in Directory A");
        w.forward();
        w.pick(2);
        w.yes();
        w.type("1999");
        w.type("2999");
        EXPECT_EQ(child<QLineEdit>(dialog, "entryEdit")->text(), "60");
        w.forward();
        seen << child<QLabel>(dialog, "titleLabel")->text() << forward->text() << w.question();
        EXPECT_FALSE(back->isEnabled());
        w.forward(); // Finish
    });
    prompter.expect("Running the Basic Wizard will erase all current entries.  Proceed?", Answer::Yes);
    run->trigger();

    ASSERT_EQ(seen.size(), 3);
    EXPECT_EQ(seen[0], "COMPLETE");
    EXPECT_EQ(seen[1], "&Finish");
    EXPECT_EQ(seen[2].toStdString(), kWizardFinished);
    EXPECT_EQ(prompter.messages().back().text, "The Cycle interval cannot be less than 1 min.");
    EXPECT_TRUE(prompter.finished());

    const Database& db = space.image;
    EXPECT_TRUE(space.DatabaseChanged);
    EXPECT_EQ(CheckForSimple(db).problems, 0u);
    EXPECT_EQ(SimpleDirectoryNumbers(db.dir[0]), std::vector<std::string>{"5551234"});
    EXPECT_EQ(db.alm[1].inactive, 0);
    EXPECT_EQ(db.alm[2].inactive, 1);
    EXPECT_EQ(dtmfCodeText(db.alm[8].onCode), "41");
    EXPECT_EQ(db.group[0].shortTimer, 15);
    EXPECT_EQ(db.gen.ringsToAnswer, 3);
    EXPECT_EQ(db.gen.callProgress, 1);
    EXPECT_EQ(dtmfCodeText(db.gen.modemEnableCode), "2999");
}

TEST_F(WizardDialogTest, LeavingEarlyFromClearDataKeepsTheDefaultBasicDatabase)
{
    const Database fresh = space.image;
    bool stillOpen = false;
    whenDialogOpens([&](QDialog* dialog) {
        ASSERT_EQ(dialog->objectName(), "wizardDialog");
        const Driver w{dialog};
        w.pick(3);
        w.no(); // every alarm on Directory B
        prompter.expect(kWizardExitQuestion, Answer::No);
        child<QPushButton>(dialog, "exitButton")->click();
        stillOpen = dialog->isVisible();
        prompter.expect(kWizardExitQuestion, Answer::Yes);
        dialog->close();
    });
    prompter.expect("All data will be erased - Continue?", Answer::Yes);
    prompter.expect("Do you want to use the Basic Wizard for configuration?", Answer::Yes);
    action("actionClearData")->trigger();

    EXPECT_TRUE(stillOpen);
    EXPECT_TRUE(prompter.finished());
    EXPECT_EQ(space.image, fresh);
    EXPECT_FALSE(space.DatabaseChanged);
}

} // namespace
} // namespace rk4::gui
