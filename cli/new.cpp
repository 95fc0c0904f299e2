#include "cli/support.h"

#include "core/database/defaults.h"
#include "core/database/file.h"

#include <ostream>

namespace rk4::cli {

int runNew(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (parsed.positional.size() != 1)
        return usageError(context, "new", "expected one FILE.dat");
    for (const auto& flag : parsed.flags)
        if (flag != "--basic")
            return usageError(context, "new", "unknown option " + flag);

    Database db;
    db.gen.basicMode = parsed.has("--basic") ? 1 : 0;
    ClearDatabase(db, false);
    const FileOutcome status = writeImageFile(parsed.positional[0], db);
    if (!status) {
        printFileError(context, status, parsed.positional[0]);
        return 1;
    }
    context.out << "Wrote " << (db.gen.basicMode ? "Basic" : "Advanced") << " defaults to " << parsed.positional[0]
                << "\n";
    return 0;
}

} // namespace rk4::cli
