#pragma once
// What the transfer verbs share: the line to the unit chosen with --port (a
// slot, a device path or the built-in simulated unit) or from rk4.cfg, and a
// driver that runs a programming session to its end, printing its texts and,
// on a terminal, a progress bar.

#include "cli/support.h"
#include "core/common/clock.h"
#include "core/link/programming_session.h"
#include "core/link/simulated_unit.h"
#include "core/shell/workspace.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace rk4::cli {

// What a transfer verb is told about the line: --port and, for the built-in
// simulated unit, its memory files and faults.
struct TransferOptions {
    std::optional<std::string> port;
    // A distant unit: dial this number through the modem on the port.
    std::optional<std::string> dial;
    std::vector<std::string> simFaults;
    std::string simDatabase;
    std::string simVocabulary;
    std::string simVoices;
    bool simOlder = false;
};

// Declares --port and the --sim- options on a transfer verb.
void addTransferOptions(CLI::App& verb, TransferOptions& options);

// The arguments of a verb that moves one file to or from the unit.
struct FileTransfer {
    std::string file;
    TransferOptions line;
};

// Declares the file (a required argument named `fileName`) and the line options.
std::shared_ptr<FileTransfer> addFileTransferOptions(CLI::App& verb, const char* fileName, const char* description);

// A serial device the technician named: its path, and how to name it in messages.
struct ChosenPort {
    std::string path;
    std::string description; // "COM 3 (/dev/ttyUSB0)", or the path itself
};

// The device named by `port` (a slot such as COM3 or 3, or a device path),
// else the slot saved in rk4.cfg in `workingDirectory` (COM 1 when there is
// none). Nothing, with the problem printed, when `port` names no port.
std::optional<ChosenPort> choosePort(const std::optional<std::string>& port,
                                     const std::filesystem::path& workingDirectory, Context& context);

class UnitLine {
  public:
    // The line named by --port, else the slot saved in rk4.cfg in
    // `workingDirectory` (COM 1 when there is none). Nothing, with the problem
    // printed, when the arguments do not name a port.
    static std::unique_ptr<UnitLine> choose(const TransferOptions& options,
                                            const std::filesystem::path& workingDirectory, Context& context);
    virtual ~UnitLine() = default;

    virtual link::Transport& transport() = 0;
    virtual const Clock& clock() const = 0;
    // Sleeps (or, for the simulated unit, moves its time on) until `target`
    // or until bytes arrive for an exchange in progress.
    virtual void waitUntil(Millis target) = 0;
    virtual std::string description() const = 0;

    // Runs an operation started by `start` to its end; true only when it
    // succeeded. A line through a modem dials first and hangs up after.
    virtual bool run(Workspace& workspace, Context& context,
                     const std::function<bool(link::ProgrammingSession&, Millis)>& start);
};

// Starts an operation with `start` and runs it to its end. True only when the
// operation succeeded.
bool runTransfer(UnitLine& line, Workspace& workspace, Context& context,
                 const std::function<bool(link::ProgrammingSession&, Millis)>& start);

// Reads the unit's database into `workspace`: nothing when no line could be
// chosen, else whether the read succeeded. The body shared by read and verify.
std::optional<bool> receiveDatabase(const TransferOptions& options, Workspace& workspace, Context& context);

// Sends a vocabulary or voice file named on the command line: the body of
// write-vocab and write-voices.
int sendFile(const std::string& file, const TransferOptions& options, Context& context, link::TransferKind kind);

} // namespace rk4::cli
