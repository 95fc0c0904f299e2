#include "cli/transfer.h"

namespace rk4::cli {

int runWriteVoices(const Arguments& args, Context& context)
{
    return sendFile(args, context, link::TransferKind::Voices, "write-voices", "FILE.msg");
}

} // namespace rk4::cli
