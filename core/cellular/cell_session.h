#pragma once
// The cellular dialog's work without its window: the write, read and signal
// polling sequences as step machines on a one-second tick, over any transport.
//
// Each step sends its command, and at the next tick looks at the reply line:
// an accepted reply shows the step's success text and moves on (the next
// command goes out at the tick after); no line counts a miss and the command
// is sent again at the next tick; the third miss (the fourth for the unlock)
// shows the step's error in a message box and ends the sequence.

#include "core/cellular/cell_commands.h"
#include "core/cellular/cell_receiver.h"
#include "core/common/clock.h"
#include "core/common/prompter.h"
#include "core/link/serial_transport.h"
#include "core/link/transport.h"

#include <optional>
#include <string>
#include <vector>

namespace rk4::cellular {

inline constexpr Millis kCellTick = 1000;
// How the module's port is set: 19200 baud 8N1 with DTR off. The port never
// blocks, so of its time-outs only the command's own one matters: a command
// that has not left within its length in ms plus 100 is abandoned.
inline constexpr link::SerialSettings kCellSerialLine{kCellBaud, false};

enum class CellActivity { Idle, Writing, Reading };

// Which entry a refused write points the technician back to.
enum class EntryCheck { Good, BadMin, BadMdn };

// One step of a sequence: the command, the reply line it waits for, and the
// texts shown while it runs, when it succeeds and when it fails.
struct CellStep {
    std::uint8_t command;
    WaitFor waitFor = WaitFor::Any;
    const char* runningStatus = nullptr; // status when the command first goes out
    const char* successStatus = nullptr; // nullptr: the status stays
    const char* failureMessage = "";
    const char* failureStatus = nullptr; // nullptr: the failure message
    int allowedMisses = 3;
};

// The steps of the write and read sequences, in order.
const std::vector<CellStep>& writeSteps();
const std::vector<CellStep>& readSteps();

class CellPhoneSession {
  public:
    CellPhoneSession(link::Transport& port, Prompter& prompter);

    // "Write to Cellphone": checks the entries with messages, opens the port
    // and starts the write. Good when the write has started.
    EntryCheck CmSendMIN(CellEntries& entries, Millis now);
    // "Read from Cellphone": clears the displays and starts the read.
    bool CmStartReading(Millis now);
    // "Poll RSSI" on or off.
    bool CmStartPolling(bool on, Millis now);
    // A new port was chosen: the open one is closed, the next command opens
    // the new one.
    void CmComPort();
    // The dialog is closing: stops everything and closes the port.
    void CloseHandles();

    // Takes what the module sent and runs a tick when one is due.
    void poll(Millis now);
    // When poll() next has work to do.
    Millis nextPollAt(Millis now) const;

    CellActivity activity() const { return running; }
    bool polling() const { return pollOn; }
    // True while anything needs the tick.
    bool active() const { return running != CellActivity::Idle || pollOn; }
    const std::string& status() const { return statusText; }
    const CellReadings& readings() const { return shown; }
    // Set by the write's read-back: whether the MIN and MDN read equal those written.
    std::optional<bool> minCheckPassed() const { return minMatch; }
    std::optional<bool> mdnCheckPassed() const { return mdnMatch; }
    // The last write or read ran to its end without a failure.
    bool lastSequenceSucceeded() const { return succeeded; }
    // Signal readings taken since polling started, and misses in a row.
    int rssiReadingsTaken() const { return rssiCount; }
    int rssiMisses() const { return rssiMissCount; }
    // Every command text sent, for the tests and the simulator's log.
    const std::vector<std::string>& sent() const { return sentCommands; }

  private:
    enum class Phase { Start, Resend, Wait };

    bool openPort();
    void startTicking(Millis now);
    void tick(Millis now);
    void runSequence(Millis now);
    void pollRssi(Millis now);
    void MessagePoll(std::uint8_t command, WaitFor waitFor, Millis now);
    void stepSucceeded(const CellStep& step);
    void stepFailed(const CellStep& step);

    link::Transport& port;
    Prompter& prompter;
    CellReceiver receiver;
    CellReadings shown;
    CellEntries entries;
    std::string writtenMin, writtenMdn;
    std::optional<bool> minMatch, mdnMatch;
    std::string statusText;
    std::vector<std::string> sentCommands;

    CellActivity running = CellActivity::Idle;
    const std::vector<CellStep>* steps = nullptr;
    std::size_t stepIndex = 0;
    Phase phase = Phase::Start;
    int misses = 0;
    bool succeeded = false;

    bool pollOn = false;
    bool rssiSent = false;
    bool rssiMark = false;
    int rssiCount = 0;
    int rssiMissCount = 0;

    std::optional<Millis> nextTick;
    std::optional<Millis> transmitDeadline;
};

} // namespace rk4::cellular
