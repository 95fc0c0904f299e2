#include "gui/points/point_dialog.h"

#include "core/database/dtmf.h"
#include "gui/points/unit_dialog.h"
#include "gui/shell/editor_window.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWhatsThis>

namespace rk4::gui {

namespace {

QString text(const std::string& s) { return QString::fromStdString(s); }

QLineEdit* codeField(QWidget* parent, const char* name, const std::string& value, const QString& help)
{
    auto* edit = new QLineEdit(text(value), parent);
    edit->setObjectName(name);
    edit->setMaxLength(static_cast<int>(kMaxCodeDigits));
    edit->setFixedWidth(edit->fontMetrics().horizontalAdvance("00000000") + 16);
    edit->setWhatsThis(help);
    return edit;
}

} // namespace

PointDialog::PointDialog(PointEditor& editor, Prompter& prompter, QWidget* parent)
    : QDialog(parent), core(editor), prompter(prompter)
{
    const PointDialogKind kind = core.kind();
    setObjectName(pointDialogName(kind));
    setWindowTitle(text(core.title()));
    auto* layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    auto* columns = new QHBoxLayout;
    layout->addLayout(columns);
    if (kind != PointDialogKind::New)
        columns->addWidget(buildCommon(), 0, Qt::AlignTop);
    if (kind != PointDialogKind::Special)
        columns->addWidget(buildPortList());

    auto* buttons = new QDialogButtonBox(this);
    const bool chooser = kind == PointDialogKind::New;
    QPushButton* exit = buttons->addButton(chooser ? "OK" : "E&xit", QDialogButtonBox::AcceptRole);
    exit->setObjectName(chooser ? "okButton" : "exitButton");
    exit->setWhatsThis(chooser ? "Attach the point to the selected port." : "Check the point and keep the changes.");
    exit->setDefault(true);
    connect(exit, &QPushButton::clicked, this, &PointDialog::CmExit);
    // Interval and totalizer points keep what is shown whichever way the dialog is left.
    if (kind != PointDialogKind::Interval && kind != PointDialogKind::Total) {
        QPushButton* cancel = buttons->addButton("&Cancel", QDialogButtonBox::RejectRole);
        cancel->setObjectName("cancelButton");
        cancel->setWhatsThis(chooser ? "Close without attaching the point."
                                     : "Close without keeping the changes; you are asked first when there are any.");
        connect(cancel, &QPushButton::clicked, this, &PointDialog::reject);
    }
    layout->addWidget(buttons);

    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });
}

QWidget* PointDialog::buildPortList()
{
    auto* box = new QGroupBox(core.kind() == PointDialogKind::New ? "Select the port of this point" : "Port", this);
    auto* column = new QVBoxLayout(box);
    portList = new QListWidget(box);
    portList->setObjectName("portList");
    portList->setFont(listFont());
    for (const std::string& line : core.portLines())
        portList->addItem(text(line));
    portList->setCurrentRow(core.portIndex);
    const QFontMetrics metrics(portList->font());
    portList->setMinimumWidth(metrics.horizontalAdvance(QString(32, 'M')) + 30);
    // Every port in view at once: the markers are what the user chooses by.
    portList->setMinimumHeight(portList->sizeHintForRow(0) * kPortLineCount + 2 * portList->frameWidth() + 4);
    portList->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    portList->setWhatsThis("The inputs and outputs of the unit and their types. A port marked >RES< resets a "
                           "totalizer, >ACK< is a group's acknowledge input, and <ACK>, <NEW>, <ALM>, <RING> and "
                           "<CD> are outputs that groups or the general settings use; none of these can carry a "
                           "point. UNUSED empties the point.");
    column->addWidget(portList);
    if (core.kind() != PointDialogKind::New)
        connect(portList, &QListWidget::currentRowChanged, this, &PointDialog::ChangeIO);
    return box;
}

