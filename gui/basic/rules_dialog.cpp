#include "gui/basic/rules_dialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

const char kBasicRules[] =
    "<p>In Basic mode the Rk4 is programmed in one fixed shape, the same one the unit offers to telephone "
    "programming.</p>"
    "<ul>"
    "<li><b>Alarms:</b> hardware inputs 1 to 8 are the eight alarms (points 1 to 8). All are digital inputs "
    "with the same debounce time, all Normally Open or all Normally Closed, and all momentary or all "
    "latched.</li>"
    "<li><b>Outputs:</b> outputs 1 to 4 are user controlled, each ON/OFF or Timed. Outputs 5 to 8 are "
    "driven by the unit itself to show its state, such as ringing, alarms and acknowledgement.</li>"
    "<li><b>Groups:</b> only groups 1 and 2 are used. Group 1 always reports through Directory A and group 2 "
    "through Directory B; the assignment is automatic.</li>"
    "<li><b>Directories:</b> Directories A and B hold telephone numbers only. Directories C to F are not "
    "used.</li>"
    "<li><b>Points 17 to 30</b> are not used.</li>"
    "</ul>"
    "<p>Analog, watchdog, interval and totalizer inputs, groups 3 to 6 and directory commands such as WAIT or "
    "DTMF are not available. A configuration that uses them must be converted, which replaces it with the "
    "Basic default configuration.</p>";

const char kAdvancedRules[] =
    "<p>In Advanced mode every parameter of the Rk4 can be programmed.</p>"
    "<ul>"
    "<li><b>Inputs:</b> each of the 8 hardware inputs may be digital, watchdog, interval, totalizer or analog, "
    "with its own debounce time and polarity.</li>"
    "<li><b>Points:</b> 30 points, inputs or outputs, each attached to any port and reporting to any of the six "
    "groups.</li>"
    "<li><b>Groups:</b> six groups, each with its own codes, timers, indicator outputs and shift "
    "directories.</li>"
    "<li><b>Directories:</b> six directories, A to F, of up to 20 lines of commands: dial, DTMF, wait, voice, "
    "alert and the others.</li>"
    "</ul>"
    "<p><b>Limitations:</b> many of these settings cannot be reached by telephone programming, so a unit "
    "programmed in Advanced mode should be changed with this programmer. The Basic editors and the Basic wizard "
    "are not available; switching back to Basic mode checks the configuration and converts what does not "
    "fit.</p>";

} // namespace

RulesDialog::RulesDialog(const QString& objectName, const QString& title, const QString& rules, QWidget* parent)
    : QDialog(parent)
{
    setObjectName(objectName);
    setWindowTitle(title);
    setMinimumWidth(520);
    auto* layout = new QVBoxLayout(this);
    auto* text = new QLabel(rules, this);
    text->setObjectName("rulesText");
    text->setWordWrap(true);
    text->setTextFormat(Qt::RichText);
    text->setWhatsThis("What this mode of working allows and what it leaves out.");
    layout->addWidget(text);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("okButton");
    buttons->button(QDialogButtonBox::Ok)->setWhatsThis("Close the summary and go on.");
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    layout->addWidget(buttons);
}

SimpleRulesDialog::SimpleRulesDialog(QWidget* parent)
    : RulesDialog("simpleRulesDialog", "Basic Mode Rules", kBasicRules, parent)
{}

AdvancedRulesDialog::AdvancedRulesDialog(QWidget* parent)
    : RulesDialog("advancedRulesDialog", "Advanced Mode Rules", kAdvancedRules, parent)
{}

} // namespace rk4::gui
