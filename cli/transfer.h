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

namespace rk4::cli {

// Splits the arguments of a transfer verb: --port and the simulated unit's
// options take a value.
Parsed parseTransferArguments(const Arguments& args);

class UnitLine {
  public:
    // The line named by --port, else the slot saved in rk4.cfg in
    // `workingDirectory` (COM 1 when there is none). Nothing, with the problem
    // printed, when the arguments do not name a port.
    static std::unique_ptr<UnitLine> choose(const Parsed& parsed, const std::filesystem::path& workingDirectory,
                                            Context& context);
    virtual ~UnitLine() = default;

    virtual link::Transport& transport() = 0;
    virtual const Clock& clock() const = 0;
    // Sleeps (or, for the simulated unit, moves its time on) until `target`
    // or until bytes arrive for an exchange in progress.
    virtual void waitUntil(Millis target) = 0;
    virtual std::string description() const = 0;
};

// Starts an operation with `start` and runs it to its end. True only when the
// operation succeeded.
bool runTransfer(UnitLine& line, Workspace& workspace, Context& context,
                 const std::function<bool(link::ProgrammingSession&, Millis)>& start);

// Common checks of a transfer verb's arguments: exactly one file and no
// unknown flag. Returns the exit code of a usage error, or nothing.
std::optional<int> checkTransferArguments(const Parsed& parsed, Context& context, const char* verb,
                                          const char* fileKind);

// Reads the unit's database into `workspace`: nothing when no line could be
// chosen, else whether the read succeeded. The body shared by read and verify.
std::optional<bool> receiveDatabase(const Parsed& parsed, Workspace& workspace, Context& context);

// Sends a vocabulary or voice file named on the command line: the body of
// write-vocab and write-voices.
int sendFile(const Arguments& args, Context& context, link::TransferKind kind, const char* verb, const char* usage);

} // namespace rk4::cli