QWidget* PointDialog::buildCommon()
{
    const PointDialogKind kind = core.kind();
    auto* box = new QWidget(this);
    auto* form = new QFormLayout(box);
    form->setContentsMargins(0, 0, 0, 0);
    form->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);

    nameEdit = new QLineEdit(text(core.name), box);
    nameEdit->setObjectName("nameEdit");
    nameEdit->setMaxLength(16);
    nameEdit->setMinimumWidth(nameEdit->fontMetrics().horizontalAdvance(QString(17, 'M')));
    nameEdit->setWhatsThis("The name of the point, up to 16 characters.");
    form->addRow("&Name:", nameEdit);

    enabledCheck = new QCheckBox("&Enabled", box);
    enabledCheck->setObjectName("enabledCheck");
    enabledCheck->setChecked(core.enabled);
    enabledCheck->setWhatsThis("A disabled point raises no alarm and cannot be switched.");
    form->addRow(enabledCheck);

    if (kind == PointDialogKind::Special) {
        auto* groups = new QLabel(text(core.ackGroupsText()), box);
        groups->setObjectName("ackGroupsLabel");
        groups->setWhatsThis("The groups that use this input as their local acknowledge input. They are set in the "
                             "group editor; the point reports to no group itself.");
        form->addRow("Acknowledge input for:", groups);
    } else {
        groupCombo = new QComboBox(box);
        groupCombo->setObjectName("groupCombo");
        for (int g = 1; g <= kUsedGroupCount; ++g)
            groupCombo->addItem(QString::number(g));
        groupCombo->setCurrentIndex(core.groupIndex);
        groupCombo->setFixedWidth(groupCombo->fontMetrics().horizontalAdvance("000") + 48);
        groupCombo->setWhatsThis("The group this point reports to.");
        form->addRow("&Group:", groupCombo);
    }

    if (core.hasCode()) {
        const QString help = kind == PointDialogKind::Output
                                 ? "The DTMF code a caller keys to switch the output on: up to 7 of 0-9, *, #, A-D."
                             : kind == PointDialogKind::Total
                                 ? "The DTMF code a caller keys to clear the count: up to 7 of 0-9, *, #, A-D."
                                 : "The DTMF tag that names this point to a caller: up to 7 of 0-9, *, #, A-D.";
        codeEdit = codeField(box, "codeEdit", core.code, help);
        form->addRow(text(core.codeLabel() + ":"), codeEdit);
    }
    if (kind == PointDialogKind::Output) {
        offCodeEdit = codeField(box, "offCodeEdit", core.offCode,
                                "The DTMF code a caller keys to switch the output off: up to 7 of 0-9, *, #, A-D.");
        form->addRow("DTMF OFF Code:", offCodeEdit);
    }

    if (kind == PointDialogKind::Digital || kind == PointDialogKind::Wdog) {
        auto* state = new QGroupBox("Alarm state", box);
        auto* row = new QHBoxLayout(state);
        whenActiveRadio = new QRadioButton("When &Active", state);
        whenActiveRadio->setObjectName("whenActiveRadio");
        whenActiveRadio->setWhatsThis("The alarm lasts while the input is in its alarm state.");
        latchingRadio = new QRadioButton("&Latching", state);
        latchingRadio->setObjectName("latchingRadio");
        latchingRadio->setWhatsThis("The alarm stays until it is acknowledged, even when the input returns to normal.");
        (core.whenActive ? whenActiveRadio : latchingRadio)->setChecked(true);
        row->addWidget(whenActiveRadio);
        row->addWidget(latchingRadio);
        form->addRow(state);
    }

    if (kind == PointDialogKind::Total) {
        auto* places = new QGroupBox("Decimal place", box);
        auto* grid = new QVBoxLayout(places);
        for (std::size_t i = 0; i < kDecimalChoices.size(); ++i) {
            auto* radio = new QRadioButton(kDecimalChoices[i], places);
            radio->setObjectName(QString("decimal%1Radio").arg(i));
            radio->setWhatsThis("How the count is spoken: the digits before and after the decimal point.");
            grid->addWidget(radio);
            decimalRadios << radio;
        }
        decimalRadios[core.decimalIndex]->setChecked(true);
        form->addRow(places);
    }

    if (kind == PointDialogKind::Total || kind == PointDialogKind::Analog) {
        auto* units = new QPushButton("&Units...", box);
        units->setObjectName("unitsButton");
        units->setWhatsThis("Choose the words the unit says after the value: a multiplier, a unit and a rate.");
        connect(units, &QPushButton::clicked, this, &PointDialog::ChooseUnits);
        form->addRow("Spoken units:", units);
        // On a row of its own: the longest choice is wider than the fields.
        unitsLabel = new QLabel(box);
        unitsLabel->setObjectName("unitsLabel");
        unitsLabel->setWhatsThis("The words the unit says after the value.");
        unitsLabel->setWordWrap(true);
        unitsLabel->setIndent(12);
        form->addRow(unitsLabel);
        showUnits();
    }

    if (kind == PointDialogKind::Analog) {
        auto* calibrate = new QPushButton("Ca&librate...", box);
        calibrate->setObjectName("calibrateButton");
        calibrate->setEnabled(static_cast<bool>(core.calibrate));
        calibrate->setWhatsThis("Set the scaling of the input, its two setpoints and their hysteresis.");
        connect(calibrate, &QPushButton::clicked, this, &PointDialog::Calibrate);
        form->addRow(calibrate);
    }
    return box;
}

