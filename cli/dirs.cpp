#include "cli/support.h"

#include "core/database/directory_codec.h"

#include <cstdio>
#include <ostream>

namespace rk4::cli {

namespace {

// TAP and other typed parameters may hold any byte; keep the listing readable.
std::string printable(const std::string& text)
{
    std::string out;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x20 && byte < 0x7F && c != '\\') {
            out += c;
        } else {
            char escaped[5];
            std::snprintf(escaped, sizeof escaped, "\\x%02X", byte);
            out += escaped;
        }
    }
    return out;
}

} // namespace

int runDirs(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args);
    if (parsed.positional.size() != 1 || !parsed.flags.empty())
        return usageError(context, "dirs", "expected one FILE.dat");
    const auto db = loadImage(parsed.positional[0], context);
    if (!db)
        return 1;

    auto& out = context.out;
    for (int d = 0; d < kDirectoryCount; ++d) {
        out << "Directory " << static_cast<char>('A' + d) << "\n";
        const DirLines lines = DecodeDirectory(db->dir[d]);
        // Empty lines between used ones are shown, as the directory editor shows them.
        int last = kDirectoryLines;
        while (last > 0 && lines[last - 1].empty())
            --last;
        if (last == 0)
            out << "  (Empty)\n";
        for (int i = 0; i < last; ++i)
            out << " " << (i + 1 < 10 ? " " : "") << i + 1 << "  " << printable(dirLineText(lines[i])) << "\n";
    }
    return 0;
}

} // namespace rk4::cli
