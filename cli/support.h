#pragma once
// What the verbs share: loading an image with the system's messages, a
// Prompter that prints, and argument helpers.

#include "cli/verbs.h"
#include "core/common/prompter.h"
#include "core/database/compare.h"
#include "core/database/database.h"
#include "core/database/file.h"

#include <optional>
#include <string>

namespace rk4::cli {

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

// Prints a failed file outcome: the system's message, then the file and the cause.
void printFileError(Context& context, const FileOutcome& outcome, const std::string& path);

// Positional arguments, with the flags named in `flags` removed and reported.
struct Parsed {
    std::vector<std::string> positional;
    std::vector<std::string> flags;
    std::vector<std::pair<std::string, std::string>> options; // --name VALUE
    bool has(const std::string& flag) const;
    std::optional<std::string> option(const std::string& name) const;
};
Parsed parseArguments(const Arguments& args, std::initializer_list<const char*> optionsWithValue = {});

// Prints the fields that differ between two configurations, or `sameText`
// when none does; returns 0 when equal, 1 when different.
struct ComparedSides {
    std::string first, second;           // "edited.dat", "the unit"
    std::string firstLabel, secondLabel; // "in the file", "in the unit"
};
int reportDifferences(const std::vector<FieldDifference>& differences, const ComparedSides& sides,
                      const std::string& sameText, Context& context);

int usageError(Context& context, const char* verb, const std::string& problem);

} // namespace rk4::cli
