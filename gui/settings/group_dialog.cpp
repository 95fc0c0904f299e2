#include "gui/settings/group_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWhatsThis>

namespace rk4::gui {

namespace {

QLineEdit* textField(QWidget* parent, const char* name, const std::string& value, int maxLength, int widthChars,
                     const QString& help)
{
    auto* edit = new QLineEdit(QString::fromStdString(value), parent);
    edit->setObjectName(name);
    edit->setMaxLength(maxLength);
    edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QString(widthChars, 'M')) + 12);
    edit->setWhatsThis(help);
    return edit;
}

// Whole numbers only; the range is checked on OK, so a value too large is
// refused with the reason instead of being impossible to type.
QLineEdit* numberField(QWidget* parent, const char* name, unsigned value, const QString& help)
{
    QLineEdit* edit = textField(parent, name, std::to_string(value), 3, 4, help);
    edit->setValidator(new QRegularExpressionValidator(QRegularExpression("[0-9]{0,3}"), edit));
    edit->setAlignment(Qt::AlignRight);
    return edit;
}

unsigned numberOf(const QLineEdit* edit) { return edit->text().toUInt(); }

QComboBox* portCombo(QWidget* parent, const char* name, const char* word, int value, const QString& help)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    combo->addItem("none");
    for (int n = 1; n <= kInputCount; ++n)
        combo->addItem(QString("%1 %2").arg(word).arg(n));
    combo->setCurrentIndex(value >= 0 && value <= kInputCount ? value : -1);
    combo->setWhatsThis(help);
    return combo;
}

} // namespace

GroupDialog::GroupDialog(Workspace& space, int group, Prompter& prompter, QWidget* parent)
    : QDialog(parent), editor(space, group), prompter(prompter)
{
    editor.SetupWindow();
    setObjectName("GroupDialog");
    setWindowTitle(QString::fromStdString(editor.title()));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto* columns = new QHBoxLayout;
    columns->addWidget(buildSettings(), 0, Qt::AlignTop);
    auto* right = new QVBoxLayout;
    right->addWidget(buildShifts());
    right->addWidget(buildPorts());
    right->addStretch();
    columns->addLayout(right);
    layout->addLayout(columns);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
    ok->setObjectName("okButton");
    ok->setDefault(true);
    ok->setWhatsThis("Check the group's settings and keep them. Outputs and the input chosen here are taken from "
                     "the points that use them, after a question, and given the type their function needs.");
    connect(ok, &QPushButton::clicked, this, &GroupDialog::CmOk);
    QPushButton* cancel = buttons->addButton("Cancel", QDialogButtonBox::RejectRole);
    cancel->setObjectName("cancelButton");
    cancel->setWhatsThis("Close without keeping the changes; you are asked first when there are any.");
    connect(cancel, &QPushButton::clicked, this, &GroupDialog::reject);
    layout->addWidget(buttons);

    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });
}

GroupDialog::~GroupDialog()
{
    // A dialog destroyed without closing still gives the commands back.
    if (editor.isOpen())
        editor.leave();
}

QWidget* GroupDialog::buildSettings()
{
    const GroupControls& c = editor.controls;
    auto* box = new QGroupBox("Group", this);
    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);

    enabledCheck = new QCheckBox("&Enabled", box);
    enabledCheck->setObjectName("enabledCheck");
    enabledCheck->setChecked(c.enabled);
    enabledCheck->setWhatsThis("A disabled group calls nobody out and cannot be acknowledged or interrogated.");
    form->addRow(enabledCheck);

    nameEdit = textField(box, "nameEdit", c.name, 16, 17, "The name of the group, up to 16 characters.");
    form->addRow("&Name:", nameEdit);
    ackCodeEdit = textField(box, "ackCodeEdit", c.ackCode, 16, 8,
                            "The DTMF code a called person keys to acknowledge this group's alarms: up to 7 of "
                            "0-9, *, #, A-D.");
    form->addRow("&Ack code:", ackCodeEdit);
    interrogateCodeEdit = textField(box, "interrogateCodeEdit", c.interrogateCode, 16, 8,
                                    "The DTMF code a caller keys to hear the state of this group's points: up to 7 "
                                    "of 0-9, *, #, A-D.");
    form->addRow("&Interrogate code:", interrogateCodeEdit);

    shortCyclesEdit = numberField(box, "shortCyclesEdit", c.shortCycles,
                                  "How many call-out cycles wait the Short Timer before the Long Timer takes over: "
                                  "0 to 9.");
    form->addRow("Short C&ycles:", shortCyclesEdit);
    shortTimerEdit = numberField(box, "shortTimerEdit", c.shortTimer,
                                 "Minutes between the first call-out cycles while an alarm is not acknowledged: "
                                 "0 to 255.");
    form->addRow("S&hort Timer (minutes):", shortTimerEdit);
    longTimerEdit = numberField(box, "longTimerEdit", c.longTimer,
                                "Minutes between call-out cycles once the short cycles are used up: 0 to 255.");
    form->addRow("&Long Timer (minutes):", longTimerEdit);

    autoAckCheck = new QCheckBox("Au&toAck", box);
    autoAckCheck->setObjectName("autoAckCheck");
    autoAckCheck->setChecked(c.autoAck);
    autoAckCheck->setWhatsThis("This group's alarms are acknowledged automatically.");
    form->addRow(autoAckCheck);
    ackRequestCheck = new QCheckBox("Ack&Request", box);
    ackRequestCheck->setObjectName("ackRequestCheck");
    ackRequestCheck->setChecked(c.ackRequest);
    ackRequestCheck->setWhatsThis("The unit asks the called person to acknowledge with the Ack code.");
    form->addRow(ackRequestCheck);
    return box;
}

