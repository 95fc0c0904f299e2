#include "cli/support.h"

#include "core/basic/simple_warning.h"
#include "core/database/file.h"

#include <ostream>

namespace rk4::cli {

int runToBasic(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (parsed.positional.size() != 2)
        return usageError(context, "to-basic", "expected FILE.dat and OUT.dat");
    for (const auto& flag : parsed.flags)
        if (flag != "--keep-directories")
            return usageError(context, "to-basic", "unknown option " + flag);
    auto db = loadImage(parsed.positional[0], context);
    if (!db)
        return 2;

    const bool keepDirectories = parsed.has("--keep-directories");
    if (keepDirectories)
        Change2Simple2(*db);
    else
        Change2Simple(*db);
    const std::string& out = parsed.positional[1];
    const FileOutcome status = writeImageFile(out, *db);
    if (!status) {
        printFileError(context, status, out);
        return 1;
    }
    context.out << "Wrote a Basic configuration" << (keepDirectories ? " with the directories kept" : "") << " to "
                << out << "\n";
    return 0;
}

} // namespace rk4::cli
