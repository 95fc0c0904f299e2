#pragma once
// Lists what keeps an image from Basic mode, explains the selected item and
// lets the user convert, convert keeping the directories, or stay in Advanced.

#include "core/basic/simple_warning.h"

#include <QDialog>

class QLabel;
class QListWidget;

namespace rk4::gui {

class SimpleWarningDialog : public QDialog {
    Q_OBJECT

  public:
    SimpleWarningDialog(SimpleWarning& warning, Prompter& prompter, QWidget* parent);
    SimpleChoice choice() const { return chosen; }

  private slots:
    void UpdateSelection();
    void ShowDetail();
    void ShowBasic();
    void Change2Simple();
    void Change2Simple2();
    void LeaveComplex();

  private:
    void SetupWindow();
    void finish(SimpleChoice choice);

    SimpleWarning& warning;
    Prompter& prompter;
    SimpleChoice chosen = SimpleChoice::StayAdvanced;
    QLabel* introLabel;
    QListWidget* problemList;
    QLabel* explanationLabel;
};

} // namespace rk4::gui