void PointDialog::readControls()
{
    if (nameEdit)
        core.name = nameEdit->text().toStdString();
    if (enabledCheck)
        core.enabled = enabledCheck->isChecked();
    if (groupCombo)
        core.groupIndex = groupCombo->currentIndex();
    if (codeEdit)
        core.code = codeEdit->text().toStdString();
    if (offCodeEdit)
        core.offCode = offCodeEdit->text().toStdString();
    if (whenActiveRadio)
        core.whenActive = whenActiveRadio->isChecked();
    for (int i = 0; i < decimalRadios.size(); ++i)
        if (decimalRadios[i]->isChecked())
            core.decimalIndex = i;
    if (portList && core.kind() == PointDialogKind::New)
        core.portIndex = portList->currentRow();
}

void PointDialog::focusOn(PointField field)
{
    QLineEdit* edit = field == PointField::Code      ? codeEdit
                      : field == PointField::OffCode ? offCodeEdit
                      : field == PointField::Name    ? nameEdit
                                                     : nullptr;
    if (edit) {
        edit->setFocus();
        edit->selectAll();
    }
}

void PointDialog::CmExit()
{
    readControls();
    if (core.kind() == PointDialogKind::New && !core.SetPort(prompter))
        return;
    const PointCheck check = core.CanClose(prompter, true);
    if (check.accepted)
        QDialog::accept();
    else
        focusOn(check.focus);
}

void PointDialog::reject()
{
    readControls();
    const PointCheck check = core.CanClose(prompter, false);
    if (check.accepted)
        QDialog::reject();
    else
        focusOn(check.focus);
}

void PointDialog::ChangeIO(int index)
{
    if (core.ChangeIO(index, prompter)) {
        core.CanClose(prompter, false);   // resets the moved point
        QDialog::done(QDialog::Rejected); // the list reopens the editor of the new type
        return;
    }
    const QSignalBlocker block(portList);
    portList->setCurrentRow(core.portIndex);
}

void PointDialog::ChooseUnits()
{
    UnitDialog dialog(core.units, this);
    if (dialog.exec() == QDialog::Accepted) {
        core.units = dialog.selectors();
        showUnits();
    }
}

void PointDialog::showUnits()
{
    const std::string words = spokenUnitsText(core.units);
    unitsLabel->setText(words.empty() ? "(none)" : text(words));
}

void PointDialog::Calibrate()
{
    if (core.calibrate)
        core.calibrate(core, core.working());
}

} // namespace rk4::gui
