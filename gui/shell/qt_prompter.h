#pragma once
// The Prompter as Qt message boxes and file dialogs.

#include "core/common/prompter.h"

class QWidget;

namespace rk4::gui {

class QtPrompter : public Prompter {
  public:
    explicit QtPrompter(QWidget* parent) : parent(parent) {}
    Answer ask(const Message& message) override;
    std::optional<std::string> chooseFile(const FileRequest& request) override;

  private:
    QWidget* parent;
};

} // namespace rk4::gui
