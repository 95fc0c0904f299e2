#include "gui/basic/alarms_dialog.h"

#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QRadioButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

namespace rk4::gui {

AlarmsDialog::AlarmsDialog(Workspace& space, Prompter& prompter, QWidget* parent)
    : SimDialog(editor, prompter, parent), editor(space)
{
    setObjectName("alarmsDialog");
    setWindowTitle(qtext(editor.title()));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto* alarms = new QGroupBox("Alarms", this);
    auto* grid = new QGridLayout(alarms);
    grid->addWidget(new QLabel("<b>Reports through</b>", alarms), 0, 1);
    grid->addWidget(new QLabel("<b>Name</b>", alarms), 0, 2);
    for (int i = 0; i < kBasicAlarms; ++i) {
        const QString n = QString::number(i + 1);
        AlarmsEditor::Alarm& alarm = editor.controls.alarm[i];
        QComboBox* use = addCombo("useCombo" + n, AlarmsEditor::useChoices(), static_cast<int>(alarm.use),
                                  "Whether alarm " + n + " (input " + n +
                                      ") calls out, and through which directory: DIR A calls the numbers of "
                                      "Directory A, DIR B those of Directory B.");
        connect(use, &QComboBox::currentIndexChanged, this, [this, i](int index) {
            editor.controls.alarm[i].use = static_cast<AlarmsEditor::Use>(index);
            UpdateDisabled(i);
        });
        names[i] = addEdit("nameEdit" + n, alarm.name, 16,
                           "The name of alarm " + n + ", up to 16 characters, shown in the summary.");
        grid->addWidget(new QLabel("Alarm " + n, alarms), i + 1, 0);
        grid->addWidget(use, i + 1, 1);
        grid->addWidget(names[i], i + 1, 2);
        UpdateDisabled(i);
    }
    layout->addWidget(alarms);

    auto* inputs = new QGroupBox("All inputs", this);
    auto* form = new QFormLayout(inputs);
    QComboBox* format = addCombo("formatCombo", AlarmsEditor::formatChoices(),
                                 static_cast<int>(editor.controls.format),
                                 "The resting level of all eight inputs, and whether an alarm stays until it is "
                                 "acknowledged (Latching) or clears when the input returns to rest.");
    connect(format, &QComboBox::currentIndexChanged, this,
            [this](int index) { editor.controls.format = static_cast<AlarmsEditor::Format>(index); });
    form->addRow("Input &format:", format);

    const std::vector<std::string> resolutions = AlarmsEditor::resolutionChoices();
    debounceEdit = addEdit("debounceEdit", editor.controls.debounce.text, 8,
                           "How long an input must stay changed before it counts, the same for all eight inputs: "
                           "up to 1638 seconds in 25 msec steps, or 1 to 65535 minutes.");
    debounceEdit->setAlignment(Qt::AlignRight);
    seconds = new QRadioButton(qtext(resolutions[0]), inputs);
    seconds->setObjectName("debounceSecRadio");
    seconds->setWhatsThis("Count the debounce in seconds.");
    minutes = new QRadioButton(qtext(resolutions[1]), inputs);
    minutes->setObjectName("debounceMinRadio");
    minutes->setWhatsThis("Count the debounce in whole minutes.");
    (editor.controls.debounce.minutes ? minutes : seconds)->setChecked(true);
    connect(seconds, &QRadioButton::clicked, this, [this] { ResolutionChanging(false); });
    connect(minutes, &QRadioButton::clicked, this, [this] { ResolutionChanging(true); });
    auto* debounceRow = new QHBoxLayout;
    debounceRow->addWidget(debounceEdit);
    debounceRow->addWidget(seconds);
    debounceRow->addWidget(minutes);
    debounceRow->addStretch(1);
    auto* debounceLabel = new QLabel("&Debounce:", inputs);
    debounceLabel->setBuddy(debounceEdit);
    form->addRow(debounceLabel, debounceRow);
    layout->addWidget(inputs);
    addButtons(layout);
}

void AlarmsDialog::UpdateDisabled(int alarm) { names[alarm]->setEnabled(editor.rowEnabled(alarm)); }

void AlarmsDialog::ResolutionChanging(bool toMinutes)
{
    editor.ResolutionChanging(toMinutes, prompter);
    const QSignalBlocker block(debounceEdit);
    debounceEdit->setText(qtext(editor.controls.debounce.text));
}

void AlarmsDialog::focusRefused()
{
    if (editor.focus == AlarmsEditor::Field::Debounce)
        focusField(debounceEdit);
}

} // namespace rk4::gui
