#pragma once
// The modem dialog: dials a distant unit, runs the programming dialog's
// transfers over the call and hangs up. The rules are the core ModemLink,
// ticked by a 100 ms timer, so the window stays live through the call.

#include "core/common/clock.h"
#include "core/link/port_slots.h"
#include "core/modem/modem_link.h"
#include "core/modem/simulated_modem.h"
#include "core/shell/workspace.h"

#include <QDialog>

#include <memory>

class QComboBox;
class QLabel;
class QPushButton;
class QTimer;

namespace rk4::gui {

class ComDialog;

class ModemDialog : public QDialog {
    Q_OBJECT

  public:
    // Port list entries: every slot in turn, "COM 1" .. "COM 8", the demo modem.
    static constexpr int kAnyPortIndex = 0;
    static constexpr int kDemoModemIndex = link::kPortSlotCount + 1;

    ModemDialog(Workspace& workspace, Prompter& prompter, QWidget* parent = nullptr);
    ~ModemDialog() override;

    modem::ModemLink& link() { return *modemLink; }
    // The built-in modem behind the last entry of the port list; its calls
    // reach a built-in simulated unit.
    static modem::SimulatedDialUp& demoModem();
    // Set from outside before a dial: the questions before a write open these.
    std::function<void()> openGeneralEditor;
    std::function<void()> openSummary;

  public slots:
    void CmDial();
    void CmDisconnect();
    void CmSendData();
    void CmWriteVocab();
    void CmSendVoice();
    void CmReceiveData();
    void CmReceiveVoice();
    void CmModemPort(int index);
    void CmDone();

  protected:
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

  private:
    void makeLink();
    void tick();
    void refresh();
    void finishClosing();

    Workspace& workspace;
    Prompter& prompter;
    SteadyClock clock;
    modem::ModemSettings settings;
    std::unique_ptr<modem::ModemLink> modemLink;
    ComDialog* progress;
    QComboBox* portCombo;
    QLabel* statusLabel;
    QLabel* versionLabel;
    QLabel* numberLabel;
    QPushButton* dialButton;
    QPushButton* disconnectButton;
    QPushButton* doneButton;
    QList<QPushButton*> transferButtons;
    QTimer* tickTimer;
    QTimer* demoTimer;
    bool ticking = false;
    bool closing = false;
};

} // namespace rk4::gui
