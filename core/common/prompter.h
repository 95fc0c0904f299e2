#pragma once
// Every message box, question and file choice of the program goes through a
// Prompter, so each refusal and question can be checked without a window.

#include <optional>
#include <string>
#include <utility>

namespace rk4 {

enum class Icon { None, Information, Warning, Error, Question };
// SaveDiscardCancel answers Yes for save, No for discard, Cancel for go back.
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel, SaveDiscardCancel };
enum class Answer { Ok, Cancel, Yes, No };

struct Message {
    Message() = default;
    Message(std::string title, std::string text, Icon icon = Icon::None, Buttons buttons = Buttons::Ok,
            std::string detail = {})
        : title(std::move(title)), text(std::move(text)), icon(icon), buttons(buttons), detail(std::move(detail))
    {}

    std::string title;
    std::string text;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    std::string detail; // a second paragraph: the cause behind the message
};

enum class FileMode { Open, Save };

struct FileRequest {
    FileMode mode = FileMode::Open;
    std::string title;
    std::string filter;           // e.g. "Data files (*.dat)"
    std::string defaultExtension; // without the dot
    std::string startPath;
};

class Prompter {
  public:
    virtual ~Prompter() = default;
    virtual Answer ask(const Message& message) = 0;
    // An empty result means the user cancelled.
    virtual std::optional<std::string> chooseFile(const FileRequest& request) = 0;

    void tell(std::string title, std::string text, Icon icon, std::string detail = {})
    {
        ask(Message{std::move(title), std::move(text), icon, Buttons::Ok, std::move(detail)});
    }
    // `detail` carries the cause behind the system's message ("disk full").
    void fileError(std::string text, std::string detail = {})
    {
        tell("File Error", std::move(text), Icon::Error, std::move(detail));
    }
};

} // namespace rk4
