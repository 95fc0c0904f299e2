#include "gui/modem/modem_dialog.h"

#include "core/link/port_slots.h"
#include "core/link/serial_transport.h"
#include "gui/link/com_dialog.h"
#include "gui/link/transfer_buttons.h"
#include "gui/modem/modem_configure_dialog.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

// One demo line for the whole run, so what was written can be read back.
struct DemoLine {
    link::MemoryLink line;
    modem::SimulatedDialUp dialUp{line.unit()};
};

DemoLine& demo()
{
    static DemoLine built;
    return built;
}

} // namespace

modem::SimulatedDialUp& ModemDialog::demoModem() { return demo().dialUp; }

ModemDialog::ModemDialog(Workspace& workspace, Prompter& prompter, QWidget* parent)
    : QDialog(parent), workspace(workspace), prompter(prompter),
      settings(modem::ModemSettings::load(modem::modemSettingsPath(workspace.workingDirectory())))
{
    setObjectName("modemDialog");
    setWindowTitle("Program a Distant Rk4 by Modem");
    setMinimumWidth(580);

    auto* layout = new QVBoxLayout(this);

    auto* lineBox = new QGroupBox("Telephone line", this);
    auto* lineLayout = new QGridLayout(lineBox);
    portCombo = new QComboBox(lineBox);
    portCombo->setObjectName("modemPortCombo");
    portCombo->addItem("Any port (look for the modem)");
    for (int slot = 0; slot < link::kPortSlotCount; ++slot)
        portCombo->addItem(QString::fromStdString(link::portSlotName(slot)));
    portCombo->addItem("Simulated modem (demo)");
    portCombo->setWhatsThis("The serial port the modem is on. \"Any port\" tries each port in turn until a modem "
                            "answers. The last entry is a modem built into the programmer whose calls reach a "
                            "simulated unit.");
    portCombo->setCurrentIndex(settings.portSlot == modem::kSearchAllPorts ? kAnyPortIndex : settings.portSlot + 1);
    numberLabel = new QLabel(lineBox);
    numberLabel->setObjectName("numberLabel");
    dialButton = helpedButton(lineBox, "&Dial...", "dialButton", "Enter the unit's telephone number and call it.");
    disconnectButton =
        helpedButton(lineBox, "Dis&connect", "disconnectButton", "Tell the unit the session is over and hang up.");
    lineLayout->addWidget(new QLabel("Modem:", lineBox), 0, 0);
    lineLayout->addWidget(portCombo, 0, 1);
    lineLayout->addWidget(dialButton, 0, 2);
    lineLayout->addWidget(new QLabel("Number:", lineBox), 1, 0);
    lineLayout->addWidget(numberLabel, 1, 1);
    lineLayout->addWidget(disconnectButton, 1, 2);
    lineLayout->setColumnStretch(1, 1);
    layout->addWidget(lineBox);

    auto* transferBox = new QGroupBox("Transfers over the call", this);
    auto* actions = new QGridLayout(transferBox);
    const TransferButtons transfers = addTransferButtons(transferBox, actions);
    layout->addWidget(transferBox);
    transferButtons = transfers.all();

    const StatusLines status = addStatusLines(this, layout, "What the line and the transfer are doing.");
    statusLabel = status.status;
    versionLabel = status.version;

    auto* bottom = new QHBoxLayout;
    bottom->addStretch();
    doneButton = helpedButton(this, "Done", "doneButton", "Hang up if a call is up, and close this dialog.");
    bottom->addWidget(doneButton);
    layout->addLayout(bottom);

    progress = new ComDialog(this);
    tickTimer = new QTimer(this);
    tickTimer->setInterval(static_cast<int>(modem::kTickInterval));
    demoTimer = new QTimer(this);
    demoTimer->setInterval(5);

    connect(dialButton, &QPushButton::clicked, this, &ModemDialog::CmDial);
    connect(disconnectButton, &QPushButton::clicked, this, &ModemDialog::CmDisconnect);
    connect(transfers.sendData, &QPushButton::clicked, this, &ModemDialog::CmSendData);
    connect(transfers.receiveData, &QPushButton::clicked, this, &ModemDialog::CmReceiveData);
    connect(transfers.sendVoice, &QPushButton::clicked, this, &ModemDialog::CmSendVoice);
    connect(transfers.receiveVoice, &QPushButton::clicked, this, &ModemDialog::CmReceiveVoice);
    connect(transfers.writeVocab, &QPushButton::clicked, this, &ModemDialog::CmWriteVocab);
    connect(doneButton, &QPushButton::clicked, this, &ModemDialog::CmDone);
    connect(portCombo, &QComboBox::currentIndexChanged, this, &ModemDialog::CmModemPort);
    connect(tickTimer, &QTimer::timeout, this, &ModemDialog::tick);
    connect(demoTimer, &QTimer::timeout, this, [this] { demoModem().poll(clock.now()); });

    makeLink();
    tickTimer->start();
    refresh();
}

ModemDialog::~ModemDialog() = default;

