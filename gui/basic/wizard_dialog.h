#pragma once
// WizardDialog: the Basic wizard's one window. The list at the left shows the
// stages and where the user is; the right side shows the current question and
// the controls its answer needs: a text field, a set of choices, or Yes and No.

#include "core/basic/wizard.h"

#include <QDialog>

class QBoxLayout;
class QButtonGroup;
class QLabel;
class QLineEdit;
class QListWidget;
class QPushButton;
class QStackedWidget;
class QWidget;

namespace rk4::gui {

class WizardDialog : public QDialog {
    Q_OBJECT

  public:
    // Runs on `image`, a freshly made Basic default database.
    WizardDialog(Database& image, Prompter& prompter, QWidget* parent = nullptr);

    BasicWizard& core() { return wizard; }

  public slots:
    void Forward();
    void Backward();
    void Yes();
    void No();
    void reject() override; // CanClose before the end

  private:
    void UpdateControls();
    void showChoices(const WizardPrompt& prompt);

    BasicWizard wizard;
    Prompter& prompter;

    QListWidget* stageList = nullptr;
    QLabel* stepLabel = nullptr;
    QLabel* titleLabel = nullptr;
    QLabel* statusLabel = nullptr;
    QLabel* questionLabel = nullptr;
    QStackedWidget* answerStack = nullptr;
    QLineEdit* entryEdit = nullptr;
    QWidget* choicePage = nullptr;
    QBoxLayout* choiceLayout = nullptr;
    QButtonGroup* choiceGroup = nullptr;
    QWidget* yesNoPage = nullptr;
    QWidget* emptyPage = nullptr;
    QPushButton* yesButton = nullptr;
    QPushButton* noButton = nullptr;
    QPushButton* backButton = nullptr;
    QPushButton* forwardButton = nullptr;
    QPushButton* exitButton = nullptr;
};

} // namespace rk4::gui
