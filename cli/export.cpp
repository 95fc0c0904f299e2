#include "cli/support.h"

#include "core/database/text_form.h"

#include <filesystem>
#include <ostream>

namespace rk4::cli {

int runExport(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (!parsed.flags.empty() || parsed.positional.empty() || parsed.positional.size() > 2)
        return usageError(context, "export", "expected FILE.dat and, optionally, OUT.yaml");
    const auto db = loadImage(parsed.positional[0], context);
    if (!db)
        return 2;
    if (parsed.positional.size() == 1) {
        context.out << exportText(*db);
        return 0;
    }
    const std::string& target = parsed.positional[1];
    if (!isTextFormName(target))
        return usageError(context, "export", "the text form is written to a .yaml file: " + target);
    const SaveResult saved = writeTextFormFile(target, *db);
    if (!saved) {
        context.err << "File Error: CANNOT WRITE FILE (" << target << ") " << saved.cause() << "\n";
        return 1;
    }
    return 0;
}

} // namespace rk4::cli
