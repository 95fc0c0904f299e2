#include "gui/hardware/port_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWhatsThis>

namespace rk4::gui {

namespace {

QString text(const std::string& s) { return QString::fromStdString(s); }

} // namespace

PortDialog::PortDialog(PortEditor& editor, Prompter& prompter, QWidget* parent)
    : QDialog(parent), core(editor), prompter(prompter)
{
    const DialogKind kind = core.kind();
    setObjectName(dialogName(kind));
    setWindowTitle(text(core.title()));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(buildTypeRow());

    if (core.hasDebounce()) {
        layout->addWidget(buildTimeBox("Debounce", "debounce", debounce, core.debounce,
                                       "How long the input must stay changed before the unit accepts the change. "
                                       "Seconds are kept in 25 msec steps up to 1638 sec; minutes up to 65535."));
        connect(debounce.seconds, &QRadioButton::clicked, this, &PortDialog::DebounceSec);
        connect(debounce.minutes, &QRadioButton::clicked, this, &PortDialog::DebounceMin);
    }

    switch (kind) {
    case DialogKind::Digital:
    case DialogKind::Interval:
        layout->addWidget(buildChoiceBox("Polarity", {"Normally &High", "Normally &Low"},
                                         {"normallyHighRadio", "normallyLowRadio"},
                                         {"The input is high when at rest; a low level is the alarm state.",
                                          "The input is low when at rest; a high level is the alarm state."},
                                         polarity));
        polarity[core.normallyLow ? 1 : 0]->setChecked(true);
        if (kind == DialogKind::Interval) {
            layout->addWidget(buildChoiceBox(
                "Timer resolution", {"&Seconds", "Mi&nutes"}, {"resolutionSecondsRadio", "resolutionMinutesRadio"},
                {"The interval is measured in seconds.", "The interval is measured in minutes."}, resolution));
            resolution[core.intervalMinutes ? 1 : 0]->setChecked(true);
        }
        break;
    case DialogKind::Wdog:
    case DialogKind::Total: {
        const bool watchdog = kind == DialogKind::Wdog;
        layout->addWidget(buildChoiceBox(
            watchdog ? "Restart on" : "Count on", {"&Both changes", "L&ow to High", "&High to Low"},
            {"bothRadio", "lowToHighRadio", "highToLowRadio"},
            {watchdog ? "Every change of the input restarts the watchdog timer." : "Every change of the input counts.",
             watchdog ? "A change from low to high restarts the watchdog timer." : "A change from low to high counts.",
             watchdog ? "A change from high to low restarts the watchdog timer." : "A change from high to low counts."},
            edges));
        edges[static_cast<int>(core.edge)]->setChecked(true);
        if (watchdog) {
            layout->addWidget(buildTimeBox("Watchdog timer", "timer", timer, core.timer,
                                           "The time within which the input must change; when it runs out the "
                                           "watchdog alarm is raised."));
            connect(timer.seconds, &QRadioButton::clicked, this, &PortDialog::WdogSec);
            connect(timer.minutes, &QRadioButton::clicked, this, &PortDialog::WdogMin);
        } else {
            auto* box = new QGroupBox("Reset input", this);
            auto* row = new QHBoxLayout(box);
            resetCombo = new QComboBox(box);
            resetCombo->setObjectName("resetCombo");
            for (const std::string& choice : core.resetChoices())
                resetCombo->addItem(text(choice));
            resetCombo->setCurrentIndex(core.resetChoice);
            resetCombo->setWhatsThis("The digital input that resets this totalizer, or NONE. Only plain digital "
                                     "inputs are offered.");
            auto* label = new QLabel("&Reset by:", box);
            label->setBuddy(resetCombo);
            row->addWidget(label);
            row->addWidget(resetCombo, 1);
            layout->addWidget(box);
        }
        break;
    }
    case DialogKind::Analog: {
        auto* note =
            new QLabel("The scaling and calibration of an analog input\nare set on the point that uses it.", this);
        note->setObjectName("analogNote");
        layout->addWidget(note);
        break;
    }
    case DialogKind::OnOff: {
        auto* box = new QGroupBox("Group use", this);
        auto* column = new QVBoxLayout(box);
        const std::vector<std::string> uses = core.outputUsage();
        auto* usage = new QLabel(box);
        usage->setObjectName("usageLabel");
        QStringList lines;
        for (const std::string& use : uses)
            lines << text(use);
        usage->setText(lines.isEmpty() ? "Not used by any group" : lines.join('\n'));
        usage->setWhatsThis("The groups that switch this output to show an alarm, a new alarm or an acknowledge. "
                            "They are set in the group editor.");
        column->addWidget(usage);
        layout->addWidget(box);
        break;
    }
    case DialogKind::Timed:
        layout->addWidget(
            buildTimeBox("On time", "timer", timer, core.timer, "How long the output stays on once switched on."));
        connect(timer.seconds, &QRadioButton::clicked, this, &PortDialog::TimerSec);
        connect(timer.minutes, &QRadioButton::clicked, this, &PortDialog::TimerMin);
        break;
    }

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("okButton");
    buttons->button(QDialogButtonBox::Ok)->setWhatsThis("Check the settings and keep them.");
    buttons->button(QDialogButtonBox::Cancel)->setObjectName("cancelButton");
    buttons->button(QDialogButtonBox::Cancel)->setWhatsThis("Close without keeping the changes.");
    connect(buttons, &QDialogButtonBox::accepted, this, &PortDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);

    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });
}

