#include "cli/transfer.h"

#include <CLI/CLI.hpp>

namespace rk4::cli {

// The verb itself is the technician's consent: the window's two questions
// about losing the stored voices are not asked here.
VerbBody addWriteVocabVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("write-vocab", "Write a vocabulary (erases the unit's voices)");
    const auto options = addFileTransferOptions(*verb, "FILE.bin", "The vocabulary file");
    return [options, &context] {
        return sendFile(options->file, options->line, context, link::TransferKind::Vocabulary);
    };
}

} // namespace rk4::cli
