#pragma once
// The cellular module's window: the MIN and MDN to write, what the module
// reports, its signal on a gauge, and the write, read and polling commands.
// The work is the core CellPhoneSession, polled from a timer, so the window
// stays live through the module's one-command-a-second pace.

#include "core/cellular/cell_session.h"
#include "core/cellular/simulated_module.h"
#include "core/common/clock.h"
#include "core/link/memory_transport.h"
#include "core/link/port_slots.h"
#include "core/link/serial_transport.h"
#include "core/shell/workspace.h"

#include <QDialog>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QTimer;

namespace rk4::gui {

// Picks the module's port: "COM 1" .. "COM 8", or the module built into the
// program for trying the window without one.
class CellComDialog : public QDialog {
    Q_OBJECT

  public:
    static constexpr int kSimulatedModuleIndex = link::kPortSlotCount;

    CellComDialog(int current, const link::PortBindings& bindings, QWidget* parent);
    int chosen() const;

  private:
    QComboBox* portCombo;
};

class CellPhoneDialog : public QDialog {
    Q_OBJECT

  public:
    // `clock` drives the one-second steps; tests pass a manual one and call poll().
    CellPhoneDialog(Workspace& workspace, Prompter& prompter, QWidget* parent = nullptr, const Clock* clock = nullptr);
    ~CellPhoneDialog() override;

    cellular::CellPhoneSession& session() { return *cell; }
    // The port in use: a slot, or CellComDialog::kSimulatedModuleIndex.
    int port() const { return portIndex; }
    void usePort(int index);
    // The module behind the simulated entry.
    cellular::SimulatedModule& simulatedModule() { return *demoModule; }
    // Moves the session (and the simulated module) on and shows the result.
    void poll();

  public slots:
    void CmSendMIN();
    void CmStartReading();
    void CmStartPolling(bool on);
    void CmComPort();
    void CmExit();

  protected:
    void reject() override;

  private:
    void CloseHandles();
    void refresh();

    Workspace& workspace;
    Prompter& prompter;
    SteadyClock steady;
    const Clock& clock;
    link::PortBindings bindings;
    int portIndex = 0;
    std::unique_ptr<link::SerialTransport> serialPort;
    std::unique_ptr<link::MemoryLink> demoLine;
    std::unique_ptr<cellular::SimulatedModule> demoModule;
    std::unique_ptr<cellular::CellPhoneSession> cell;
    cellular::CellReadings lastShown;

    QLineEdit* minEdit;
    QLineEdit* mdnEdit;
    QCheckBox* sameCheck;
    QLabel* portLabel;
    QLabel* modelLabel;
    QLabel* versionLabel;
    QLabel* esnLabel;
    QLabel* sidLabel;
    QLabel* bandClassLabel;
    QLabel* bandLabel;
    QLabel* protocolLabel;
    QLabel* statusLabel;
    QProgressBar* rssiGauge;
    QLabel* rssiLabel;
    QPushButton* writeButton;
    QPushButton* readButton;
    QCheckBox* pollCheck;
    QPushButton* portButton;
    QPushButton* exitButton;
    QTimer* stepTimer;
};

} // namespace rk4::gui
