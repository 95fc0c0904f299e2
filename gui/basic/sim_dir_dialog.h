#pragma once
// SimDirDialog: the phone numbers, codes and cycle interval of Directories A
// and B; PhoneNumberDialog enters or changes one number.

#include "core/basic/sim_directories.h"
#include "gui/basic/sim_dialog.h"

#include <array>

class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;

namespace rk4::gui {

class PhoneNumberDialog : public SimDialog {
    Q_OBJECT

  public:
    PhoneNumberDialog(PhoneNumberEditor& editor, Prompter& prompter, QWidget* parent = nullptr);

  protected:
    void focusRefused() override;

  private:
    QLineEdit* numberEdit = nullptr;
};

class SimDirDialog : public SimDialog {
    Q_OBJECT

  public:
    SimDirDialog(Workspace& space, Prompter& prompter, QWidget* parent = nullptr);

    SimDirEditor& core() { return editor; }

  public slots:
    void InsertA() { insert(0); }
    void InsertB() { insert(1); }
    void DeleteA() { remove(0); }
    void DeleteB() { remove(1); }
    void EditingA() { edit(0); }
    void EditingB() { edit(1); }
    void AdvancedA() { advanced(0); }
    void AdvancedB() { advanced(1); }

  protected:
    void focusRefused() override;

  private:
    struct Controls {
        QListWidget* list = nullptr;
        QLabel* fill = nullptr;
        QLineEdit* ackCode = nullptr;
        QLineEdit* interrogateCode = nullptr;
        QLineEdit* cycle = nullptr;
        std::vector<QPushButton*> numberButtons; // Insert, Delete, Edit
        QLabel* advancedNote = nullptr;
    };

    QWidget* buildDirectory(int dir);
    void insert(int dir);
    void remove(int dir);
    void edit(int dir);
    void advanced(int dir);
    void UpdateList(int dir);
    SimDirEditor::NumberRunner numberDialog();

    Workspace& space;
    SimDirEditor editor;
    std::array<Controls, 2> controls;
};

} // namespace rk4::gui
