#include "gui/link/pgm_dialog.h"

#include "gui/link/com_dialog.h"
#include "gui/link/transfer_buttons.h"

#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDir>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QInputDialog>
#include <QLabel>
#include <QMouseEvent>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

// The service short-cut: a right double-click in the lower right corner writes
// the vocabulary without the two questions.
constexpr int kShortcutX = 421;
constexpr int kShortcutY = 181;

QStringList candidateDevices(const QString& current)
{
    QStringList devices;
    if (!current.isEmpty())
        devices << current;
    const QDir dev("/dev");
    for (const char* pattern : {"ttyUSB*", "ttyACM*"})
        for (const QString& name : dev.entryList({QString(pattern)}, QDir::System, QDir::Name))
            devices << "/dev/" + name;
    for (int i = 0; i < 4; ++i)
        devices << QString("/dev/ttyS%1").arg(i);
    devices.removeDuplicates();
    return devices;
}

} // namespace

link::SimulatedUnitPort& PgmDialog::simulatedUnit()
{
    // One demo unit for the whole run, so what was written can be read back.
    static SteadyClock demoClock;
    static link::SimulatedUnitPort unit(demoClock, link::UnitOptions{}, 19200);
    return unit;
}

PgmDialog::PgmDialog(Workspace& workspace, Prompter& prompter, QWidget* parent)
    : QDialog(parent), workspace(workspace), prompter(prompter),
      bindings(link::PortBindings::load(link::portBindingsPath(workspace.workingDirectory())))
{
    setObjectName("pgmDialog");
    setWindowTitle("Program the Rk4");
    setFixedSize(560, 300);

    auto* layout = new QVBoxLayout(this);

    auto* portBox = new QGroupBox("Connection", this);
    auto* portLayout = new QHBoxLayout(portBox);
    portCombo = new QComboBox(portBox);
    portCombo->setObjectName("portCombo");
    for (int slot = 0; slot < link::kPortSlotCount; ++slot)
        portCombo->addItem(QString::fromStdString(link::portSlotName(slot)));
    portCombo->addItem("Simulated unit (demo)");
    portCombo->setWhatsThis("The serial port the Rk4 is cabled to. The last entry is a simulated unit built into the "
                            "programmer, for trying every transfer without hardware.");
    portPathLabel = new QLabel(portBox);
    portPathLabel->setObjectName("portPathLabel");
    portPathLabel->setStyleSheet("color: palette(mid);");
    auto* deviceButton = new QPushButton("Device...", portBox);
    deviceButton->setObjectName("deviceButton");
    deviceButton->setWhatsThis("Choose the device this port entry opens, such as /dev/ttyUSB0.");
    portLayout->addWidget(new QLabel("Port:", portBox));
    portLayout->addWidget(portCombo);
    portLayout->addWidget(portPathLabel, 1);
    portLayout->addWidget(deviceButton);
    layout->addWidget(portBox);

    auto* actions = new QGridLayout;
    const TransferButtons transfers = addTransferButtons(this, actions);
    layout->addLayout(actions);
    transferButtons = transfers.all() << deviceButton;

    const StatusLines status = addStatusLines(this, layout, "What the transfer is doing.");
    statusLabel = status.status;
    versionLabel = status.version;
    layout->addStretch();

    auto* bottom = new QHBoxLayout;
    auto* modemButton = new QPushButton("&Modem...", this);
    modemButton->setObjectName("modemButton");
    modemButton->setWhatsThis("Reach a distant unit through a modem instead: this dialog closes and the modem "
                              "dialog opens.");
    bottom->addWidget(modemButton);
    bottom->addStretch();
    doneButton = new QPushButton("Done", this);
    doneButton->setObjectName("doneButton");
    doneButton->setWhatsThis("Close the port and this dialog.");
    bottom->addWidget(doneButton);
    layout->addLayout(bottom);

    progress = new ComDialog(this);
    stepTimer = new QTimer(this);
    stepTimer->setSingleShot(true);
    idleTimer = new QTimer(this);
    idleTimer->setInterval(100);

    const int saved = workspace.cfg.portIndex();
    portCombo->setCurrentIndex(saved);
    serialPort = std::make_unique<link::SerialTransport>(bindings.path(saved));
    programming = std::make_unique<link::ProgrammingSession>(workspace, *serialPort, prompter);
    programming->programDirectory = QApplication::applicationDirPath().toStdString();
    programming->onText = [this](link::SessionLine, const std::string&) { refresh(); };
    programming->onProgress = [this] { refresh(); };
    programming->beep = [] { QApplication::beep(); };

    connect(transfers.sendData, &QPushButton::clicked, this, &PgmDialog::CmSendData);
    connect(transfers.receiveData, &QPushButton::clicked, this, &PgmDialog::CmReceiveData);
    connect(transfers.sendVoice, &QPushButton::clicked, this, &PgmDialog::CmSendVoice);
    connect(transfers.receiveVoice, &QPushButton::clicked, this, &PgmDialog::CmReceiveVoice);
    connect(transfers.writeVocab, &QPushButton::clicked, this, &PgmDialog::CmWriteVocab);
    connect(deviceButton, &QPushButton::clicked, this, &PgmDialog::CmPortDevice);
    connect(doneButton, &QPushButton::clicked, this, &PgmDialog::CmDone);
    connect(modemButton, &QPushButton::clicked, this, &PgmDialog::CmModem);
    connect(portCombo, &QComboBox::currentIndexChanged, this, &PgmDialog::CmComPort);
    connect(stepTimer, &QTimer::timeout, this, &PgmDialog::pollSession);
    connect(idleTimer, &QTimer::timeout, this, &PgmDialog::IdleAction);
    idleTimer->start();
    refresh();
}