QWidget* GroupDialog::buildShifts()
{
    auto* box = new QGroupBox("Shift to directory", this);
    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    for (std::size_t k = 0; k < shiftCombos.size(); ++k) {
        auto* combo = new QComboBox(box);
        combo->setObjectName(QString("shift%1Combo").arg(k + 1));
        for (int d = 0; d < kDirectoryCount; ++d)
            combo->addItem(QString(QChar('A' + d)));
        const int dir = editor.controls.shiftDir[k];
        combo->setCurrentIndex(dir >= 0 && dir < kDirectoryCount ? dir : -1);
        combo->setWhatsThis(QString("The directory this group calls out with during shift %1.").arg(k + 1));
        form->addRow(QString("Shift &%1:").arg(k + 1), combo);
        shiftCombos[k] = combo;
    }
    return box;
}

QWidget* GroupDialog::buildPorts()
{
    const GroupControls& c = editor.controls;
    auto* box = new QGroupBox("Outputs and input", this);
    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    alarmOutCombo = portCombo(box, "alarmOutCombo", "Output", c.alarmOut,
                              "The output that is on while this group has an alarm present. Other groups may share "
                              "it; it becomes an on/off output.");
    form->addRow("Alarm &Out:", alarmOutCombo);
    newAlarmOutCombo = portCombo(box, "newAlarmOutCombo", "Output", c.newAlarmOut,
                                 "The output that is on while this group has a new alarm. It becomes an on/off "
                                 "output.");
    form->addRow("Ne&w Alarm Out:", newAlarmOutCombo);
    ackOutCombo = portCombo(box, "ackOutCombo", "Output", c.ackOut,
                            "The output that pulses when this group is acknowledged. It becomes a timed output "
                            "(10 seconds) when it was on/off.");
    form->addRow("A&ck Out:", ackOutCombo);
    ackInCombo = portCombo(box, "ackInCombo", "Input", c.ackIn,
                           "The input that acknowledges this group locally. It stops being an alarm input; its "
                           "debounce is set in Hardware.");
    form->addRow("Ac&k In:", ackInCombo);
    return box;
}

void GroupDialog::readControls()
{
    GroupControls& c = editor.controls;
    c.enabled = enabledCheck->isChecked();
    c.name = nameEdit->text().toStdString();
    c.ackCode = ackCodeEdit->text().toStdString();
    c.interrogateCode = interrogateCodeEdit->text().toStdString();
    c.shortCycles = numberOf(shortCyclesEdit);
    c.shortTimer = numberOf(shortTimerEdit);
    c.longTimer = numberOf(longTimerEdit);
    for (std::size_t k = 0; k < shiftCombos.size(); ++k)
        if (shiftCombos[k]->currentIndex() >= 0) // a stored value outside A..F stays until one is chosen
            c.shiftDir[k] = shiftCombos[k]->currentIndex();
    c.autoAck = autoAckCheck->isChecked();
    c.ackRequest = ackRequestCheck->isChecked();
    const std::pair<QComboBox*, int*> ports[] = {{alarmOutCombo, &c.alarmOut},
                                                 {newAlarmOutCombo, &c.newAlarmOut},
                                                 {ackOutCombo, &c.ackOut},
                                                 {ackInCombo, &c.ackIn}};
    for (auto [combo, field] : ports)
        if (combo->currentIndex() >= 0)
            *field = combo->currentIndex();
}

void GroupDialog::focusOn(GroupField field)
{
    QWidget* target = nullptr;
    switch (field) {
    case GroupField::None: return;
    case GroupField::Name: target = nameEdit; break;
    case GroupField::AckCode: target = ackCodeEdit; break;
    case GroupField::InterrogateCode: target = interrogateCodeEdit; break;
    case GroupField::ShortCycles: target = shortCyclesEdit; break;
    case GroupField::ShortTimer: target = shortTimerEdit; break;
    case GroupField::LongTimer: target = longTimerEdit; break;
    case GroupField::AlarmOut: target = alarmOutCombo; break;
    case GroupField::NewAlarmOut: target = newAlarmOutCombo; break;
    case GroupField::AckOut: target = ackOutCombo; break;
    case GroupField::AckIn: target = ackInCombo; break;
    }
    target->setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(target))
        edit->selectAll();
}

void GroupDialog::CmOk()
{
    readControls();
    const GroupCheck check = editor.CanClose(prompter, Leaving::Exit);
    if (check.accepted)
        QDialog::accept();
    else
        focusOn(check.focus);
}

void GroupDialog::reject()
{
    readControls();
    const GroupCheck check = editor.CanClose(prompter, Leaving::Other);
    if (check.accepted)
        QDialog::reject();
    else
        focusOn(check.focus);
}

} // namespace rk4::gui
