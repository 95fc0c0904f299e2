#pragma once
// The programming session: writing the database, the vocabulary and the voice
// store to the unit and reading the database and the voice store back. Each
// operation is a step machine over the link: Send()/Receive() prepare it (the
// questions and file choices happen there), poll(now) advances it, and it never
// blocks, so a window stays live and a test runs a whole transfer on a manual
// clock in microseconds.

#include "core/common/clock.h"
#include "core/common/prompter.h"
#include "core/common/safe_file.h"
#include "core/link/link_session.h"
#include "core/shell/workspace.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace rk4::link {

enum class SessionOutcome { None, Succeeded, Failed };

// The texts the dialog shows: its own status and version lines, and the two
// lines of the progress window with a packet count for its bar.
struct SessionView {
    std::string status;
    std::string version;
    std::string line1;
    std::string line2;
    bool progressOpen = false;
    int packetsDone = 0;
    int packetsTotal = 0;
};

enum class SessionLine { Status, Version, Line1, Line2 };

// How far a transfer has got on the wire: bytes of its data frames sent or
// received so far, and in all.
struct WireProgress {
    std::int64_t done = 0;
    std::int64_t total = 0;
};

inline constexpr int kAttempts = 3;
inline constexpr Millis kRetryWait = 200;
inline constexpr Millis kAfterReply = 50;
inline constexpr Millis kFreshPortWait = 2000;
inline constexpr Millis kEndWait = 1000;
inline constexpr int kVoiceEraseSeconds = 10;
inline constexpr int kSecondPassVocabularyPackets = 64;
inline constexpr int kVoiceStorePackets = 524288 / kPacketSize + 1;
inline constexpr char kVoiceTemporaryFile[] = "voice.tmp";
inline constexpr char kDefaultVocabularyFile[] = "voc8xx.bin";
inline constexpr char kDefaultVoiceFile[] = "rk4.msg";

// An empty Access code while remote programming is enabled: the warning
// before every database write.
inline constexpr char kMissingAccessCodeText[] = "The Access Code has not been entered in the General section.\n"
                                                 "Remote programming will not be available without an Access Code.";
bool MissingAccessCode(const GeneralRecord& gen);

class ProgrammingSession {
  public:
    ProgrammingSession(Workspace& workspace, Transport& transport, Prompter& prompter);
    ~ProgrammingSession();

    // Where the vocabulary file is looked for first, and under what name.
    std::filesystem::path programDirectory = ".";
    std::string defaultVocabularyFile = kDefaultVocabularyFile;
    // Off when the questions before a database write have been asked already
    // (the modem link asks them before it dials).
    bool askWarnings = true;

    // Every text change, as it happens (the window repaints, the CLI prints).
    std::function<void(SessionLine, const std::string&)> onText;
    // The progress window opens or closes; the packet count moves.
    std::function<void()> onProgress;
    std::function<void()> beep;
    // The general settings editor and the summary window, opened from the
    // warnings before a write. Without the editor (the command line) the
    // access code question is told as a warning; without the summary a Yes
    // there goes on as a No.
    std::function<void()> openGeneralEditor;
    std::function<void()> openSummary;

    // Starts an operation; false when it did not start (cancelled, refused,
    // or the port would not open), with the reason already shown. A file given
    // here replaces the file dialog.
    bool Send(TransferKind kind, Millis now, std::optional<std::filesystem::path> file = std::nullopt);
    bool Receive(TransferKind kind, Millis now, std::optional<std::filesystem::path> target = std::nullopt);

    void poll(Millis now);
    bool running() const { return step != Step::Idle; }
    // What the last operation moved, and which way.
    TransferKind transferKind() const { return kind; }
    bool writingRun() const { return writing; }
    // The latest time poll() must be called again.
    Millis nextPollAt(Millis now) const;
    SessionOutcome outcome() const { return result; }
    const SessionView& view() const { return shown; }
    // Moves with every byte of a packet, where view() moves once a packet.
    WireProgress wireProgress();

    // True when a database write would be better cancelled (the questions
    // asked before every write).
    bool CheckWarnings();

    // The attention call after a vocabulary transfer: a beep once a second
    // until the user clicks.
    bool attention() const { return attentionOn; }
    void clearAttention() { attentionOn = false; }
    void IdleAction(Millis now);

    // A different port: purge both directions and close the old one.
    void changeTransport(Transport& transport);
    void closePort();
    bool portOpen() const;

  private:
    enum class Step {
        Idle,
        Wait,
        Version,
        Link,
        Pack,
        Announce,
        Packet,
        PacketDone,
        VoiceCountdown,
        Complete,
        End,
        Finish,
        ReadAnnounce,
        ReadPacket,
        ReadPacketDone,
        ReadComplete,
        ReadSelectFile,
        ReadSaveFile,
        ReadEnd,
        SendEnd
    };
    enum class Exchange { NotStarted, Running };

    bool openPort(Millis now);
    void wait(Millis now, Millis delay, Step next);
    void setText(SessionLine line, const std::string& text);
    void failure(Millis now, Step retryStep, const std::function<void()>& onLastFailure);
    bool exchange(Millis now, std::uint8_t command, int packetNumber, bool withData, ExchangeStatus& status);
    void sendEnd(Millis now, Millis delay, Step next);
    void busy(Millis now, Step again);
    void statusAndLine2(const std::string& text);
    void setAttention(Millis now);
    void closeFiles();
    void finishRun(Millis now);
    void stepOnce(Millis now);
    bool appendToTemporary(std::size_t packets);
    bool stagingFailed(Millis now);

    Workspace& workspace;
    Prompter& prompter;
    Transport* transport;
    std::unique_ptr<LinkSession> link;

    SessionView shown;
    SessionOutcome result = SessionOutcome::None;
    Step step = Step::Idle;
    Step afterWait = Step::Idle;
    Millis deadline = 0;
    Exchange exchangeState = Exchange::NotStarted;
    int retry = 0;
    int packetNumber = 0;
    int totalPackets = 0;
    int countdown = 0;
    bool writing = true;
    bool secondPass = false;
    bool modeAtStart = false;
    bool attentionOn = false;
    Millis attentionDeadline = 0;
    TransferKind kind = TransferKind::Database;

    std::ifstream sourceFile;
    // The voices being read, in a file private to this transfer beside where
    // they will be kept; gone on every way out that does not keep them.
    std::unique_ptr<SafeFileWriter> voiceStaging;
    std::optional<std::filesystem::path> voiceTarget;
    Millis endDelay = 0;
    std::int64_t wireDone = 0;
    Step afterEnd = Step::Idle;
};

} // namespace rk4::link
