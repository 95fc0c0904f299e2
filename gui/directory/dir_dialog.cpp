#include "gui/directory/dir_dialog.h"

#include <QButtonGroup>
#include <QDialogButtonBox>
#include <QFontDatabase>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWhatsThis>

namespace rk4::gui {

namespace {

struct CommandButton {
    DirCommand command;
    const char* text;
    const char* name;
    const char* help;
};

constexpr CommandButton kButtons[] = {
    {DirCommand::Dial, "D&IAL", "DirDial",
     "Dial a telephone number. DIAL is always the first entry of a line and must be followed by an action. "
     "Digits 0-9, * and #; ! makes a pause."},
    {DirCommand::Wait, "&WAIT", "DirWait",
     "Wait the number of seconds typed in its field, 0 to 255. A line may begin with WAIT; it cannot stand before "
     "a DIAL."},
    {DirCommand::Dtmf, "D&TMF", "DirDTMF",
     "Send the DTMF digits typed in its field: 0-9, *, #, A, B, C and D; ! makes a pause. Used after a DIAL."},
    {DirCommand::Alert, "A&LERT", "DirAlert", "Play the alert tone to the called party."},
    {DirCommand::AutoAck, "A&UTO ACK", "DirAutoAck",
     "Acknowledge the alarms without a call. AUTO ACK must be the only entry on its line."},
    {DirCommand::Answer, "A&NSWER", "DirAnswer",
     "Wait until the called party answers before going on. ANSWER is used after a DIAL. With Call Progress "
     "enabled in the General settings, an ANSWER straight after the DIAL asks twice for the same response."},
    {DirCommand::Voice, "&VOICE", "DirVoice", "Speak the alarm messages to the called party."},
    {DirCommand::Signal, "&SIGNAL", "DirSignal", "Send the alarm signal to the called party."},
    {DirCommand::Delete, "&DELETE", "DirDelete",
     "Remove the selected entry; the entries after it move up. Deleting the first entry clears the whole line."},
};

QString text(const std::string& s) { return QString::fromStdString(s); }

} // namespace

DirDialog::DirDialog(LineEditor& editor, Prompter& prompter, QWidget* parent)
    : QDialog(parent), core(editor), prompter(prompter)
{
    setObjectName("DirDialog");
    setWindowTitle(text(core.title()));
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);

    auto* entries = new QGroupBox("Entries", this);
    auto* grid = new QGridLayout(entries);
    grid->setVerticalSpacing(2);
    rows = new QButtonGroup(this);
    rows->setExclusive(true);
    const int labelWidth = QFontMetrics(fixed).horizontalAdvance(" [AUTO ACK] ") + 16;
    const int fieldWidth = QFontMetrics(fixed).horizontalAdvance(QString(kMaxParameterLength, '0')) + 12;
    for (int slot = 0; slot < kCommandsPerLine; ++slot) {
        auto* number = new QLabel(QString::number(slot + 1), entries);
        number->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
        auto* select = new QPushButton(entries);
        select->setObjectName(QString("select%1").arg(slot + 1));
        select->setCheckable(true);
        select->setFont(fixed);
        select->setFixedWidth(labelWidth);
        select->setStyleSheet(
            "QPushButton { text-align: left; padding: 2px 4px; }"
            "QPushButton:checked { background: palette(highlight); color: palette(highlighted-text); }");
        select->setWhatsThis("Entry " + QString::number(slot + 1) +
                             " of the line. Click it to select the entry: a command button puts its command here, "
                             "moving this entry and the ones after it down.");
        select->installEventFilter(this);
        rows->addButton(select, slot);
        auto* field = new QLineEdit(entries);
        field->setObjectName(QString("parameter%1").arg(slot + 1));
        field->setFont(fixed);
        field->setMaxLength(static_cast<int>(kMaxParameterLength));
        field->setMinimumWidth(fieldWidth);
        field->setWhatsThis("The digits of a DIAL or DTMF entry, or the seconds of a WAIT entry. The other "
                            "commands take nothing here. Enter moves to the next entry.");
        field->installEventFilter(this);
        connect(field, &QLineEdit::textEdited, this,
                [this, slot](const QString& typed) { core.setParameter(slot, typed.toStdString()); });
        grid->addWidget(number, slot, 0);
        grid->addWidget(select, slot, 1);
        grid->addWidget(field, slot, 2);
        selectButtons[slot] = select;
        fields[slot] = field;
    }
    connect(rows, &QButtonGroup::idClicked, this, [this](int slot) {
        UpdateSelect(slot);
        focusRow(slot);
    });

