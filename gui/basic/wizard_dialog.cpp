#include "gui/basic/wizard_dialog.h"

#include "gui/basic/sim_dialog.h"

#include <QButtonGroup>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QStackedWidget>
#include <QVBoxLayout>
#include <QWhatsThis>

#include <algorithm>

namespace rk4::gui {

namespace {

// Choices this short sit in one row ("None", "1" .. "8"); longer ones are
// listed one under the other.
constexpr int kRowChoiceLength = 4;

QPushButton* makeButton(const QString& text, const QString& name, const QString& help, QWidget* parent)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setWhatsThis(help);
    button->setAutoDefault(false);
    return button;
}

} // namespace

WizardDialog::WizardDialog(Database& image, Prompter& prompter, QWidget* parent)
    : QDialog(parent), wizard(image), prompter(prompter)
{
    setObjectName("wizardDialog");
    setWindowTitle("Basic Wizard");
    auto* help = new QShortcut(QKeySequence(Qt::SHIFT | Qt::Key_F1), this);
    connect(help, &QShortcut::activated, this, [] { QWhatsThis::enterWhatsThisMode(); });

    stageList = new QListWidget(this);
    stageList->setObjectName("stageList");
    stageList->setSelectionMode(QAbstractItemView::NoSelection);
    stageList->setFocusPolicy(Qt::NoFocus);
    stageList->setSpacing(2);
    QPalette side = stageList->palette();
    side.setColor(QPalette::Base, side.color(QPalette::Window).darker(106));
    stageList->setPalette(side);
    stageList->setWhatsThis("The parts of the configuration the wizard asks about, in order. The part you are "
                            "answering now is in bold; the parts above it are done.");
    for (const char* name : wizardStageNames())
        stageList->addItem(QString(name));
    stageList->setFixedWidth(stageList->sizeHintForColumn(0) + 2 * stageList->frameWidth() + 24);

    stepLabel = new QLabel(this);
    stepLabel->setObjectName("stepLabel");
    titleLabel = new QLabel(this);
    titleLabel->setObjectName("titleLabel");
    QFont titleFont = titleLabel->font();
    titleFont.setBold(true);
    titleFont.setPointSizeF(titleFont.pointSizeF() * 1.3);
    titleLabel->setFont(titleFont);
    statusLabel = new QLabel(this);
    statusLabel->setObjectName("statusLabel");
    statusLabel->setWordWrap(true);
    questionLabel = new QLabel(this);
    questionLabel->setObjectName("questionLabel");
    questionLabel->setWordWrap(true);
    QFont questionFont = questionLabel->font();
    questionFont.setBold(true);
    questionLabel->setFont(questionFont);

    answerStack = new QStackedWidget(this);
    entryEdit = new QLineEdit(this);
    entryEdit->setObjectName("entryEdit");
    entryEdit->setWhatsThis("Type the answer to the question, then press Forward (or Enter).");
    connect(entryEdit, &QLineEdit::textChanged, this,
            [this](const QString& text) { wizard.setEntry(text.toStdString()); });
    auto* entryPage = new QWidget(this);
    auto* entryLayout = new QVBoxLayout(entryPage);
    entryLayout->setContentsMargins(0, 0, 0, 0);
    entryLayout->addWidget(entryEdit);
    entryLayout->addStretch();

    // Every page keeps its controls right under the question, whatever the
    // height of the tallest page.
    choicePage = new QWidget(this);
    auto* choiceOuter = new QVBoxLayout(choicePage);
    choiceOuter->setContentsMargins(0, 0, 0, 0);
    choiceLayout = new QBoxLayout(QBoxLayout::LeftToRight);
    choiceOuter->addLayout(choiceLayout);
    choiceOuter->addStretch();
    choiceGroup = new QButtonGroup(this);
    connect(choiceGroup, &QButtonGroup::idClicked, this, [this](int id) { wizard.setChoice(id); });

    yesNoPage = new QWidget(this);
    auto* yesNoOuter = new QVBoxLayout(yesNoPage);
    yesNoOuter->setContentsMargins(0, 0, 0, 0);
    auto* yesNoLayout = new QHBoxLayout;
    yesNoOuter->addLayout(yesNoLayout);
    yesNoOuter->addStretch();
    yesButton = makeButton("&Yes", "yesButton", "Answer Yes to the question and go on.", yesNoPage);
    noButton = makeButton("&No", "noButton", "Answer No to the question and go on.", yesNoPage);
    connect(yesButton, &QPushButton::clicked, this, &WizardDialog::Yes);
    connect(noButton, &QPushButton::clicked, this, &WizardDialog::No);
    yesNoLayout->addWidget(yesButton);
    yesNoLayout->addWidget(noButton);
    yesNoLayout->addStretch();

    emptyPage = new QWidget(this);
    for (QWidget* page : {entryPage, choicePage, yesNoPage, emptyPage})
        answerStack->addWidget(page);

    backButton = makeButton("< &Back", "backButton", "Go back to the question before; nothing is checked.", this);
    forwardButton =
        makeButton("&Forward >", "forwardButton", "Check the answer, keep it and go on to the next question.", this);
    exitButton = makeButton("E&xit Wizard", "exitButton",
                            "Leave the wizard now. The configuration goes back to the default Basic database.", this);
    connect(backButton, &QPushButton::clicked, this, &WizardDialog::Backward);
    connect(forwardButton, &QPushButton::clicked, this, &WizardDialog::Forward);
    connect(exitButton, &QPushButton::clicked, this, &WizardDialog::reject);

    auto* questionBox = new QVBoxLayout;
    questionBox->addWidget(stepLabel);
    questionBox->addWidget(titleLabel);
    auto* line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Sunken);
    questionBox->addWidget(line);
    questionBox->addSpacing(6);
    questionBox->addWidget(statusLabel);
    questionBox->addWidget(questionLabel);
    questionBox->addSpacing(6);
    questionBox->addWidget(answerStack);
    questionBox->addStretch();

    auto* top = new QHBoxLayout;
    top->addWidget(stageList);
    top->addLayout(questionBox, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(exitButton);
    buttons->addStretch();
    buttons->addWidget(backButton);
    buttons->addWidget(forwardButton);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top, 1);
    layout->addLayout(buttons);

    setMinimumSize(620, 380);
    UpdateControls();
}

