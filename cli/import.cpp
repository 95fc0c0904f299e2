#include "cli/support.h"

#include "core/database/file.h"
#include "core/database/text_form.h"

#include <ostream>

namespace rk4::cli {

// The whole text is checked before anything is written, so a refused value
// leaves OUT.dat exactly as it was.
int runImport(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (!parsed.flags.empty() || parsed.positional.size() != 2)
        return usageError(context, "import", "expected IN.yaml and OUT.dat");
    const std::string& source = parsed.positional[0];
    const std::string& target = parsed.positional[1];
    const ImportResult imported = readTextFormFile(source);
    if (!imported.db) {
        context.err << source << ": " << textFormErrorText(imported.error) << "\n";
        return 2;
    }
    const FileOutcome saved = writeImageFile(target, *imported.db);
    if (!saved) {
        context.err << "File Error:" << fileStatusText(saved.status) << "(" << target << ")"
                    << (saved.cause.empty() ? "" : " " + saved.cause) << "\n";
        return 1;
    }
    return 0;
}

} // namespace rk4::cli
