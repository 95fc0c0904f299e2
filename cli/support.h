#pragma once
// What the verbs share: loading an image with the system's messages, a
// Prompter that prints, and the one way a message is printed.

#include "cli/verbs.h"
#include "core/common/prompter.h"
#include "core/database/compare.h"
#include "core/database/database.h"
#include "core/database/file.h"
#include "core/voice/speech.h"

#include <filesystem>
#include <optional>
#include <string>

namespace rk4::cli {

// Every message of the command line: the system's text first, then on the
// next line what explains it (the file, the sizes, the cause).
void printMessage(std::ostream& stream, const std::string& text, const std::string& detail = {});

// A file command's failure: the system's message, then the file and the cause.
void printFileError(Context& context, const FileOutcome& outcome, const std::string& path);

// "FILE: cause", or the file alone when there is no cause to give.
std::string fileAndCause(const std::string& path, const std::string& cause);

// Prints messages to the error stream; questions get their default answer.
class StreamPrompter : public Prompter {
  public:
    StreamPrompter(std::ostream& stream, Answer defaultAnswer = Answer::No)
        : stream(stream), defaultAnswer(defaultAnswer)
    {}
    Answer ask(const Message& message) override;
    std::optional<std::string> chooseFile(const FileRequest&) override { return std::nullopt; }

  private:
    std::ostream& stream;
    Answer defaultAnswer;
};

// Loads FILE.dat as the Open command does (name, size), without repairs.
// Prints the system's message and returns nothing on failure.
std::optional<Database> loadImage(const std::string& path, Context& context);

// Prints the fields that differ between two configurations, or `sameText`
// when none does; returns 0 when equal, 1 when different.
struct ComparedSides {
    std::string first, second;           // "edited.dat", "the unit"
    std::string firstLabel, secondLabel; // "in the file", "in the unit"
};
int reportDifferences(const std::vector<FieldDifference>& differences, const ComparedSides& sides,
                      const std::string& sameText, Context& context);

// "COM3", "COM 3", "com3" or "3" for slot 2; nothing for anything else.
std::optional<int> portSlotNumber(const std::string& text);

// --voice and --speed, over the speech settings kept in the working directory.
struct SpeechOptions {
    std::string voice;
    int speed = 0; // 0: as the settings say
};
void addSpeechOptions(CLI::App& verb, SpeechOptions& options);
SpeechSettings speechSettings(const SpeechOptions& options);

} // namespace rk4::cli
