#pragma once
// The Qt side every Basic editor shares: OK runs the core's close checks and
// closes only when they pass; Cancel, Escape and the close box leave through
// the save-or-discard prompt when something changed. Shift+F1 starts What's This.

#include "core/basic/sim_dialog.h"

#include <QDialog>

class QBoxLayout;
class QComboBox;
class QLineEdit;

namespace rk4::gui {

class SimDialog : public QDialog {
    Q_OBJECT

  public:
    SimDialog(SimDialogEditor& editor, Prompter& prompter, QWidget* parent);

  public slots:
    void accept() override; // CanClose
    void reject() override; // CanLeave

  protected:
    // Gives the focus to the field a refusal names, its text selected.
    virtual void focusRefused() = 0;
    // OK and Cancel at the foot of `layout`.
    void addButtons(QBoxLayout* layout);

    // A text field bound to `target`: every edit goes into the core at once.
    QLineEdit* addEdit(const QString& name, std::string& target, int maxLength, const QString& help);
    QComboBox* addCombo(const QString& name, const std::vector<std::string>& choices, int current,
                        const QString& help);
    static void focusField(QWidget* field);

    Prompter& prompter;

  private:
    SimDialogEditor& core;
};

QString qtext(const std::string& text);

} // namespace rk4::gui