void ModemDialog::makeLink()
{
    const int index = portCombo->currentIndex();
    std::vector<modem::ModemCandidate> ports;
    const link::PortBindings bindings = link::PortBindings::load(link::portBindingsPath(workspace.workingDirectory()));
    if (index == kDemoModemIndex) {
        ports.push_back(
            {"the simulated modem", std::shared_ptr<link::Transport>(&demo().line.tool(), [](link::Transport*) {})});
    } else {
        for (int slot = 0; slot < link::kPortSlotCount; ++slot)
            if (index == kAnyPortIndex || index == slot + 1)
                ports.push_back({link::portSlotName(slot) + " (" + bindings.path(slot) + ")",
                                 std::make_shared<link::SerialTransport>(bindings.path(slot))});
    }
    modemLink = std::make_unique<modem::ModemLink>(workspace, prompter, std::move(ports), settings);
    modemLink->settingsFile = modem::modemSettingsPath(workspace.workingDirectory());
    modemLink->askNumber = [this](const modem::DialledNumber& last) -> std::optional<modem::DialledNumber> {
        ModemConfigureDialog dialog(last, this);
        if (dialog.exec() != QDialog::Accepted)
            return std::nullopt;
        return dialog.number();
    };
    link::ProgrammingSession& session = modemLink->session();
    session.programDirectory = QApplication::applicationDirPath().toStdString();
    session.openGeneralEditor = [this] {
        if (openGeneralEditor)
            openGeneralEditor();
    };
    session.openSummary = [this] {
        if (openSummary)
            openSummary();
    };
    session.onProgress = [this] { refresh(); };
    session.beep = [] { QApplication::beep(); };
    modemLink->onStatus = [this](const std::string&) { refresh(); };
    modemLink->onSessionText = [this](link::SessionLine, const std::string&) { refresh(); };
    modemLink->onChange = [this] { refresh(); };
    if (index == kDemoModemIndex)
        demoTimer->start();
    else
        demoTimer->stop();
}

void ModemDialog::CmModemPort(int index)
{
    if (!modemLink->view().dialEnabled || modemLink->connected() || closing)
        return;
    // The demo stays out of the saved settings: it is no port a modem could be on.
    if (index != kDemoModemIndex) {
        settings.portSlot = index == kAnyPortIndex ? modem::kSearchAllPorts : index - 1;
        settings.lastNumber = modemLink->settings().lastNumber;
        settings.save(modem::modemSettingsPath(workspace.workingDirectory()));
    }
    makeLink();
    refresh();
}

void ModemDialog::CmDial()
{
    modemLink->CmDial(clock.now());
    settings.lastNumber = modemLink->settings().lastNumber;
    refresh();
}

void ModemDialog::CmDisconnect()
{
    modemLink->CmDisconnect(clock.now());
    refresh();
}

void ModemDialog::CmSendData() { modemLink->CmSendData(clock.now()); }

void ModemDialog::CmWriteVocab()
{
    if (!confirmVocabularyWrite(prompter))
        return;
    modemLink->CmSendVocab(clock.now());
}

void ModemDialog::CmSendVoice() { modemLink->CmSendVoice(clock.now()); }

void ModemDialog::CmReceiveData() { modemLink->CmReceiveData(clock.now()); }

void ModemDialog::CmReceiveVoice() { modemLink->CmReceiveVoice(clock.now()); }

void ModemDialog::tick()
{
    // A message box shown from inside a tick runs its own event loop; the
    // timer must not step the link again underneath it.
    if (ticking)
        return;
    ticking = true;
    modemLink->tick(clock.now());
    if (modemLink->view().closeRequested && !closing) {
        closing = true;
        modemLink->telephonyShutdown(clock.now());
    }
    ticking = false;
    if (closing && modemLink->finished()) {
        finishClosing();
        return;
    }
    refresh();
}

void ModemDialog::finishClosing()
{
    tickTimer->stop();
    demoTimer->stop();
    progress->hide();
    if (modemLink->view().lineLost)
        reject();
    else
        accept();
}

void ModemDialog::CmDone()
{
    if (modemLink->transferRunning() || closing)
        return;
    closing = true;
    modemLink->telephonyShutdown(clock.now());
    refresh();
}

void ModemDialog::refresh()
{
    const modem::ModemView& view = modemLink->view();
    const link::SessionView& session = modemLink->session().view();
    const bool running = modemLink->transferRunning();
    QString status = QString::fromStdString(view.status);
    if (status.isEmpty())
        status = modemLink->connected() ? "Call Connected" : "Not connected";
    statusLabel->setText(status);
    versionLabel->setText(session.version.empty() ? QString("not asked yet") : QString::fromStdString(session.version));
    numberLabel->setText(modemLink->settings().lastNumber.number.empty()
                             ? QString("none yet")
                             : QString::fromStdString(modemLink->settings().lastNumber.text()));
    dialButton->setEnabled(view.dialEnabled && !closing);
    disconnectButton->setEnabled(view.disconnectEnabled && !closing);
    for (QPushButton* transfer : transferButtons)
        transfer->setEnabled(view.transfersEnabled && !running && !closing);
    portCombo->setEnabled(view.dialEnabled && !modemLink->connected() && !closing);
    doneButton->setEnabled(!running && !closing);

    progress->setLines(QString::fromStdString(session.line1), QString::fromStdString(session.line2));
    progress->setPackets(session.packetsDone, session.packetsTotal);
    if (session.progressOpen && running && !progress->isVisible())
        progress->show();
    else if ((!session.progressOpen || !running) && progress->isVisible())
        progress->hide();
}

void ModemDialog::closeEvent(QCloseEvent* event)
{
    event->ignore();
    CmDone();
}

void ModemDialog::reject()
{
    // Escape hangs up first, as Done does; the dialog closes once the line is released.
    if (closing && modemLink->finished()) {
        QDialog::reject();
        return;
    }
    CmDone();
}

} // namespace rk4::gui
