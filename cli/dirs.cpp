#include "cli/support.h"

#include "core/database/directory_codec.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
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

int dirs(const std::string& file, Context& context)
{
    const auto db = loadImage(file, context);
    if (!db)
        return 2;

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

} // namespace

VerbBody addDirsVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("dirs", "List the lines of the six directories");
    auto file = std::make_shared<std::string>();
    verb->add_option("FILE.dat", *file, "The configuration file")->required();
    return [file, &context] { return dirs(*file, context); };
}

} // namespace rk4::cli
