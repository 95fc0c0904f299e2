#include "cli/support.h"

#include "core/database/file.h"
#include "core/link/port_slots.h"

#include <CLI/CLI.hpp>

#include <cctype>
#include <ostream>

namespace rk4::cli {

void printMessage(std::ostream& stream, const std::string& text, const std::string& detail)
{
    stream << text << "\n";
    if (!detail.empty())
        stream << "  " << detail << "\n";
}

std::string fileAndCause(const std::string& path, const std::string& cause)
{
    return cause.empty() ? path : path + ": " + cause;
}

void printFileError(Context& context, const FileOutcome& outcome, const std::string& path)
{
    printMessage(context.err, fileStatusText(outcome.status), fileAndCause(path, outcome.cause));
}

Answer StreamPrompter::ask(const Message& message)
{
    printMessage(stream, message.text, message.detail);
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

std::optional<int> portSlotNumber(const std::string& text)
{
    std::string digits = text;
    if (digits.size() >= 3 && std::toupper(static_cast<unsigned char>(digits[0])) == 'C' &&
        std::toupper(static_cast<unsigned char>(digits[1])) == 'O' &&
        std::toupper(static_cast<unsigned char>(digits[2])) == 'M')
        digits = digits.substr(digits.size() > 3 && digits[3] == ' ' ? 4 : 3);
    if (digits.size() != 1 || digits[0] < '1' || digits[0] > '0' + link::kPortSlotCount)
        return std::nullopt;
    return digits[0] - '1';
}

void addSpeechOptions(CLI::App& verb, SpeechOptions& options)
{
    verb.add_option("--voice", options.voice, "The synthesiser's voice, LANGUAGE or LANGUAGE+VARIANT (e.g. en+m3)");
    verb.add_option("--speed", options.speed, "Words a minute")->check(CLI::Range(kSlowestSpeech, kFastestSpeech));
}

SpeechSettings speechSettings(const SpeechOptions& options)
{
    SpeechSettings settings = SpeechSettings::load(speechSettingsPath(std::filesystem::current_path()));
    if (!options.voice.empty())
        settings.setVoiceName(options.voice);
    if (options.speed)
        settings.speed = options.speed;
    return settings;
}

} // namespace rk4::cli
