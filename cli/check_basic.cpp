#include "cli/support.h"

#include "core/basic/simple_warning.h"
#include "core/database/defaults.h"

#include <cstdio>
#include <ostream>

namespace rk4::cli {

int runCheckBasic(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (parsed.positional.size() != 1 || !parsed.flags.empty())
        return usageError(context, "check-basic", "expected one FILE.dat");
    auto db = loadImage(parsed.positional[0], context);
    if (!db)
        return 2;
    // Checked as the window would see it after Open.
    if (!db->gen.basicMode)
        DefaultValues(*db);

    const SimpleWarning warning(*db, true);
    char mask[16];
    std::snprintf(mask, sizeof mask, "0x%X", static_cast<unsigned>(warning.check().problems));
    context.out << mask << "\n";
    if (warning.check().problems == 0)
        return 0;
    for (const auto& item : warning.items())
        context.out << item.text << "\n";
    return 1;
}

} // namespace rk4::cli