void WizardDialog::Forward()
{
    if (wizard.finished()) {
        accept();
        return;
    }
    const WizardStep before = wizard.step();
    const bool moved = wizard.Forward(prompter);
    UpdateControls();
    // A refused answer stays in the field, selected, ready to be typed over.
    if (!moved && wizard.step() == before && answerStack->currentWidget() != choicePage) {
        entryEdit->setFocus();
        entryEdit->selectAll();
    }
}

void WizardDialog::Backward()
{
    wizard.Backward();
    UpdateControls();
}

void WizardDialog::Yes()
{
    wizard.Yes();
    UpdateControls();
}

void WizardDialog::No()
{
    wizard.No();
    UpdateControls();
}

void WizardDialog::reject()
{
    if (wizard.CanClose(prompter))
        QDialog::reject();
}

// Shows the controls the current question needs and where in the sequence it is.
void WizardDialog::UpdateControls()
{
    const WizardPrompt prompt = wizard.prompt();

    for (int row = 0; row < stageList->count(); ++row) {
        QListWidgetItem* item = stageList->item(row);
        const int stage = row + 1;
        QFont font = stageList->font();
        font.setBold(stage == prompt.stage);
        item->setFont(font);
        item->setForeground(stage > prompt.stage ? palette().color(QPalette::Disabled, QPalette::Text)
                                                 : palette().color(QPalette::Active, QPalette::Text));
    }
    stageList->scrollToItem(stageList->item(prompt.stage - 1));
    stepLabel->setText(QString("Step %1 of %2").arg(prompt.stage).arg(kWizardStages));
    titleLabel->setText(qtext(prompt.title));
    statusLabel->setText(qtext(prompt.status));
    statusLabel->setVisible(!prompt.status.empty());
    questionLabel->setText(qtext(prompt.question));

    const bool done = wizard.finished();
    switch (prompt.answer) {
    case WizardAnswer::Text: {
        // The field is filled from the question; the last answer's text must
        // not flow back into it while the length changes.
        const QSignalBlocker quiet(entryEdit);
        answerStack->setCurrentWidget(answerStack->widget(0));
        entryEdit->setMaxLength(static_cast<int>(prompt.maxLength));
        entryEdit->setText(qtext(prompt.entry));
        entryEdit->selectAll();
        entryEdit->setFocus();
        break;
    }
    case WizardAnswer::Choice:
        showChoices(prompt);
        answerStack->setCurrentWidget(choicePage);
        break;
    case WizardAnswer::YesNo:
        answerStack->setCurrentWidget(yesNoPage);
        yesButton->setFocus();
        break;
    case WizardAnswer::None: answerStack->setCurrentWidget(emptyPage); break;
    }

    backButton->setEnabled(wizard.canGoBack());
    const bool forward = prompt.answer == WizardAnswer::Text || prompt.answer == WizardAnswer::Choice || done;
    forwardButton->setEnabled(forward);
    forwardButton->setDefault(forward);
    forwardButton->setText(done ? "&Finish" : "&Forward >");
    forwardButton->setWhatsThis(done ? "Close the wizard and go back to the main window."
                                     : "Check the answer, keep it and go on to the next question.");
    exitButton->setVisible(!done);
    if (done)
        forwardButton->setFocus();
}

void WizardDialog::showChoices(const WizardPrompt& prompt)
{
    for (QAbstractButton* old : choiceGroup->buttons()) {
        choiceGroup->removeButton(old);
        delete old;
    }
    QBoxLayout* layout = choiceLayout;
    while (layout->count() > 0)
        delete layout->takeAt(0);

    const bool row = std::all_of(prompt.choices.begin(), prompt.choices.end(),
                                 [](const std::string& text) { return text.size() <= kRowChoiceLength; });
    layout->setDirection(row ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    for (int i = 0; i < static_cast<int>(prompt.choices.size()); ++i) {
        auto* button = new QRadioButton(qtext(prompt.choices[i]), choicePage);
        button->setObjectName(QString("choice%1").arg(i));
        button->setWhatsThis("Choose one answer, then press Forward (or Enter).");
        choiceGroup->addButton(button, i);
        layout->addWidget(button);
        if (i == prompt.choice) {
            button->setChecked(true);
            button->setFocus();
        }
    }
    layout->addStretch();
}

} // namespace rk4::gui
