#pragma once
// DirDialog: the line editor. Twelve rows of a command label (a button that
// selects the row) and a parameter field, the command buttons, OK and Cancel;
// every rule lives in the LineEditor it binds to.

#include "core/directory/line_editor.h"

#include <QDialog>

#include <array>

class QButtonGroup;
class QLineEdit;
class QPushButton;

namespace rk4::gui {

class DirDialog : public QDialog {
    Q_OBJECT

  public:
    DirDialog(LineEditor& editor, Prompter& prompter, QWidget* parent = nullptr);

  public slots:
    void accept() override; // OK: CanClose
    void reject() override; // Cancel, Escape or the frame's close: asks to keep changes

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void press(DirCommand command);
    void readControls();
    void RefreshSelect();
    void UpdateSelect(int slot);
    void focusRow(int slot);
    void showRefusal(const LineCheck& check);

    LineEditor& core;
    Prompter& prompter;
    std::array<QPushButton*, kCommandsPerLine> selectButtons{};
    std::array<QLineEdit*, kCommandsPerLine> fields{};
    QButtonGroup* rows = nullptr;
};

} // namespace rk4::gui
