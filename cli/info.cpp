#include "cli/support.h"

#include "core/common/text.h"
#include "core/database/validators.h"
#include "core/report/summary.h"

#include <algorithm>
#include <CLI/CLI.hpp>

#include <memory>
#include <ostream>

namespace rk4::cli {

namespace {

std::string trimmed(const std::string& text)
{
    const auto end = text.find_last_not_of(' ');
    return end == std::string::npos ? std::string() : text.substr(0, end + 1);
}

int info(const std::string& file, Context& context)
{
    const auto db = loadImage(file, context);
    if (!db)
        return 2;

    auto& out = context.out;
    out << "Mode:        " << (db->gen.basicMode ? "Basic" : "Advanced") << "\n";
    const std::string site = trimmed(nameText(db->gen.name));
    out << "Site name:   " << (site.empty() ? "(none)" : site) << "\n";

    out << "Directories:";
    bool any = false;
    for (int d = 0; d < kDirectoryCount; ++d)
        if (IsDirectoryUsed(*db, d)) {
            out << " " << static_cast<char>('A' + d);
            any = true;
        }
    out << (any ? "\n" : " none in use\n");

    out << "Groups:     ";
    any = false;
    for (int g = 0; g < kUsedGroupCount; ++g)
        if (db->group[g].enabled) {
            out << " " << g + 1;
            any = true;
        }
    out << (any ? " enabled\n" : " none enabled\n");

    out << "Points:      number, name, type, port, state, groups\n";
    any = false;
    for (int p = 0; p < kPointCount; ++p) {
        const PointRecord& point = db->alm[p];
        if (point.type == kPointUnused)
            continue;
        any = true;
        std::vector<int> groups;
        for (int g = 0; g < 8; ++g)
            if (point.groupMask & (1u << g))
                groups.push_back(g + 1);
        const std::string name = trimmed(nameText(point.name));
        out << "  " << (p + 1 < 10 ? " " : "") << p + 1 << "  " << padRight(name.empty() ? "(no name)" : name, 16)
            << "  " << padRight(pointTypeWord(point.type), 10) << "  " << (point.isOutput ? "output " : "input  ")
            << point.port + 1 << "  " << (point.inactive ? "inactive" : "active  ") << "  "
            << (groups.empty() ? std::string("no group") : groupsText(groups)) << "\n";
    }
    if (!any)
        out << "  none in use\n";
    return 0;
}

} // namespace

VerbBody addInfoVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("info", "Mode, site name and what is in use");
    auto file = std::make_shared<std::string>();
    verb->add_option("FILE.dat", *file, "The configuration file")->required();
    return [file, &context] { return info(*file, context); };
}

} // namespace rk4::cli
