#pragma once
// A Prompter for tests: records every message, answers questions from a script
// and fails the test on a question it was not told to expect.

#include "core/common/prompter.h"

#include <deque>
#include <string>
#include <vector>

namespace rk4::test {

struct ExpectedQuestion {
    std::string text; // the exact text, or a prefix when `prefix` is set
    Answer answer = Answer::Yes;
    bool prefix = false;
};

class ScriptedPrompter : public Prompter {
  public:
    // Expect a question with exactly this text, answered with `answer`.
    ScriptedPrompter& expect(std::string text, Answer answer);
    // Expect a question whose text starts with `prefix`.
    ScriptedPrompter& expectPrefix(std::string prefix, Answer answer);
    // The next file dialog returns this path (or nothing, for a cancel).
    ScriptedPrompter& fileChoice(std::optional<std::string> path);

    Answer ask(const Message& message) override;
    std::optional<std::string> chooseFile(const FileRequest& request) override;

    const std::vector<Message>& messages() const { return recorded; }
    std::vector<std::string> texts() const;
    bool saw(const std::string& text) const;
    const std::vector<FileRequest>& fileRequests() const { return requests; }
    // True when every scripted answer was used.
    bool finished() const { return script.empty() && files.empty(); }
    void clear() { recorded.clear(); }

  private:
    std::deque<ExpectedQuestion> script;
    std::deque<std::optional<std::string>> files;
    std::vector<Message> recorded;
    std::vector<FileRequest> requests;
};

} // namespace rk4::test
