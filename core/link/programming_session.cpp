#include "core/link/programming_session.h"

#include "core/common/bytes.h"
#include "core/database/file.h"
#include "core/link/packing.h"
#include "core/link/serial_transport.h"
#include "core/voice/wave.h"

#include <algorithm>
#include <array>
#include <system_error>

namespace rk4::link {

namespace {

std::string noResponse(int retry) { return "No response - retry " + std::to_string(retry); }

struct StreamedFile {
    const char* filter;
    const char* extension;
    const char* cannotOpen;
    const char* notValid;
};

const StreamedFile kVocabularyFile{"Vocabulary files (*.bin)", "bin", " CANNOT OPEN VOCABULARY FILE ",
                                   " VOCABULARY FILE IS NOT VALID "};
const StreamedFile kVoiceFile{"Voice files (*.msg)", "msg", " CANNOT OPEN VOICE MESSAGE FILE ",
                              " VOICE MESSAGE FILE IS NOT VALID "};

constexpr char kCannotOpenVoiceTemporary[] = " CANNOT OPEN voice.tmp FILE ";

Message question(std::string text) { return Message{"Question", std::move(text), Icon::Question, Buttons::YesNo}; }

// A voice message file begins with the lengths, in blocks, of its 39 phrases
// (16-bit, high byte first); the two unused group slots do not count.
constexpr std::size_t kMessageHeaderSize = 78;
constexpr std::size_t kUnusedGroupSlots[] = {36, 37};

std::uint64_t phraseBlocks(std::span<const std::uint8_t, kMessageHeaderSize> header)
{
    std::uint64_t blocks = 0;
    for (std::size_t slot = 0; slot < kMessageHeaderSize / 2; ++slot)
        if (slot != kUnusedGroupSlots[0] && slot != kUnusedGroupSlots[1])
            blocks += readBE16(header, 2 * slot);
    return blocks;
}

// Why a file cannot go to the unit as `kind`, for the detail of the NOT VALID
// message; empty when it can. Checked before anything is sent, so a file the
// unit cannot hold never erases what it has.
std::string streamedFileProblem(TransferKind kind, std::uint64_t size,
                                std::span<const std::uint8_t, kMessageHeaderSize> header)
{
    if (size == 0)
        return "the file is empty";
    if (size % kPacketSize != 0)
        return std::to_string(size) + " bytes, not a whole number of 4096-byte blocks";
    const std::uint64_t blocks = size / kPacketSize;
    const bool vocabulary = kind == TransferKind::Vocabulary;
    const std::uint64_t room = vocabulary ? kSecondPassVocabularyPackets : kVoiceStoreBytes / kPacketSize;
    if (blocks > room)
        return std::to_string(blocks) + " blocks of 4096 bytes, and the unit's " +
               (vocabulary ? "vocabulary store" : "voice store") + " holds " + std::to_string(room);
    const std::uint64_t phrases = phraseBlocks(header);
    if (!vocabulary && 1 + phrases > blocks)
        return "its header lists " + std::to_string(phrases) + " blocks of phrases, and the file holds " +
               std::to_string(blocks - 1);
    if (vocabulary && phrases > 0 && 1 + phrases == blocks)
        return "it is a voice message file: its header lists the " + std::to_string(phrases) +
               " blocks of phrases that follow it";
    return {};
}

} // namespace

ProgrammingSession::ProgrammingSession(Workspace& workspace, Transport& transport, Prompter& prompter)
    : workspace(workspace), prompter(prompter), transport(&transport), link(std::make_unique<LinkSession>(transport))
{}

ProgrammingSession::~ProgrammingSession() { closeFiles(); }

bool ProgrammingSession::portOpen() const { return transport->isOpen(); }

void ProgrammingSession::closePort()
{
    if (transport->isOpen()) {
        transport->purge(Purge::Both);
        transport->close();
    }
}

void ProgrammingSession::changeTransport(Transport& replacement)
{
    if (running())
        return;
    closePort();
    transport = &replacement;
    link = std::make_unique<LinkSession>(replacement);
}

void ProgrammingSession::setText(SessionLine line, const std::string& text)
{
    switch (line) {
    case SessionLine::Status: shown.status = text; break;
    case SessionLine::Version: shown.version = text; break;
    case SessionLine::Line1: shown.line1 = text; break;
    case SessionLine::Line2: shown.line2 = text; break;
    }
    if (onText)
        onText(line, text);
}

void ProgrammingSession::setAttention(Millis now)
{
    attentionOn = true;
    attentionDeadline = now + 1000;
}

void ProgrammingSession::IdleAction(Millis now)
{
    if (attentionOn && now >= attentionDeadline) {
        if (beep)
            beep();
        attentionDeadline += 1000;
        if (attentionDeadline <= now) // idle calls paused: no burst of catch-up beeps
            attentionDeadline = now + 1000;
    }
}

bool MissingAccessCode(const GeneralRecord& gen) { return gen.accessCode[0] == 0 && gen.securityLevel != 0; }

bool ProgrammingSession::CheckWarnings()
{
    if (MissingAccessCode(workspace.image.gen)) {
        if (!openGeneralEditor) {
            // Nothing to change it in: the question becomes a warning.
            prompter.tell("Warning", kMissingAccessCodeText, Icon::Warning);
        } else if (prompter.ask(Message{"Warning",
                                        std::string(kMissingAccessCodeText) + "\nDo you want to change this?",
                                        Icon::Warning, Buttons::YesNo}) == Answer::Yes) {
            openGeneralEditor();
            if (prompter.ask(question("Do you want to continue with programming?")) != Answer::Yes)
                return true;
        }
    }
    // Asked only where there is a Summary to show: the command line has none,
    // and its own `rk4 warnings` lists them.
    if (openSummary &&
        prompter.ask(question("Do you want to check the Summary for warnings before programming?")) == Answer::Yes) {
        openSummary();
        if (prompter.ask(question("Do you want to continue with programming?")) != Answer::Yes)
            return true;
    }
    return false;
}

bool ProgrammingSession::openPort(Millis now)
{
    if (!SetUpPort(*transport, prompter)) {
        shown.progressOpen = false;
        if (onProgress)
            onProgress();
        closeFiles();
        return false;
    }
    link = std::make_unique<LinkSession>(*transport);
    wait(now, kFreshPortWait, Step::Version);
    return true;
}

bool ProgrammingSession::Send(TransferKind transferKind, Millis now, std::optional<std::filesystem::path> file)
{
    if (running())
        return false;
    if (transferKind == TransferKind::Database && askWarnings && CheckWarnings())
        return false;
    attentionOn = false;
    setText(SessionLine::Status, "");
    kind = transferKind;
    writing = true;
    result = SessionOutcome::None;
    // The second pass belongs to the run that needed it: the next run may be
    // on another port, to a newer unit.
    secondPass = false;

    if (kind == TransferKind::Database) {
        totalPackets = kDatabasePackets;
    } else {
        const StreamedFile& form = kind == TransferKind::Vocabulary ? kVocabularyFile : kVoiceFile;
        if (!file) {
            const std::filesystem::path start = kind == TransferKind::Vocabulary
                                                    ? programDirectory / defaultVocabularyFile
                                                    : workspace.workingDirectory() / kDefaultVoiceFile;
            auto chosen = prompter.chooseFile(FileRequest{
                FileMode::Open, "Open", std::string(form.filter) + ";;All files (*)", form.extension, start.string()});
            if (!chosen)
                return false;
            file = *chosen;
        }
        std::error_code error;
        const auto size = std::filesystem::file_size(*file, error);
        sourceFile.open(*file, std::ios::binary);
        if (!sourceFile || error) {
            sourceFile.close();
            prompter.fileError(form.cannotOpen, file->string() + (error ? ": " + error.message() : std::string()));
            return false;
        }
        std::array<std::uint8_t, kMessageHeaderSize> header{};
        sourceFile.read(reinterpret_cast<char*>(header.data()), header.size());
        sourceFile.clear();
        sourceFile.seekg(0);
        if (const std::string problem = streamedFileProblem(kind, size, header); !problem.empty()) {
            sourceFile.close();
            prompter.fileError(form.notValid, file->string() + ": " + problem);
            return false;
        }
        totalPackets = static_cast<int>(size / kPacketSize);
    }

    shown.progressOpen = true;
    shown.packetsDone = 0;
    wireDone = 0;
    shown.packetsTotal = totalPackets;
    if (onProgress)
        onProgress();
    const bool fresh = !transport->isOpen();
    if (!openPort(now))
        return false;
    retry = 0;
    if (!fresh) {
        // A port this dialog already opened has answered once: skip the version check.
        secondPass = false;
        step = Step::Link;
    }
    return true;
}

bool ProgrammingSession::Receive(TransferKind transferKind, Millis now, std::optional<std::filesystem::path> target)
{
    if (running())
        return false;
    attentionOn = false;
    modeAtStart = workspace.basicMode();
    kind = transferKind;
    writing = false;
    result = SessionOutcome::None;
    secondPass = false;
    voiceTarget = std::move(target);

    if (kind == TransferKind::Voices) {
        // Without a target yet, the voices wait in the working directory.
        voiceStaging = std::make_unique<SafeFileWriter>(
            voiceTarget ? *voiceTarget : workspace.workingDirectory() / kVoiceTemporaryFile);
        // Room for the largest store is asked for first: a full disk found
        // after minutes of transfer would lose them all.
        SaveResult ready = voiceStaging->result();
        if (ready)
            ready = checkSaveRoom(voiceStaging->target(), kVoiceStorePackets * std::uint64_t{kPacketSize});
        if (!ready) {
            prompter.fileError(kCannotOpenVoiceTemporary, voiceStaging->target().string() + ": " + ready.cause());
            voiceStaging.reset();
            return false;
        }
        totalPackets = kVoiceStorePackets;
    } else {
        totalPackets = kDatabasePackets;
    }

    shown.progressOpen = true;
    shown.packetsDone = 0;
    wireDone = 0;
    shown.packetsTotal = totalPackets;
    if (onProgress)
        onProgress();
    const bool fresh = !transport->isOpen();
    if (!openPort(now))
        return false;
    retry = 0;
    if (!fresh)
        step = Step::Version; // a read always checks the version
    return true;
}

WireProgress ProgrammingSession::wireProgress()
{
    WireProgress progress;
    progress.total = std::int64_t{shown.packetsTotal} * kDataFrameLength;
    progress.done = std::int64_t{shown.packetsDone} * kDataFrameLength;
    if ((step == Step::Packet || step == Step::ReadPacket) && exchangeState == Exchange::Running)
        progress.done += link->dataBytesMoved();
    // A packet sent again, or one waiting for its count, holds the bar where it was.
    wireDone = std::max(wireDone, std::min(progress.done, progress.total));
    progress.done = wireDone;
    return progress;
}

void ProgrammingSession::wait(Millis now, Millis delay, Step next)
{
    step = Step::Wait;
    deadline = now + delay;
    afterWait = next;
}

Millis ProgrammingSession::nextPollAt(Millis now) const
{
    if (step == Step::Idle)
        return now + 1000;
    if (step == Step::Wait || step == Step::VoiceCountdown)
        return deadline;
    if (exchangeState == Exchange::Running)
        return link->nextPollAt(now);
    return now;
}

// Starts the request on the first call and reports, on later calls, whether it
// is still under way (true) or finished with `status`.
bool ProgrammingSession::exchange(Millis now, std::uint8_t command, int number, bool withData, ExchangeStatus& status)
{
    if (exchangeState == Exchange::NotStarted) {
        link->start(command, number, withData, now);
        exchangeState = Exchange::Running;
    }
    status = link->poll(now);
    if (status == ExchangeStatus::Pending)
        return true;
    exchangeState = Exchange::NotStarted;
    return false;
}

// A counted failure: show the retry, and after the last attempt take the
// failure path instead of asking again.
void ProgrammingSession::failure(Millis now, Step retryStep, const std::function<void()>& onLastFailure)
{
    ++retry;
    setText(SessionLine::Line2, noResponse(retry));
    if (retry >= kAttempts)
        onLastFailure();
    else
        wait(now, kRetryWait, retryStep);
}

// The unit is busy: ask again after the retry wait, without counting an attempt.
void ProgrammingSession::busy(Millis now, Step again)
{
    transport->purge(Purge::Receive);
    wait(now, kRetryWait, again);
}

void ProgrammingSession::statusAndLine2(const std::string& text)
{
    setText(SessionLine::Status, text);
    setText(SessionLine::Line2, text);
}

void ProgrammingSession::sendEnd(Millis now, Millis delay, Step next)
{
    endDelay = delay;
    afterEnd = next;
    step = Step::SendEnd;
    stepOnce(now);
}

void ProgrammingSession::closeFiles()
{
    if (sourceFile.is_open())
        sourceFile.close();
    link->source = nullptr;
    voiceStaging.reset();
}

// Keeps no more than the largest voice store holds, whatever the unit or a
// stuck exchange sends; false when the packets did not all fit or could not
// be written.
bool ProgrammingSession::appendToTemporary(std::size_t packets)
{
    constexpr std::size_t kStoreBytes = std::size_t{kVoiceStorePackets} * kPacketSize;
    if (!voiceStaging)
        return false;
    const std::size_t room = kStoreBytes - std::min<std::size_t>(voiceStaging->size(), kStoreBytes);
    const std::size_t offered = packets * kPacketSize;
    return voiceStaging->write(std::span(link->staging).first(std::min(offered, room))) && offered <= room;
}

// The staging file could not take the voices (a full disk): the run stops at
// once, and the staging file goes with it.
bool ProgrammingSession::stagingFailed(Millis now)
{
    if (!voiceStaging || voiceStaging->result())
        return false;
    const std::string cause = voiceStaging->result().cause();
    prompter.fileError(kCannotOpenVoiceTemporary, voiceStaging->temporaryPath().string() + ": " + cause);
    setText(SessionLine::Line1, "Voice transfer failure");
    setText(SessionLine::Status, "Voice transfer failure");
    setText(SessionLine::Line2, cause);
    voiceStaging.reset();
    sendEnd(now, kEndWait, Step::ReadEnd);
    return true;
}

void ProgrammingSession::finishRun(Millis)
{
    shown.progressOpen = false;
    if (onProgress)
        onProgress();
    step = Step::Idle;
    transport->purge(Purge::Both);
    if (result == SessionOutcome::None)
        result = SessionOutcome::Failed;
}

void ProgrammingSession::poll(Millis now)
{
    // Run every step that is ready now; stop at the first that has to wait.
    for (int guard = 0; guard < 64 && step != Step::Idle; ++guard) {
        stepOnce(now);
        const bool timed = step == Step::Wait || step == Step::VoiceCountdown;
        if ((timed && deadline > now) || exchangeState == Exchange::Running)
            break;
    }
}

void ProgrammingSession::stepOnce(Millis now)
{
    ExchangeStatus status = ExchangeStatus::Idle;
    switch (step) {
    case Step::Idle: return;

    case Step::Wait:
        if (now >= deadline)
            step = afterWait;
        return;

    case Step::Version:
        if (exchangeState == Exchange::NotStarted)
            setText(SessionLine::Line1, "Checking Rk4 version");
        if (exchange(now, CMD_VERSION, 0, false, status))
            return;
        if (status == ExchangeStatus::Good) {
            setText(SessionLine::Version, "Product: B" + link->product() + "  Version: " + link->firmware());
            retry = 0;
            wait(now, kAfterReply, writing ? Step::Pack : Step::ReadAnnounce);
        } else if (status == ExchangeStatus::Busy) {
            busy(now, Step::Version);
        } else {
            failure(now, Step::Version, [&] {
                statusAndLine2("No version available - trying alternate connection.");
                retry = 0;
                secondPass = false;
                step = Step::Link;
            });
        }
        return;

    case Step::Link:
        if (exchangeState == Exchange::NotStarted)
            setText(SessionLine::Line1, "Setting up communications link");
        if (exchange(now, secondPass ? CMD_LINK_ALT : CMD_LINK, 0, false, status))
            return;
        if (status == ExchangeStatus::Good) {
            retry = 0;
            wait(now, kAfterReply, writing ? Step::Pack : Step::ReadAnnounce);
        } else if (status == ExchangeStatus::Busy) {
            busy(now, Step::Link);
        } else {
            failure(now, Step::Link, [&] {
                if (!secondPass) {
                    secondPass = true;
                    retry = 0;
                    statusAndLine2("Communications Failure - Starting second pass.");
                    if (kind == TransferKind::Vocabulary && writing) {
                        // The older units always take a vocabulary of this size.
                        totalPackets = kSecondPassVocabularyPackets;
                        shown.packetsTotal = totalPackets;
                    }
                    wait(now, kRetryWait, Step::Link);
                    return;
                }
                statusAndLine2("Communications Failure - Check connection.");
                closeFiles();
                if (!writing) {
                    step = Step::ReadEnd;
                    return;
                }
                if (kind == TransferKind::Vocabulary) {
                    setText(SessionLine::Status, "Vocab transfer FAILED - no communications.");
                    setAttention(now);
                }
                step = Step::End;
            });
        }
        return;

    case Step::Pack:
        if (kind == TransferKind::Database) {
            totalPackets = packDatabase(workspace.image, secondPass, link->staging);
        } else {
            link->source = &sourceFile;
            link->blockSlot = kBlockPackets; // the first packet reads the first block
        }
        link->kind = kind;
        shown.packetsTotal = totalPackets;
        retry = 0;
        step = Step::Announce;
        return;

    case Step::Announce: {
        const std::uint8_t command = kind == TransferKind::Database     ? CMD_WRITE_DATABASE
                                     : kind == TransferKind::Vocabulary ? CMD_WRITE_VOCABULARY
                                                                        : CMD_WRITE_VOICES;
        if (exchange(now, command, 0, false, status))
            return;
        if (status == ExchangeStatus::Good) {
            retry = 0;
            packetNumber = 0;
            link->packetIndex = 0;
            wait(now, kAfterReply, Step::Packet);
        } else if (status == ExchangeStatus::Busy) {
            busy(now, Step::Announce);
        } else {
            failure(now, Step::Announce, [&] {
                closeFiles();
                step = Step::End;
            });
        }
        return;
    }

    case Step::Packet:
        if (exchangeState == Exchange::NotStarted) {
            setText(SessionLine::Line1,
                    "Transmitting packet " + std::to_string(packetNumber + 1) + " of " + std::to_string(totalPackets));
            setText(SessionLine::Line2, "");
            link->packetIndex = packetNumber;
        }
        if (exchange(now, CMD_PACKET, packetNumber, true, status))
            return;
        if (status == ExchangeStatus::Good) {
            if (kind == TransferKind::Voices && packetNumber == 0) {
                // The unit now erases its voice store.
                setText(SessionLine::Line1, "Waiting for Rk4 to initialize voice storage memory.");
                countdown = kVoiceEraseSeconds;
                setText(SessionLine::Line2, std::to_string(countdown) + " seconds remaining.");
                step = Step::VoiceCountdown;
                deadline = now + 1000;
            } else {
                wait(now, kAfterReply, Step::PacketDone);
            }
        } else if (status == ExchangeStatus::Busy) {
            busy(now, Step::Packet);
        } else {
            failure(now, Step::Packet, [&] {
                closeFiles();
                if (kind == TransferKind::Vocabulary) {
                    setText(SessionLine::Status, "Vocab transfer FAILED.");
                    setAttention(now);
                }
                step = Step::End;
            });
        }
        return;

    case Step::VoiceCountdown:
        if (now < deadline)
            return;
        --countdown;
        setText(SessionLine::Line2, std::to_string(countdown) + " seconds remaining.");
        if (countdown <= 0)
            wait(now, kAfterReply, Step::PacketDone);
        else
            deadline += 1000;
        return;

    case Step::PacketDone:
        ++packetNumber;
        ++link->blockSlot;
        retry = 0;
        shown.packetsDone = packetNumber;
        if (onProgress)
            onProgress();
        if (packetNumber >= totalPackets)
            wait(now, kAfterReply, Step::Complete);
        else
            step = Step::Packet;
        return;

    case Step::Complete:
        closeFiles();
        if (kind == TransferKind::Database) {
            statusAndLine2("Database transferred to the Rk4");
        } else if (kind == TransferKind::Vocabulary) {
            setText(SessionLine::Line2, "Vocab transferred to the Rk4");
            setText(SessionLine::Status, "Vocab succesfully transferred to the Rk4");
            setAttention(now);
        } else {
            statusAndLine2("Voices transferred to the Rk4");
        }
        setText(SessionLine::Line1, "Success");
        result = SessionOutcome::Succeeded;
        step = Step::End;
        return;

    case Step::End: sendEnd(now, kEndWait, Step::Finish); return;

    case Step::SendEnd:
        if (exchange(now, CMD_END, 0, false, status))
            return;
        wait(now, endDelay, afterEnd);
        return;

    case Step::Finish: finishRun(now); return;

    case Step::ReadAnnounce:
        if (exchange(now, kind == TransferKind::Voices ? CMD_READ_VOICES : CMD_READ_DATABASE, 0, false, status))
            return;
        if (status == ExchangeStatus::Good) {
            retry = 0;
            link->kind = kind;
            link->packetIndex = 0;
            link->blockSlot = 0;
            setText(SessionLine::Line2, "");
            wait(now, kAfterReply, Step::ReadPacket);
        } else if (status == ExchangeStatus::Busy) {
            busy(now, Step::ReadAnnounce);
        } else {
            failure(now, Step::ReadAnnounce, [&] { step = Step::ReadEnd; });
        }
        return;

    case Step::ReadPacket:
        if (exchangeState == Exchange::NotStarted) {
            setText(SessionLine::Line1, "Waiting for packet " + std::to_string(link->packetIndex + 1));
            link->showProgress = [this](const std::string& text) { setText(SessionLine::Line1, text); };
        }
        if (exchange(now, CMD_PACKET, link->packetIndex, false, status))
            return;
        if (status == ExchangeStatus::Good) {
            wait(now, kAfterReply, Step::ReadPacketDone);
        } else if (status == ExchangeStatus::Busy) {
            busy(now, Step::ReadPacket);
        } else if (link->IsEndOfData() && kind == TransferKind::Voices) {
            // The unit has no more voice data: keep what the last block holds.
            appendToTemporary(static_cast<std::size_t>(link->blockSlot));
            if (stagingFailed(now))
                return;
            link->packetIndex = totalPackets;
            step = Step::ReadComplete;
        } else {
            // A database is whole or not at all: an early end is a failure too.
            failure(now, Step::ReadPacket, [&] {
                setText(SessionLine::Line1, "Data transfer from Rk4");
                setText(SessionLine::Line2,
                        "Transfer failed at packet number " + std::to_string(link->packetIndex + 1));
                wait(now, kEndWait, Step::ReadEnd);
            });
        }
        return;

    case Step::ReadPacketDone:
        if (kind == TransferKind::Voices && link->blockSlot == 0 && !appendToTemporary(kBlockPackets)) {
            if (!stagingFailed(now))
                step = Step::ReadComplete;
            return;
        }
        setText(SessionLine::Line2, "Received packet " + std::to_string(link->packetIndex));
        shown.packetsDone = link->packetIndex;
        if (onProgress)
            onProgress();
        retry = 0;
        if (link->packetIndex >= totalPackets)
            wait(now, kAfterReply, Step::ReadComplete);
        else
            step = Step::ReadPacket;
        return;

    case Step::ReadComplete:
        if (kind == TransferKind::Database) {
            workspace.acceptReadImage(unpackDatabase(link->staging), modeAtStart);
            setText(SessionLine::Line1, "Configuration data read from the Rk4");
            setText(SessionLine::Status, "Configuration data read from the Rk4");
            setText(SessionLine::Line2, "Success");
            result = SessionOutcome::Succeeded;
            sendEnd(now, kEndWait, Step::ReadEnd);
            return;
        }
        if (!voiceStaging || voiceStaging->size() < kPacketSize) {
            setText(SessionLine::Line1, "Voice transfer failure");
            setText(SessionLine::Status, "Voice transfer failure");
            setText(SessionLine::Line2, "Not enough voice data to be valid.");
            sendEnd(now, 2000, Step::ReadEnd);
            return;
        }
        setText(SessionLine::Line1, "Voice data read from the Rk4");
        setText(SessionLine::Status, "Voice data read from the Rk4");
        setText(SessionLine::Line2, "Success");
        sendEnd(now, kEndWait, Step::ReadSelectFile);
        return;

    case Step::ReadSelectFile:
        setText(SessionLine::Line1, "Select a file for storage");
        setText(SessionLine::Line2, "");
        wait(now, 1000, Step::ReadSaveFile);
        return;

    case Step::ReadSaveFile: {
        std::optional<std::filesystem::path> chosen = voiceTarget;
        if (!chosen) {
            auto answer =
                prompter.chooseFile(FileRequest{FileMode::Save, "Save As", "Voice files (*.msg);;All files (*)", "msg",
                                                (workspace.workingDirectory() / kDefaultVoiceFile).string()});
            if (answer)
                chosen = *answer;
        }
        if (chosen && voiceStaging) {
            SaveResult saved;
            if (voiceTarget) {
                saved = voiceStaging->commit();
            } else {
                // Chosen after the transfer: copied from the staging file, which then goes.
                const FileRead staged = readFileBytes(voiceStaging->temporaryPath());
                saved = staged ? writeFileAtomically(*chosen, staged.bytes)
                               : SaveResult{SaveProblem::WriteFailed, staged.error, {}};
            }
            if (saved)
                result = SessionOutcome::Succeeded;
            else
                prompter.fileError(kCannotOpenFile, saved.cause());
        }
        voiceStaging.reset();
        step = Step::ReadEnd;
        return;
    }

    case Step::ReadEnd:
        closeFiles();
        wait(now, kEndWait, Step::Finish);
        return;
    }
}

} // namespace rk4::link