QWidget* PortDialog::buildTypeRow()
{
    auto* row = new QWidget(this);
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    typeCombo = new QComboBox(row);
    typeCombo->setObjectName("typeCombo");
    typeCombo->setMinimumWidth(typeCombo->fontMetrics().horizontalAdvance("TOTALIZER") * 2);
    for (const std::string& type : core.typeChoices())
        typeCombo->addItem(text(type));
    typeCombo->setCurrentIndex(core.typeIndex);
    typeCombo->setWhatsThis(core.isOutput()
                                ? "The kind of output. Changing it deletes the output's settings and empties the "
                                  "points that use it."
                                : "The kind of input. Changing it deletes the input's settings, empties the points "
                                  "that use it and ends its totalizer reset and group acknowledge duties.");
    auto* label = new QLabel(core.isOutput() ? "Output &type:" : "Input &type:", row);
    label->setBuddy(typeCombo);
    layout->addWidget(label);
    layout->addWidget(typeCombo, 1);
    if (core.isOutput())
        connect(typeCombo, &QComboBox::currentIndexChanged, this, &PortDialog::ChangeOutput);
    else
        connect(typeCombo, &QComboBox::currentIndexChanged, this, &PortDialog::ChangeInput);
    return row;
}

QWidget* PortDialog::buildTimeBox(const QString& title, const QString& name, TimeControls& controls,
                                  const TimeField& field, const QString& help)
{
    auto* box = new QGroupBox(title, this);
    box->setObjectName(name + "Box");
    auto* grid = new QGridLayout(box);
    controls.edit = new QLineEdit(box);
    controls.edit->setObjectName(name + "Edit");
    controls.edit->setMaxLength(static_cast<int>(kTimeFieldLength));
    controls.edit->setFixedWidth(controls.edit->fontMetrics().horizontalAdvance("0000.0000") + 12);
    controls.edit->setAlignment(Qt::AlignRight);
    controls.edit->setWhatsThis(help);
    controls.steps = new QLabel(box);
    controls.steps->setObjectName(name + "StepLabel");
    controls.steps->setMinimumWidth(controls.steps->fontMetrics().horizontalAdvance("25 msec steps") + 4);
    controls.seconds = new QRadioButton("Se&conds", box);
    controls.seconds->setObjectName(name + "SecRadio");
    controls.seconds->setWhatsThis("Count this time in 25 msec steps, from 0.025 to 1638 seconds.");
    controls.minutes = new QRadioButton("&Minutes", box);
    controls.minutes->setObjectName(name + "MinRadio");
    controls.minutes->setWhatsThis("Count this time in whole minutes, from 1 to 65535 minutes.");
    grid->addWidget(controls.edit, 0, 0);
    grid->addWidget(controls.steps, 0, 1);
    grid->addWidget(controls.seconds, 1, 0);
    grid->addWidget(controls.minutes, 1, 1);
    grid->setColumnStretch(2, 1);
    showTime(controls, field);
    return box;
}

