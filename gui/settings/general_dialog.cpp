#include "gui/settings/general_dialog.h"

#include "core/database/dtmf.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QVBoxLayout>
#include <QWhatsThis>

namespace rk4::gui {

namespace {

QString text(const std::string& s) { return QString::fromStdString(s); }

QLineEdit* lineField(QWidget* parent, const char* name, const std::string& value, int length, const QString& help)
{
    auto* edit = new QLineEdit(text(value), parent);
    edit->setObjectName(name);
    edit->setMaxLength(length);
    edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QString(length + 1, 'M')) + 12);
    edit->setWhatsThis(help);
    return edit;
}

QComboBox* choiceField(QWidget* parent, const char* name, const Choices& choices, int index, const QString& help)
{
    auto* combo = new QComboBox(parent);
    combo->setObjectName(name);
    for (const std::string& label : choices.labels)
        combo->addItem(text(label));
    combo->setCurrentIndex(index);
    combo->setMaxVisibleItems(16);
    combo->setWhatsThis(help);
    return combo;
}

} // namespace

GeneralDialog::GeneralDialog(GeneralEditor& editor, Prompter& prompter, QWidget* parent)
    : QDialog(parent), core(editor), prompter(prompter)
{
    setObjectName("GeneralDialog");
    setWindowTitle("General");
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto* columns = new QHBoxLayout;
    columns->addWidget(buildSettings(), 0, Qt::AlignTop);
    auto* right = new QVBoxLayout;
    right->addWidget(buildSecurity());
    right->addWidget(buildOutputs());
    right->addStretch(1);
    columns->addLayout(right);
    layout->addLayout(columns);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* ok = buttons->addButton("OK", QDialogButtonBox::AcceptRole);
    ok->setObjectName("okButton");
    ok->setDefault(true);
    ok->setWhatsThis("Check the settings and keep them. A refusal names what to correct and leaves the dialog open.");
    QPushButton* cancel = buttons->addButton("&Cancel", QDialogButtonBox::RejectRole);
    cancel->setObjectName("cancelButton");
    cancel->setWhatsThis("Close without keeping the changes; you are asked first when there are any.");
    connect(buttons, &QDialogButtonBox::accepted, this, &GeneralDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &GeneralDialog::reject);
    layout->addWidget(buttons);

    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });
    nameEdit->setFocus();
}

QWidget* GeneralDialog::buildSettings()
{
    auto* box = new QGroupBox("Site", this);
    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);

    nameEdit = lineField(box, "nameEdit", core.name, 16,
                         "The name of the site, up to 16 characters. It heads the printed summary.");
    form->addRow("&Name:", nameEdit);
    const QString digits = " Up to 7 digits: 0-9, *, #, A, B, C and D.";
    accessCodeEdit = lineField(box, "accessCodeEdit", core.accessCode, static_cast<int>(kMaxCodeDigits),
                               "The code a caller enters to program the unit remotely. Left empty at security "
                               "level 1, anyone can program the unit; at levels 2 and 3 nobody can." +
                                   digits);
    form->addRow("&Access code:", accessCodeEdit);
    shiftChangeCodeEdit =
        lineField(box, "shiftChangeCodeEdit", core.shiftChangeCode, static_cast<int>(kMaxCodeDigits),
                  "The code a caller enters to change the shift, and with it the directory the groups call out "
                  "from." +
                      digits);
    form->addRow("&Shift Change code:", shiftChangeCodeEdit);
    modemEnableCodeEdit =
        lineField(box, "modemEnableCodeEdit", core.modemEnableCode, static_cast<int>(kMaxCodeDigits),
                  "The code that enables the unit's modem; its output is the Modem Enable / Carrier Detect "
                  "output chosen under Special outputs." +
                      digits);
    form->addRow("&Modem Enable code:", modemEnableCodeEdit);

    ringsCombo = choiceField(box, "ringsCombo", core.ringsChoices(), core.ringsIndex,
                             "How many rings the unit lets pass before it answers an incoming call. \"Never\" "
                             "appears only for a configuration whose unit never answers; it is kept as it is.");
    form->addRow("&Rings before answer:", ringsCombo);
    tempAckCombo = choiceField(box, "tempAckCombo", core.tempAckChoices(), core.tempAckIndex,
                               "How long a temporary acknowledge lasts, in minutes. None: no temporary "
                               "acknowledge.");
    form->addRow("&Temporary acknowledge:", tempAckCombo);

    callProgressCheck = new QCheckBox("Call &Progress", box);
    callProgressCheck->setObjectName("callProgressCheck");
    callProgressCheck->setChecked(core.callProgress);
    callProgressCheck->setWhatsThis(
        "The unit listens to each call it places and goes on only once the called party answers. A directory "
        "that also waits for an ANSWER right after dialling asks the called party twice, so you are told "
        "which directories do that when you check this box.");
    connect(callProgressCheck, &QCheckBox::toggled, this, &GeneralDialog::ProgressChanged);
    form->addRow(callProgressCheck);
    return box;
}

