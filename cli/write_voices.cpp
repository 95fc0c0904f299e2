#include "cli/transfer.h"

#include <CLI/CLI.hpp>

namespace rk4::cli {

VerbBody addWriteVoicesVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("write-voices", "Write the voice messages to the unit");
    const auto options = addFileTransferOptions(*verb, "FILE.msg", "The voice message file");
    return [options, &context] { return sendFile(options->file, options->line, context, link::TransferKind::Voices); };
}

} // namespace rk4::cli
