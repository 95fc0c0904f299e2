#include "gui/cellular/cell_phone_dialog.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

using namespace rk4::cellular;

// The window's own polling: often enough that a reply shows as it arrives;
// the session keeps the one-second pace of the commands itself.
constexpr int kPollMillis = 50;

QString portText(int index, const link::PortBindings& bindings)
{
    if (index == CellComDialog::kSimulatedModuleIndex)
        return "Simulated module (demo)";
    return QString::fromStdString(link::portSlotName(index) + "  " + bindings.path(index));
}

QLabel* display(QWidget* parent, const char* name, const char* help)
{
    auto* label = new QLabel(parent);
    label->setObjectName(name);
    label->setFrameShape(QFrame::StyledPanel);
    label->setFrameShadow(QFrame::Sunken);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setMinimumWidth(label->fontMetrics().horizontalAdvance("M6.2B  PRL 52001 xxxxxx"));
    label->setWhatsThis(help);
    return label;
}

} // namespace

CellComDialog::CellComDialog(int current, const link::PortBindings& bindings, QWidget* parent) : QDialog(parent)
{
    setObjectName("cellComDialog");
    setWindowTitle("Cellphone COM Port");
    auto* layout = new QVBoxLayout(this);
    portCombo = new QComboBox(this);
    portCombo->setObjectName("cellPortCombo");
    for (int slot = 0; slot <= kSimulatedModuleIndex; ++slot)
        portCombo->addItem(portText(slot, bindings));
    portCombo->setCurrentIndex(current);
    portCombo->setWhatsThis("The serial port the module's cable is plugged into. COM 1 .. COM 8 open the devices "
                            "shown beside them (rk4 ports changes them); the last entry is a module built into "
                            "the program, for trying this window without one.");
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Ok)->setObjectName("cellPortOk");
    buttons->button(QDialogButtonBox::Ok)->setWhatsThis("Use this port. A COM port is kept for the next time.");
    buttons->button(QDialogButtonBox::Cancel)->setWhatsThis("Keep the port as it was.");
    layout->addWidget(new QLabel("Port the module is connected to:", this));
    layout->addWidget(portCombo);
    layout->addWidget(buttons);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
}

int CellComDialog::chosen() const { return portCombo->currentIndex(); }