QWidget* GeneralDialog::buildSecurity()
{
    auto* box = new QGroupBox("Security level", this);
    auto* row = new QHBoxLayout(box);
    static const char* const kHelp[kSecurityLevels] = {
        "Level 1: the lowest. With an empty Access code anyone who calls can program the unit.",
        "Level 2: callers need the Access code; without one nobody can call in.",
        "Level 3: the highest; callers need the Access code; without one nobody can call in.",
    };
    for (int level = 0; level < kSecurityLevels; ++level) {
        auto* radio = new QRadioButton(QString("Level &%1").arg(level + 1), box);
        radio->setObjectName(QString("securityRadio%1").arg(level + 1));
        radio->setChecked(core.securityLevel == level);
        radio->setWhatsThis(kHelp[level]);
        row->addWidget(radio);
        securityRadios[static_cast<std::size_t>(level)] = radio;
    }
    return box;
}

QWidget* GeneralDialog::buildOutputs()
{
    auto* box = new QGroupBox("Special outputs", this);
    auto* form = new QFormLayout(box);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    ringOutCombo = choiceField(box, "ringOutCombo", core.ringOutChoices(), core.ringOutIndex,
                               "The output that pulses while an incoming call rings. It becomes a timed output of "
                               "2 seconds, leaves any points that drive it, and cannot be a group's output.");
    form->addRow("R&ing Indicator:", ringOutCombo);
    carrierDetectCombo =
        choiceField(box, "carrierDetectCombo", core.carrierDetectChoices(), core.carrierDetectIndex,
                    "The output that serves Modem Enable / Carrier Detect. It becomes a timed output of 60 "
                    "seconds, leaves any points that drive it, and cannot be a group's output.");
    form->addRow("Modem &Enable / Carrier Detect:", carrierDetectCombo);
    return box;
}

void GeneralDialog::readControls()
{
    core.name = nameEdit->text().toStdString();
    core.accessCode = accessCodeEdit->text().toStdString();
    core.shiftChangeCode = shiftChangeCodeEdit->text().toStdString();
    core.modemEnableCode = modemEnableCodeEdit->text().toStdString();
    core.ringsIndex = ringsCombo->currentIndex();
    core.tempAckIndex = tempAckCombo->currentIndex();
    for (int level = 0; level < kSecurityLevels; ++level)
        if (securityRadios[static_cast<std::size_t>(level)]->isChecked())
            core.securityLevel = level;
    core.ringOutIndex = ringOutCombo->currentIndex();
    core.carrierDetectIndex = carrierDetectCombo->currentIndex();
    core.callProgress = callProgressCheck->isChecked();
}

void GeneralDialog::focusOn(GeneralField field)
{
    QWidget* target = nullptr;
    switch (field) {
    case GeneralField::Name: target = nameEdit; break;
    case GeneralField::ShiftChangeCode: target = shiftChangeCodeEdit; break;
    case GeneralField::AccessCode: target = accessCodeEdit; break;
    case GeneralField::ModemEnableCode: target = modemEnableCodeEdit; break;
    case GeneralField::RingOut: target = ringOutCombo; break;
    case GeneralField::CarrierDetectOut: target = carrierDetectCombo; break;
    case GeneralField::None: return;
    }
    target->setFocus();
    if (auto* edit = qobject_cast<QLineEdit*>(target))
        edit->selectAll();
}

void GeneralDialog::ProgressChanged(bool checked)
{
    if (checked)
        core.ProgressChanged(prompter);
}

void GeneralDialog::accept()
{
    readControls();
    const GeneralCheck check = core.CanClose(prompter);
    if (check.accepted)
        QDialog::accept();
    else
        focusOn(check.focus);
}

void GeneralDialog::reject()
{
    readControls();
    const GeneralCheck check = core.CmCancel(prompter);
    if (check.accepted)
        QDialog::reject();
    else
        focusOn(check.focus);
}

} // namespace rk4::gui
