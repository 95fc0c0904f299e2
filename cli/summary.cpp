#include "cli/support.h"

#include "core/report/summary.h"
#include "core/report/text_pdf.h"

#include <algorithm>
#include <fstream>
#include <ostream>

namespace rk4::cli {

namespace {

struct CategoryName {
    const char* name;
    Category category;
};

constexpr CategoryName kCategories[] = {
    {"hardware", Category::Hardware}, {"inputs", Category::Hardware},   {"outputs", Category::Hardware},
    {"points", Category::Points},     {"groups", Category::Groups},     {"general", Category::General},
    {"directories", Category::Dirs},  {"warnings", Category::Warnings}, {"all", Category::All},
};

// In a Basic image the outputs and general pages are the Basic ones, and the
// inputs are the alarms.
Category forMode(const std::string& name, Category category, bool basic)
{
    if (!basic)
        return category;
    if (name == "inputs")
        return Category::Alarms;
    if (name == "outputs")
        return Category::Simout;
    if (name == "general")
        return Category::Simgen;
    return category;
}

} // namespace

int runSummary(const Arguments& args, Context& context)
{
    const Parsed parsed = parseArguments(args, {"--category", "--pdf"});
    if (parsed.positional.size() != 1 || !parsed.flags.empty())
        return usageError(context, "summary", "expected one FILE.dat");
    const std::string name = parsed.option("--category").value_or("all");
    const auto found = std::find_if(std::begin(kCategories), std::end(kCategories),
                                    [&](const CategoryName& entry) { return name == entry.name; });
    if (found == std::end(kCategories))
        return usageError(context, "summary", "unknown category '" + name + "'");
    const auto db = loadImage(parsed.positional[0], context);
    if (!db)
        return 2;

    Printout printout(*db);
    printout.select(forMode(name, found->category, db->gen.basicMode != 0));
    const std::vector<SummaryPage> pages = printout.allPages();

    if (const auto pdfPath = parsed.option("--pdf")) {
        std::ofstream file(*pdfPath, std::ios::binary | std::ios::trunc);
        file << textPdf(pages);
        if (!file.flush()) {
            context.err << "File Error: CANNOT OPEN FILE (" << *pdfPath << ")\n";
            return 2;
        }
        return 0;
    }
    std::string text;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (i > 0)
            text += '\f';
        for (const std::string& line : pages[i].lines)
            text += line + "\n";
    }
    context.out << text;
    return 0;
}

} // namespace rk4::cli
