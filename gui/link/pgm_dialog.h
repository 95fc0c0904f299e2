#pragma once
// The programming dialog: moves the configuration, the vocabulary and the
// voice store between the tool and a unit on a serial port, or the built-in
// simulated unit. The transfer itself is the core ProgrammingSession, polled
// from a timer, so neither this dialog nor the main window ever freezes.

#include "core/common/clock.h"
#include "core/link/port_slots.h"
#include "core/link/programming_session.h"
#include "core/link/serial_transport.h"
#include "core/link/simulated_unit.h"
#include "core/shell/workspace.h"

#include <QDialog>

#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QTimer;

namespace rk4::gui {

class ComDialog;

class PgmDialog : public QDialog {
    Q_OBJECT

  public:
    // The combo index of the built-in simulated unit, after "COM 1" .. "COM 8".
    static constexpr int kSimulatedUnitIndex = link::kPortSlotCount;
    // The dialog's result when the technician chose the modem instead.
    static constexpr int kModemResult = 2;

    PgmDialog(Workspace& workspace, Prompter& prompter, QWidget* parent = nullptr);
    ~PgmDialog() override;

    link::ProgrammingSession& session() { return *programming; }
    // The demo unit behind the last entry of the port list.
    static link::SimulatedUnitPort& simulatedUnit();

    // For the voice editor: the port to use, and a voice transfer of a file
    // it already knows, started at once.
    void choosePort(int index);
    void sendVoices(const std::string& file);
    void receiveVoices(const std::string& target);

  public slots:
    void CmSendData();
    void CmWriteVocab();
    void CmSendVoice();
    void CmReceiveData();
    void CmReceiveVoice();
    void CmComPort(int index);
    void CmDone();
    void CmModem();
    void CmPortDevice();

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

  private:
    void startTransfer(bool started);
    void pollSession();
    void IdleAction();
    void refresh();
    void useChosenPort();
    void writeVocabulary();

    Workspace& workspace;
    Prompter& prompter;
    SteadyClock clock;
    link::PortBindings bindings;
    std::unique_ptr<link::SerialTransport> serialPort;
    std::unique_ptr<link::ProgrammingSession> programming;
    ComDialog* progress;
    QComboBox* portCombo;
    QLabel* portPathLabel;
    QLabel* statusLabel;
    QLabel* versionLabel;
    QList<QPushButton*> transferButtons;
    QPushButton* doneButton;
    QTimer* stepTimer;
    QTimer* idleTimer;
};

} // namespace rk4::gui