CellPhoneDialog::CellPhoneDialog(Workspace& workspace, Prompter& prompter, QWidget* parent, const Clock* clock)
    : QDialog(parent), workspace(workspace), prompter(prompter), clock(clock ? *clock : steady),
      bindings(link::PortBindings::load(link::portBindingsPath(workspace.workingDirectory())))
{
    setObjectName("cellPhoneDialog");
    setWindowTitle("CELLPHONE PROGRAMMING");
    auto* layout = new QVBoxLayout(this);

    auto* portRow = new QHBoxLayout;
    portLabel = new QLabel(this);
    portLabel->setObjectName("cellPortLabel");
    portLabel->setWhatsThis("The port the module is reached on, at 19200 baud.");
    portButton = new QPushButton("COM &Port...", this);
    portButton->setObjectName("cellPortButton");
    portButton->setWhatsThis("Choose the serial port the module's cable is plugged into.");
    portRow->addWidget(new QLabel("Port:", this));
    portRow->addWidget(portLabel, 1);
    portRow->addWidget(portButton);
    layout->addLayout(portRow);

    auto* numbers = new QGroupBox("Numbers to write", this);
    auto* numberForm = new QFormLayout(numbers);
    minEdit = new QLineEdit(numbers);
    minEdit->setObjectName("minEdit");
    // Ten characters, and room for the one leading blank the check removes.
    minEdit->setMaxLength(static_cast<int>(kPhoneLength) + 1);
    minEdit->setPlaceholderText("10 digits");
    minEdit->setWhatsThis("The mobile identification number: the phone number the network knows the module by. "
                          "Ten characters, digits with blanks, brackets or dashes if wanted; it is sent as typed. "
                          "A read fills it from the module.");
    mdnEdit = new QLineEdit(numbers);
    mdnEdit->setObjectName("mdnEdit");
    mdnEdit->setMaxLength(static_cast<int>(kPhoneLength));
    mdnEdit->setPlaceholderText("10 digits");
    mdnEdit->setWhatsThis("The mobile directory number: the number callers dial to reach the unit. Ten "
                          "characters, checked as the MIN is. A read fills it from the module.");
    sameCheck = new QCheckBox("MDN &same as MIN", numbers);
    sameCheck->setObjectName("sameCheck");
    sameCheck->setWhatsThis("Write the MIN as the MDN too, as most accounts have it.");
    // Both groups' labels take the width of the longest, so their fields line up.
    const int labelWidth = fontMetrics().horizontalAdvance("MIN: (Phone Number)") + 8;
    auto row = [this, labelWidth](QFormLayout* form, const QString& text, auto* field) {
        auto* label = new QLabel(text, this);
        label->setMinimumWidth(labelWidth);
        label->setBuddy(field);
        form->addRow(label, field);
    };
    row(numberForm, "&MIN: (Phone Number)", minEdit);
    row(numberForm, "M&DN:", mdnEdit);
    row(numberForm, QString(), sameCheck);
    layout->addWidget(numbers);

    auto* module = new QGroupBox("Module", this);
    auto* moduleForm = new QFormLayout(module);
    modelLabel = display(module, "modelLabel", "The module's model, as it reports it.");
    versionLabel = display(module, "versionLabel", "The module's software version and its roaming list.");
    esnLabel = display(module, "esnLabel",
                       "The electronic serial number: the maker's code, then the serial number, in decimal as "
                       "printed on the module's label.");
    sidLabel = display(module, "sidLabel", "The system identification of the network the module has found.");
    bandClassLabel = display(module, "bandClassLabel", "The band class in use: 800 MHz or 1900 MHz.");
    bandLabel = display(module, "bandLabel", "The band within the band class.");
    protocolLabel = display(module, "protocolLabel", "The air protocol revision the module speaks.");
    row(moduleForm, "Model:", modelLabel);
    row(moduleForm, "Software version:", versionLabel);
    row(moduleForm, "ESN:", esnLabel);
    row(moduleForm, "SID:", sidLabel);
    row(moduleForm, "Band class:", bandClassLabel);
    row(moduleForm, "Band:", bandLabel);
    row(moduleForm, "Protocol:", protocolLabel);
    auto* rssiRow = new QHBoxLayout;
    rssiGauge = new QProgressBar(module);
    rssiGauge->setObjectName("rssiGauge");
    rssiGauge->setRange(0, 16);
    rssiGauge->setValue(0);
    rssiGauge->setTextVisible(false);
    rssiGauge->setWhatsThis("The received signal strength, 0 (none) to 16 (strongest). Below 5 the unit may not "
                            "get its calls through; move the antenna and poll again.");
    rssiLabel = new QLabel(module);
    rssiLabel->setObjectName("rssiLabel");
    rssiLabel->setMinimumWidth(rssiLabel->fontMetrics().horizontalAdvance("Reading = 16  "));
    rssiLabel->setWhatsThis("The signal reading as a number.");
    rssiRow->addWidget(rssiGauge, 1);
    rssiRow->addWidget(rssiLabel);
    auto* rssiTitle = new QLabel("RSSI:", this);
    rssiTitle->setMinimumWidth(labelWidth);
    moduleForm->addRow(rssiTitle, rssiRow);
    layout->addWidget(module);

    auto* statusRow = new QHBoxLayout;
    statusLabel = new QLabel(this);
    statusLabel->setObjectName("statusLabel");
    statusLabel->setFrameShape(QFrame::StyledPanel);
    statusLabel->setFrameShadow(QFrame::Sunken);
    statusLabel->setMinimumHeight(statusLabel->fontMetrics().height() + 8);
    statusLabel->setWordWrap(true);
    statusLabel->setWhatsThis("What the module is doing, and how the last step went.");
    statusRow->addWidget(new QLabel("Status:", this));
    statusRow->addWidget(statusLabel, 1);
    layout->addLayout(statusRow);

    auto* buttons = new QHBoxLayout;
    writeButton = new QPushButton("&Write to Cellphone", this);
    writeButton->setObjectName("writeButton");
    writeButton->setWhatsThis("Write the MIN and MDN into the module, reset it, and read both back to check them. "
                              "Takes about 20 seconds.");
    readButton = new QPushButton("&Read from Cellphone", this);
    readButton->setObjectName("readButton");
    readButton->setWhatsThis("Read the model, version, band, SID, ESN, protocol, MIN, MDN and signal from the "
                             "module. Takes about 20 seconds.");
    pollCheck = new QCheckBox("P&oll RSSI", this);
    pollCheck->setObjectName("pollCheck");
    pollCheck->setWhatsThis("While checked, read the signal strength once a second, for placing the antenna. The "
                            "status shows a * on every other reading so each new one is seen.");
    exitButton = new QPushButton("E&xit", this);
    exitButton->setObjectName("exitButton");
    exitButton->setWhatsThis("Close the port and this window.");
    buttons->addWidget(writeButton);
    buttons->addWidget(readButton);
    buttons->addWidget(pollCheck);
    buttons->addStretch(1);
    buttons->addWidget(exitButton);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    stepTimer = new QTimer(this);
    stepTimer->setInterval(kPollMillis);
    connect(stepTimer, &QTimer::timeout, this, &CellPhoneDialog::poll);
    connect(writeButton, &QPushButton::clicked, this, &CellPhoneDialog::CmSendMIN);
    connect(readButton, &QPushButton::clicked, this, &CellPhoneDialog::CmStartReading);
    connect(pollCheck, &QCheckBox::toggled, this, &CellPhoneDialog::CmStartPolling);
    connect(portButton, &QPushButton::clicked, this, &CellPhoneDialog::CmComPort);
    connect(exitButton, &QPushButton::clicked, this, &CellPhoneDialog::CmExit);
    connect(sameCheck, &QCheckBox::toggled, this, [this](bool same) {
        mdnEdit->setEnabled(!same);
        if (same)
            mdnEdit->setText(minEdit->text().trimmed());
    });
    connect(minEdit, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (sameCheck->isChecked())
            mdnEdit->setText(text.trimmed());
    });

    usePort(workspace.cfg.portIndex());
}

