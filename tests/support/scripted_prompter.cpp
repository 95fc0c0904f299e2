#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

namespace rk4::test {

ScriptedPrompter& ScriptedPrompter::expect(std::string text, Answer answer)
{
    script.push_back({std::move(text), answer, false});
    return *this;
}

ScriptedPrompter& ScriptedPrompter::expectPrefix(std::string prefix, Answer answer)
{
    script.push_back({std::move(prefix), answer, true});
    return *this;
}

ScriptedPrompter& ScriptedPrompter::fileChoice(std::optional<std::string> path)
{
    files.push_back(std::move(path));
    return *this;
}

Answer ScriptedPrompter::ask(const Message& message)
{
    recorded.push_back(message);
    if (message.buttons == Buttons::Ok)
        return Answer::Ok;
    if (script.empty()) {
        ADD_FAILURE() << "unexpected question: [" << message.title << "] " << message.text;
        return Answer::Cancel;
    }
    ExpectedQuestion next = script.front();
    script.pop_front();
    const bool matches = next.prefix ? message.text.rfind(next.text, 0) == 0 : message.text == next.text;
    if (!matches) {
        ADD_FAILURE() << "question was [" << message.title << "] " << message.text << "\nexpected: " << next.text;
        return Answer::Cancel;
    }
    return next.answer;
}

std::optional<std::string> ScriptedPrompter::chooseFile(const FileRequest& request)
{
    requests.push_back(request);
    if (files.empty()) {
        ADD_FAILURE() << "unexpected file dialog: " << request.title;
        return std::nullopt;
    }
    auto next = files.front();
    files.pop_front();
    return next;
}

std::vector<std::string> ScriptedPrompter::texts() const
{
    std::vector<std::string> out;
    for (const auto& message : recorded)
        out.push_back(message.text);
    return out;
}

bool ScriptedPrompter::saw(const std::string& text) const
{
    for (const auto& message : recorded)
        if (message.text == text)
            return true;
    return false;
}

} // namespace rk4::test