QWidget* PortDialog::buildChoiceBox(const QString& title, const QStringList& texts, const QStringList& names,
                                    const QStringList& help, QList<QRadioButton*>& buttons)
{
    auto* box = new QGroupBox(title, this);
    auto* column = new QVBoxLayout(box);
    for (int i = 0; i < texts.size(); ++i) {
        auto* button = new QRadioButton(texts[i], box);
        button->setObjectName(names[i]);
        button->setWhatsThis(help[i]);
        column->addWidget(button);
        buttons << button;
    }
    return box;
}

void PortDialog::showTime(TimeControls& controls, const TimeField& field)
{
    controls.edit->setText(text(field.text));
    controls.steps->setText(text(field.stepLabel()));
    (field.minutes ? controls.minutes : controls.seconds)->setChecked(true);
}

void PortDialog::readControls()
{
    if (debounce.edit)
        core.debounce.text = debounce.edit->text().toStdString();
    if (timer.edit)
        core.timer.text = timer.edit->text().toStdString();
    if (!polarity.isEmpty())
        core.normallyLow = polarity[1]->isChecked();
    if (!resolution.isEmpty())
        core.intervalMinutes = resolution[1]->isChecked();
    for (int i = 0; i < edges.size(); ++i)
        if (edges[i]->isChecked())
            core.edge = static_cast<Edge>(i);
    if (resetCombo)
        core.resetChoice = resetCombo->currentIndex();
}

void PortDialog::accept()
{
    readControls();
    const CloseCheck check = core.CanClose(prompter);
    if (check.accepted) {
        QDialog::accept();
        return;
    }
    QLineEdit* field = check.focus == FieldId::Timer ? timer.edit : debounce.edit;
    if (field) {
        field->setFocus();
        field->selectAll();
    }
}

void PortDialog::ChangeInput(int index)
{
    if (core.ChangeInput(index, prompter)) {
        reject(); // the window reopens the dialog of the new type
        return;
    }
    const QSignalBlocker block(typeCombo);
    typeCombo->setCurrentIndex(core.typeIndex);
}

void PortDialog::ChangeOutput(int index)
{
    if (core.ChangeOutput(index, prompter)) {
        reject();
        return;
    }
    const QSignalBlocker block(typeCombo);
    typeCombo->setCurrentIndex(core.typeIndex);
}

void PortDialog::DebounceSec()
{
    readControls();
    core.DebounceSec(prompter);
    showTime(debounce, core.debounce);
}

void PortDialog::DebounceMin()
{
    readControls();
    core.DebounceMin(prompter);
    showTime(debounce, core.debounce);
}

void PortDialog::WdogSec()
{
    readControls();
    core.WdogSec(prompter);
    showTime(timer, core.timer);
}

void PortDialog::WdogMin()
{
    readControls();
    core.WdogMin(prompter);
    showTime(timer, core.timer);
}

void PortDialog::TimerSec()
{
    readControls();
    core.TimerSec(prompter);
    showTime(timer, core.timer);
}

void PortDialog::TimerMin()
{
    readControls();
    core.TimerMin(prompter);
    showTime(timer, core.timer);
}

} // namespace rk4::gui