    auto* commands = new QGroupBox("Commands", this);
    auto* column = new QVBoxLayout(commands);
    for (const CommandButton& button : kButtons) {
        auto* push = new QPushButton(button.text, commands);
        push->setObjectName(button.name);
        push->setWhatsThis(button.help);
        push->setAutoDefault(false);
        if (button.command == DirCommand::Delete)
            column->addSpacing(12);
        column->addWidget(push);
        connect(push, &QPushButton::clicked, this, [this, command = button.command] { press(command); });
    }
    column->addStretch(1);

    auto* body = new QHBoxLayout;
    body->addWidget(entries, 1);
    body->addWidget(commands);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    QPushButton* ok = buttons->button(QDialogButtonBox::Ok);
    ok->setObjectName("okButton");
    ok->setWhatsThis("Check the line and keep it.");
    ok->setAutoDefault(false);
    QPushButton* cancel = buttons->button(QDialogButtonBox::Cancel);
    cancel->setObjectName("cancelButton");
    cancel->setWhatsThis("Close without keeping the changes (you are asked first when there are any).");
    cancel->setAutoDefault(false);
    connect(buttons, &QDialogButtonBox::accepted, this, &DirDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &DirDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addLayout(body);
    layout->addWidget(buttons);

    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });

    RefreshSelect();
    focusRow(core.selectedSlot);
}

void DirDialog::readControls()
{
    for (int slot = 0; slot < kCommandsPerLine; ++slot)
        if (fields[slot]->isEnabled())
            core.setParameter(slot, fields[slot]->text().toStdString());
}

void DirDialog::RefreshSelect()
{
    for (int slot = 0; slot < kCommandsPerLine; ++slot) {
        const LineSlot& entry = core.entries[slot];
        selectButtons[slot]->setText(text(entry.label()));
        selectButtons[slot]->setChecked(slot == core.selectedSlot);
        fields[slot]->setText(text(entry.parameter));
        fields[slot]->setEnabled(entry.editable());
    }
}

void DirDialog::UpdateSelect(int slot)
{
    core.UpdateSelect(slot);
    selectButtons[core.selectedSlot]->setChecked(true);
}

void DirDialog::focusRow(int slot)
{
    QWidget* target = fields[slot]->isEnabled() ? static_cast<QWidget*>(fields[slot]) : selectButtons[slot];
    target->setFocus();
    if (auto* field = qobject_cast<QLineEdit*>(target))
        field->selectAll();
}

void DirDialog::press(DirCommand command)
{
    readControls();
    if (core.press(command, prompter))
        RefreshSelect();
    focusRow(core.selectedSlot);
}

void DirDialog::showRefusal(const LineCheck& check)
{
    RefreshSelect(); // the checks may have tidied a number
    if (check.focus >= 0) {
        UpdateSelect(check.focus);
        focusRow(check.focus);
    }
}

void DirDialog::accept()
{
    readControls();
    const LineCheck check = core.CanClose(prompter);
    if (check.accepted)
        QDialog::accept();
    else
        showRefusal(check);
}

void DirDialog::reject()
{
    readControls();
    const LineCheck check = core.CanLeave(prompter);
    if (!check.accepted)
        showRefusal(check);
    else if (core.accepted())
        QDialog::accept();
    else
        QDialog::reject();
}

bool DirDialog::eventFilter(QObject* watched, QEvent* event)
{
    int slot = -1;
    bool inField = false;
    for (int row = 0; row < kCommandsPerLine; ++row) {
        if (watched == fields[row] || watched == selectButtons[row]) {
            slot = row;
            inField = watched == fields[row];
        }
    }
    if (slot < 0)
        return QDialog::eventFilter(watched, event);
    if (event->type() == QEvent::FocusIn) {
        UpdateSelect(slot);
    } else if (event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (inField && (key == Qt::Key_Return || key == Qt::Key_Enter)) {
            readControls();
            const LineCheck check = core.CanClose(prompter, true);
            UpdateSelect(check.focus);
            focusRow(check.focus);
            return true;
        }
        if (key == Qt::Key_Up || key == Qt::Key_Down) {
            UpdateSelect(slot + (key == Qt::Key_Up ? -1 : 1));
            focusRow(core.selectedSlot);
            return true;
        }
    }
    return QDialog::eventFilter(watched, event);
}

} // namespace rk4::gui
