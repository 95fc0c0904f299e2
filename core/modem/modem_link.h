#pragma once
// The modem dialog without its window: dialling a distant unit (the questions
// before a write, finding the modem, opening the line, the number, the call),
// the reactions to the call's states, the transfers of the programming
// session over the call, and the hang-up. A 100 ms timer calls tick(now);
// nothing blocks, so the window stays live and a test runs a whole call on a
// manual clock.

#include "core/common/clock.h"
#include "core/common/prompter.h"
#include "core/link/programming_session.h"
#include "core/modem/modem_settings.h"
#include "core/modem/telephony.h"
#include "core/shell/workspace.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rk4::modem {

inline constexpr Millis kTickInterval = 100;
inline constexpr Millis kHangUpWait = 500;
inline constexpr char kDefaultModemVocabularyFile[] = "voc72b.bin";
inline constexpr char kLineLostText[] = "Line Connection has been lost.";

// A port the modem may be on, with the name the technician knows it by.
struct ModemCandidate {
    std::string name;
    std::shared_ptr<link::Transport> port;
};

struct ModemView {
    std::string status;
    bool dialEnabled = true;
    bool transfersEnabled = false;
    bool disconnectEnabled = false;
    // The dialog is to close (the questions were cancelled, or the line was lost).
    bool closeRequested = false;
    // The shell's record that the line was lost.
    bool lineLost = false;
};

class ModemLink {
  public:
    ModemLink(Workspace& workspace, Prompter& prompter, std::vector<ModemCandidate> candidates, ModemSettings settings);
    ~ModemLink();

    // The telephone number entry (ModemConfigureDialog): nothing when cancelled.
    std::function<std::optional<DialledNumber>(const DialledNumber& last)> askNumber;
    // Where the settings are kept after a number is entered; nowhere when empty.
    std::filesystem::path settingsFile;
    // Every change of the status line, every call state, and every other
    // change of what the window shows.
    std::function<void(const std::string&)> onStatus;
    std::function<void(CallState, const std::string& detail)> onCallState;
    std::function<void()> onChange;
    // Every text of the session's runs (the progress window's lines too).
    std::function<void(link::SessionLine, const std::string&)> onSessionText;
    // The questions before a database write are asked before dialling;
    // without them here, each write asks them itself.
    bool askWarningsBeforeDial = true;
    // The modem's lines and the commands sent, for a log.
    std::function<void(const std::string&)> onModemLine;

    // The programming session that runs over the call (its texts, questions
    // and files as for a cabled unit).
    link::ProgrammingSession& session() { return *programming; }
    Telephony* telephony() { return chosen >= 0 ? lines[static_cast<std::size_t>(chosen)].get() : nullptr; }
    const std::string& modemPort() const;
    const ModemSettings& settings() const { return kept; }
    const ModemView& view() const { return shown; }

    void CmDial(Millis now);
    void CmDisconnect(Millis now);
    bool CmSendData(Millis now);
    bool CmSendVocab(Millis now, std::optional<std::filesystem::path> file = std::nullopt);
    bool CmSendVoice(Millis now, std::optional<std::filesystem::path> file = std::nullopt);
    bool CmReceiveData(Millis now);
    bool CmReceiveVoice(Millis now, std::optional<std::filesystem::path> target = std::nullopt);
    // Any transfer, started on the session by `start` (the command line's).
    bool startTransfer(Millis now, const std::function<bool(link::ProgrammingSession&)>& start);

    // The 100 ms timer.
    void tick(Millis now);
    // Releases the line: hangs up a call, restores the modem, closes the port.
    // tick() until finished() is true.
    void telephonyShutdown(Millis now);
    bool finished() const { return phase == Phase::Closed; }
    bool transferRunning() const { return programming->running(); }
    bool connected() const;

  private:
    enum class Phase {
        Idle,
        Initializing,
        Opening,
        Calling,
        Connected,
        SendHangUp,
        HangUpWait,
        Dropping,
        ShuttingDown,
        Closed
    };

    void setStatus(const std::string& text);
    void changed();
    void lineError(std::uint32_t code, const std::string& detail);
    void box(const std::string& text, const std::string& caption, const std::string& detail = {});
    void failDial();
    void tryCandidate(Millis now);
    void afterInitialize(Millis now);
    void afterOpen(Millis now);
    void callState(CallState state, const std::string& detail);
    void transferEnded();
    void beginShutdown(Millis now);

    Prompter& prompter;
    std::vector<ModemCandidate> candidates;
    std::vector<std::unique_ptr<Telephony>> lines; // one for each candidate
    int chosen = -1;
    std::size_t trying = 0;
    ModemSettings kept;
    std::unique_ptr<link::ProgrammingSession> programming;
    std::unique_ptr<link::LinkSession> hangUpLink;
    ModemView shown;
    Phase phase = Phase::Idle;
    bool everConnected = false;
    bool disconnecting = false;
    bool shutdownAfterDrop = false;
    Millis deadline = 0;
    bool warningsAsked = false;
    std::string triedPorts;
};

} // namespace rk4::modem
