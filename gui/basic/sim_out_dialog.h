#pragma once
// SimoutDialog: the four user outputs and the roles of the outputs the unit
// drives itself.

#include "core/basic/sim_outputs.h"
#include "gui/basic/sim_dialog.h"

#include <array>

class QComboBox;
class QLineEdit;
class QRadioButton;

namespace rk4::gui {

class SimoutDialog : public SimDialog {
    Q_OBJECT

  public:
    SimoutDialog(Workspace& space, Prompter& prompter, QWidget* parent = nullptr);

    SimoutEditor& core() { return editor; }

  public slots:
    void TypeChanging(int row, int index);
    void ResolutionChanging(int row, bool minutes);

  protected:
    void focusRefused() override;

  private:
    struct Row {
        QComboBox* type = nullptr;
        QLineEdit* onCode = nullptr;
        QLineEdit* offCode = nullptr;
        QLineEdit* timer = nullptr;
        QRadioButton* seconds = nullptr;
        QRadioButton* minutes = nullptr;
    };

    void showRow(int row);

    SimoutEditor editor;
    std::array<Row, kUserOutputs> rows;
};

} // namespace rk4::gui
