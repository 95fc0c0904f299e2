#include "cli/transfer.h"

namespace rk4::cli {

// The verb itself is the technician's consent: the window's two questions
// about losing the stored voices are not asked here.
int runWriteVocab(const Arguments& args, Context& context)
{
    return sendFile(args, context, link::TransferKind::Vocabulary, "write-vocab", "FILE.bin");
}

} // namespace rk4::cli
