#include "gui/basic/sim_out_dialog.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace rk4::gui {

SimoutDialog::SimoutDialog(Workspace& space, Prompter& prompter, QWidget* parent)
    : SimDialog(editor, prompter, parent), editor(space)
{
    setObjectName("simoutDialog");
    setWindowTitle(qtext(editor.title()));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto* user = new QGroupBox("User controlled", this);
    auto* grid = new QGridLayout(user);
    const char* const heads[] = {"", "Type", "DTMF ON code", "DTMF OFF code", "Timer", "Resolution"};
    for (int column = 0; column < 6; ++column)
        grid->addWidget(new QLabel(QString("<b>%1</b>").arg(heads[column]), user), 0, column, 1,
                        column == 5 ? 2 : 1);
    const std::vector<std::string> resolutions = SimoutEditor::resolutionChoices();
    for (int row = 0; row < kUserOutputs; ++row) {
        const QString n = QString::number(row + 1);
        SimoutEditor::Output& out = editor.output[row];
        Row& r = rows[row];
        r.type = addCombo("typeCombo" + n, SimoutEditor::typeChoices(), out.timed ? 1 : 0,
                          "ON/OFF: a caller switches output " + n +
                              " on with one code and off with the other. TIMED: the ON code switches it on for the "
                              "time set here.");
        connect(r.type, &QComboBox::currentIndexChanged, this, [this, row](int index) { TypeChanging(row, index); });
        r.onCode = addEdit("onCodeEdit" + n, out.onCode, 7,
                           "The code a caller enters to switch output " + n +
                               " on: up to 7 of 0-9, *, #, A, B, C and D.");
        r.offCode = addEdit("offCodeEdit" + n, out.offCode, 7,
                            "The code a caller enters to switch output " + n +
                                " off (ON/OFF outputs only): up to 7 of 0-9, *, #, A, B, C and D.");
        r.timer = addEdit("timerEdit" + n, out.timer.text, 8,
                          "How long a TIMED output stays on: up to 1638 seconds in 25 msec steps, or 1 to 65535 "
                          "minutes.");
        r.timer->setAlignment(Qt::AlignRight);
        r.seconds = new QRadioButton(qtext(resolutions[0]), user);
        r.seconds->setObjectName("secRadio" + n);
        r.seconds->setWhatsThis("Count the time of output " + n + " in seconds.");
        r.minutes = new QRadioButton(qtext(resolutions[1]), user);
        r.minutes->setObjectName("minRadio" + n);
        r.minutes->setWhatsThis("Count the time of output " + n + " in whole minutes.");
        auto* resolution = new QButtonGroup(this);
        resolution->addButton(r.seconds);
        resolution->addButton(r.minutes);
        connect(r.seconds, &QRadioButton::clicked, this, [this, row] { ResolutionChanging(row, false); });
        connect(r.minutes, &QRadioButton::clicked, this, [this, row] { ResolutionChanging(row, true); });

        grid->addWidget(new QLabel("Output " + n, user), row + 1, 0);
        grid->addWidget(r.type, row + 1, 1);
        grid->addWidget(r.onCode, row + 1, 2);
        grid->addWidget(r.offCode, row + 1, 3);
        grid->addWidget(r.timer, row + 1, 4);
        grid->addWidget(r.seconds, row + 1, 5);
        grid->addWidget(r.minutes, row + 1, 6);
        showRow(row);
    }
    layout->addWidget(user);

    auto* hardware = new QGroupBox("Hardware controlled", this);
    hardware->setObjectName("hardwareBox");
    hardware->setWhatsThis("The outputs the unit switches by itself. They are fixed in Basic mode; the Advanced "
                           "mode's General and Group editors change them.");
    auto* roles = new QGridLayout(hardware);
    int line = 0;
    for (const SimoutEditor::Role& role : editor.hardwareRoles()) {
        roles->addWidget(new QLabel(qtext(role.name), hardware), line, 0);
        auto* output = new QLabel(qtext(role.output), hardware);
        output->setObjectName(QString("role%1Label").arg(line + 1));
        roles->addWidget(output, line, 1);
        ++line;
    }
    roles->setColumnStretch(2, 1);
    layout->addWidget(hardware);
    addButtons(layout);
}

void SimoutDialog::showRow(int row)
{
    const SimoutEditor::Output& out = editor.output[row];
    Row& r = rows[row];
    const QSignalBlocker blockOff(r.offCode);
    const QSignalBlocker blockTimer(r.timer);
    r.offCode->setText(qtext(out.offCode));
    r.timer->setText(qtext(out.timer.text));
    r.offCode->setEnabled(!out.timed);
    r.timer->setEnabled(out.timed);
    r.seconds->setEnabled(out.timed);
    r.minutes->setEnabled(out.timed);
    (out.timer.minutes ? r.minutes : r.seconds)->setChecked(true);
}

void SimoutDialog::TypeChanging(int row, int index)
{
    editor.TypeChanging(row, index == 1);
    showRow(row);
}

void SimoutDialog::ResolutionChanging(int row, bool minutes)
{
    editor.ResolutionChanging(row, minutes, prompter);
    showRow(row);
}

void SimoutDialog::focusRefused()
{
    const Row& r = rows[editor.focusRow];
    switch (editor.focus) {
    case SimoutEditor::Field::OnCode: focusField(r.onCode); break;
    case SimoutEditor::Field::OffCode: focusField(r.offCode); break;
    case SimoutEditor::Field::Timer: focusField(r.timer); break;
    case SimoutEditor::Field::None: break;
    }
}

} // namespace rk4::gui
