#include "cli/support.h"

#include "core/report/summary.h"
#include "core/report/text_pdf.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <memory>
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

struct SummaryOptions {
    std::string file;
    std::string category = "all";
    std::string pdf;
};

int summary(const SummaryOptions& options, Context& context)
{
    const auto found = std::find_if(std::begin(kCategories), std::end(kCategories),
                                    [&](const CategoryName& entry) { return options.category == entry.name; });
    const auto db = loadImage(options.file, context);
    if (!db)
        return 2;

    Printout printout(*db);
    printout.select(forMode(options.category, found->category, db->gen.basicMode != 0));
    const std::vector<SummaryPage> pages = printout.allPages();

    if (!options.pdf.empty()) {
        const std::string pdf = textPdf(pages);
        const SaveResult saved =
            writeFileAtomically(options.pdf, std::span(reinterpret_cast<const std::uint8_t*>(pdf.data()), pdf.size()));
        if (!saved) {
            printMessage(context.err, kCannotOpenFile, fileAndCause(options.pdf, saved.cause()));
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

} // namespace

VerbBody addSummaryVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("summary", "Print the summary pages, a form feed between pages");
    auto options = std::make_shared<SummaryOptions>();
    verb->add_option("FILE.dat", options->file, "The configuration file")->required();
    std::vector<std::string> names;
    for (const CategoryName& entry : kCategories)
        names.emplace_back(entry.name);
    verb->add_option("--category", options->category, "The pages to print (default: all)")
        ->check(CLI::IsMember(names));
    verb->add_option("--pdf", options->pdf, "Write the pages to this PDF file instead");
    return [options, &context] { return summary(*options, context); };
}

} // namespace rk4::cli
