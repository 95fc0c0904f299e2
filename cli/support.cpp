#include "cli/support.h"

#include "core/database/file.h"

#include <algorithm>
#include <ostream>

namespace rk4::cli {

Answer StreamPrompter::ask(const Message& message)
{
    stream << message.title << ":" << message.text << "\n";
    if (!message.detail.empty())
        stream << "  " << message.detail << "\n";
    if (message.buttons == Buttons::Ok)
        return Answer::Ok;
    return defaultAnswer;
}

std::optional<Database> loadImage(const std::string& path, Context& context)
{
    Database db;
    const FileOutcome status = readImageFile(path, db);
    if (!status) {
        printFileError(context, status, path);
        return std::nullopt;
    }
    return db;
}

void printFileError(Context& context, const FileOutcome& outcome, const std::string& path)
{
    context.err << "File Error:" << fileStatusText(outcome.status) << "(" << path << ")"
                << (outcome.cause.empty() ? "" : " " + outcome.cause) << "\n";
}

bool Parsed::has(const std::string& flag) const { return std::find(flags.begin(), flags.end(), flag) != flags.end(); }

std::optional<std::string> Parsed::option(const std::string& name) const
{
    for (const auto& [key, value] : options)
        if (key == name)
            return value;
    return std::nullopt;
}

Parsed parseArguments(const Arguments& args, std::initializer_list<const char*> optionsWithValue)
{
    Parsed parsed;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& arg = args[i];
        if (arg.size() > 2 && arg.rfind("--", 0) == 0) {
            const auto equals = arg.find('=');
            if (equals != std::string::npos) {
                parsed.options.emplace_back(arg.substr(0, equals), arg.substr(equals + 1));
                continue;
            }
            const bool takesValue = std::any_of(optionsWithValue.begin(), optionsWithValue.end(),
                                                [&](const char* name) { return arg == name; });
            if (takesValue && i + 1 < args.size()) {
                parsed.options.emplace_back(arg, args[++i]);
                continue;
            }
            parsed.flags.push_back(arg);
        } else {
            parsed.positional.push_back(arg);
        }
    }
    return parsed;
}

int reportDifferences(const std::vector<FieldDifference>& differences, const ComparedSides& sides,
                      const std::string& sameText, Context& context)
{
    if (differences.empty()) {
        context.out << sameText << "\n";
        return 0;
    }
    context.out << differences.size() << (differences.size() == 1 ? " field differs" : " fields differ") << " between "
                << sides.first << " and " << sides.second << ":\n";
    for (const auto& difference : differences)
        context.out << "  " << differenceText(difference, sides.firstLabel, sides.secondLabel) << "\n";
    return 1;
}

int usageError(Context& context, const char* verb, const std::string& problem)
{
    context.err << "rk4 " << verb << ": " << problem << "\nTry 'rk4 " << verb << " --help'.\n";
    return 2;
}

} // namespace rk4::cli