PgmDialog::~PgmDialog()
{
    if (programming)
        programming->closePort();
}

void PgmDialog::useChosenPort()
{
    const int index = portCombo->currentIndex();
    if (index == kSimulatedUnitIndex) {
        programming->changeTransport(simulatedUnit());
    } else {
        serialPort->setPath(bindings.path(index));
        programming->changeTransport(*serialPort);
    }
}

void PgmDialog::CmComPort(int index)
{
    if (programming->running())
        return;
    if (index >= 0 && index < link::kPortSlotCount)
        workspace.SavePort(index, prompter);
    // Purges and closes the old port, so the next transfer opens the new one.
    useChosenPort();
    refresh();
}

void PgmDialog::CmPortDevice()
{
    const int slot = portCombo->currentIndex();
    if (slot >= link::kPortSlotCount || programming->running())
        return;
    const QString current = QString::fromStdString(bindings.boundPath(slot));
    bool ok = false;
    const QString chosen = QInputDialog::getItem(
        this, "Port Device", QString("Device for %1:").arg(QString::fromStdString(link::portSlotName(slot))),
        candidateDevices(current), 0, true, &ok);
    if (!ok)
        return;
    bindings.bind(slot, chosen.trimmed().toStdString());
    bindings.save(link::portBindingsPath(workspace.workingDirectory()));
    useChosenPort();
    refresh();
}

void PgmDialog::startTransfer(bool started)
{
    refresh();
    if (started)
        pollSession();
}

void PgmDialog::CmSendData() { startTransfer(programming->Send(link::TransferKind::Database, clock.now())); }

void PgmDialog::CmWriteVocab()
{
    if (!confirmVocabularyWrite(prompter))
        return;
    writeVocabulary();
}

void PgmDialog::writeVocabulary() { startTransfer(programming->Send(link::TransferKind::Vocabulary, clock.now())); }

void PgmDialog::CmSendVoice() { startTransfer(programming->Send(link::TransferKind::Voices, clock.now())); }

void PgmDialog::choosePort(int index) { portCombo->setCurrentIndex(index); }

void PgmDialog::sendVoices(const std::string& file)
{
    startTransfer(programming->Send(link::TransferKind::Voices, clock.now(), std::filesystem::path(file)));
}

void PgmDialog::receiveVoices(const std::string& target)
{
    startTransfer(programming->Receive(link::TransferKind::Voices, clock.now(), std::filesystem::path(target)));
}

void PgmDialog::CmReceiveData() { startTransfer(programming->Receive(link::TransferKind::Database, clock.now())); }

void PgmDialog::CmReceiveVoice() { startTransfer(programming->Receive(link::TransferKind::Voices, clock.now())); }

void PgmDialog::CmDone()
{
    if (programming->running())
        return;
    programming->closePort();
    accept();
}

void PgmDialog::CmModem()
{
    if (programming->running())
        return;
    programming->closePort();
    done(kModemResult);
}

void PgmDialog::pollSession()
{
    programming->poll(clock.now());
    refresh();
    if (programming->running()) {
        // Poll often enough to take bytes as they come; the session keeps its own deadlines.
        const Millis now = clock.now();
        const Millis next = programming->nextPollAt(now);
        stepTimer->start(static_cast<int>(std::min<Millis>(next > now ? next - now : 0, 5)));
    }
}

void PgmDialog::IdleAction() { programming->IdleAction(clock.now()); }

void PgmDialog::refresh()
{
    const link::SessionView& view = programming->view();
    const bool busy = programming->running();
    statusLabel->setText(view.status.empty() && !busy ? QString("Ready") : QString::fromStdString(view.status));
    versionLabel->setText(view.version.empty() ? QString("not asked yet") : QString::fromStdString(view.version));
    for (QPushButton* button : transferButtons)
        button->setEnabled(!busy);
    portCombo->setEnabled(!busy);
    findChild<QPushButton*>("deviceButton")->setEnabled(!busy && portCombo->currentIndex() != kSimulatedUnitIndex);
    doneButton->setEnabled(!busy);
    findChild<QPushButton*>("modemButton")->setEnabled(!busy);

    const int index = portCombo->currentIndex();
    if (index == kSimulatedUnitIndex)
        portPathLabel->setText("built in, nothing to connect");
    else
        portPathLabel->setText(QString::fromStdString(bindings.path(index)) +
                               (bindings.overridden(index) ? "  (from the environment)" : ""));

    progress->setLines(QString::fromStdString(view.line1), QString::fromStdString(view.line2));
    progress->setPackets(view.packetsDone, view.packetsTotal);
    if (view.progressOpen && !progress->isVisible())
        progress->show();
    else if (!view.progressOpen && progress->isVisible())
        progress->hide();
}

void PgmDialog::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        programming->clearAttention();
    QDialog::mousePressEvent(event);
}

void PgmDialog::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint at = event->position().toPoint();
    if (event->button() == Qt::RightButton && at.x() >= kShortcutX && at.y() >= kShortcutY && !programming->running()) {
        writeVocabulary();
        return;
    }
    QDialog::mouseDoubleClickEvent(event);
}

void PgmDialog::closeEvent(QCloseEvent* event)
{
    if (programming->running()) {
        event->ignore();
        return;
    }
    programming->closePort();
    QDialog::closeEvent(event);
}

void PgmDialog::reject()
{
    // Escape during a transfer must not abandon it half way.
    if (programming->running())
        return;
    programming->closePort();
    QDialog::reject();
}

} // namespace rk4::gui