CellPhoneDialog::~CellPhoneDialog() { CloseHandles(); }

void CellPhoneDialog::usePort(int index)
{
    CloseHandles();
    portIndex = index;
    if (index == CellComDialog::kSimulatedModuleIndex) {
        demoLine = std::make_unique<link::MemoryLink>();
        demoLine->unit().open();
        demoModule = std::make_unique<SimulatedModule>(demoLine->unit());
        cell = std::make_unique<CellPhoneSession>(demoLine->tool(), prompter);
    } else {
        serialPort = std::make_unique<link::SerialTransport>(bindings.path(index), kCellSerialLine);
        cell = std::make_unique<CellPhoneSession>(*serialPort, prompter);
    }
    lastShown = {};
    portLabel->setText(portText(index, bindings));
    refresh();
}

void CellPhoneDialog::CloseHandles()
{
    if (cell)
        cell->CloseHandles();
    cell.reset();
    demoModule.reset();
    demoLine.reset();
    serialPort.reset();
}

void CellPhoneDialog::CmSendMIN()
{
    CellEntries entries{minEdit->text().toStdString(), mdnEdit->text().toStdString(), sameCheck->isChecked()};
    const EntryCheck check = cell->CmSendMIN(entries, clock.now());
    // The check may drop a leading blank and copies the MIN for the same-as option.
    minEdit->setText(QString::fromStdString(entries.min));
    mdnEdit->setText(QString::fromStdString(entries.mdn));
    if (check != EntryCheck::Good) {
        QLineEdit* field = check == EntryCheck::BadMin ? minEdit : mdnEdit;
        field->setFocus();
        field->selectAll();
    }
    // The first command goes out at once.
    poll();
}

void CellPhoneDialog::CmStartReading()
{
    cell->CmStartReading(clock.now());
    poll();
}

void CellPhoneDialog::CmStartPolling(bool on)
{
    if (on != cell->polling())
        cell->CmStartPolling(on, clock.now());
    poll();
}

void CellPhoneDialog::CmComPort()
{
    CellComDialog choose(portIndex, bindings, this);
    if (choose.exec() != QDialog::Accepted)
        return;
    const int index = choose.chosen();
    if (index < link::kPortSlotCount)
        workspace.SavePort(index, prompter);
    usePort(index);
}

void CellPhoneDialog::CmExit() { reject(); }

void CellPhoneDialog::reject()
{
    CloseHandles();
    stepTimer->stop();
    QDialog::reject();
}

void CellPhoneDialog::poll()
{
    if (!cell)
        return;
    cell->poll(clock.now());
    if (demoModule)
        demoModule->poll();
    refresh();
}

void CellPhoneDialog::refresh()
{
    if (!cell)
        return;
    const CellReadings& shown = cell->readings();
    modelLabel->setText(QString::fromStdString(shown.model));
    versionLabel->setText(QString::fromStdString(shown.version));
    esnLabel->setText(QString::fromStdString(shown.esn));
    sidLabel->setText(QString::fromStdString(shown.sid));
    bandClassLabel->setText(QString::fromStdString(shown.bandClass));
    bandLabel->setText(QString::fromStdString(shown.band));
    protocolLabel->setText(QString::fromStdString(shown.protocol));
    rssiGauge->setValue(shown.rssi);
    rssiLabel->setText(QString::fromStdString(shown.rssiText));
    // A MIN or MDN read from the module goes into its field.
    if (shown.min != lastShown.min && !shown.min.empty())
        minEdit->setText(QString::fromStdString(shown.min));
    if (shown.mdn != lastShown.mdn && !shown.mdn.empty())
        mdnEdit->setText(QString::fromStdString(shown.mdn));
    lastShown = shown;
    statusLabel->setText(QString::fromStdString(cell->status()));

    const bool sequence = cell->activity() != CellActivity::Idle;
    writeButton->setEnabled(!sequence);
    readButton->setEnabled(!sequence);
    pollCheck->setEnabled(!sequence);
    portButton->setEnabled(!sequence && !cell->polling());
    minEdit->setReadOnly(sequence);
    mdnEdit->setReadOnly(sequence);
    if (pollCheck->isChecked() != cell->polling()) {
        const QSignalBlocker quiet(pollCheck);
        pollCheck->setChecked(cell->polling());
    }
    if (cell->active() && !stepTimer->isActive())
        stepTimer->start();
    else if (!cell->active() && stepTimer->isActive())
        stepTimer->stop();
}

} // namespace rk4::gui
