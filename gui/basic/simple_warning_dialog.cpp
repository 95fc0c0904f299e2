#include "gui/basic/simple_warning_dialog.h"

#include "gui/basic/rules_dialog.h"

#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace rk4::gui {

namespace {

// The two introduction lines head the dialog; the problems follow in the list.
constexpr int kIntroLines = 2;

QPushButton* addButton(QBoxLayout* layout, QWidget* parent, const QString& text, const char* name, const QString& help)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setAutoDefault(false);
    button->setWhatsThis(help);
    layout->addWidget(button);
    return button;
}

} // namespace

SimpleWarningDialog::SimpleWarningDialog(SimpleWarning& warning, Prompter& prompter, QWidget* parent)
    : QDialog(parent), warning(warning), prompter(prompter)
{
    setObjectName("simpleWarningDialog");
    setWindowTitle("Basic Mode");
    resize(660, 380);
    auto* layout = new QVBoxLayout(this);

    introLabel = new QLabel(this);
    introLabel->setObjectName("introLabel");
    introLabel->setWordWrap(true);
    introLabel->setWhatsThis("Why this list is shown: the configuration does not have the fixed shape Basic mode "
                             "needs.");
    layout->addWidget(introLabel);

    problemList = new QListWidget(this);
    problemList->setObjectName("problemList");
    problemList->setWordWrap(true);
    problemList->setWhatsThis("Each setting that does not fit Basic mode. Select one to see what converting does "
                              "to it; double-click it to see the explanation in a window of its own.");
    layout->addWidget(problemList, 2);

    auto* box = new QGroupBox("Explanation", this);
    auto* boxLayout = new QVBoxLayout(box);
    explanationLabel = new QLabel(box);
    explanationLabel->setObjectName("explanationLabel");
    explanationLabel->setWordWrap(true);
    explanationLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    explanationLabel->setMinimumHeight(explanationLabel->fontMetrics().lineSpacing() * 6);
    explanationLabel->setWhatsThis("What Basic mode requires of the selected setting and what converting does.");
    boxLayout->addWidget(explanationLabel);
    layout->addWidget(box, 1);

    auto* buttons = new QHBoxLayout;
    QPushButton* detail =
        addButton(buttons, this, "&Details...", "detailButton", "Show the explanation of the selected setting.");
    QPushButton* rules = addButton(buttons, this, "&Basic Rules...", "basicRulesButton",
                                   "Summarise what Basic mode allows and what it leaves out.");
    buttons->addStretch();
    QPushButton* all = addButton(buttons, this, "&Convert All", "convertAllButton",
                                 "Replace the configuration with the Basic default configuration. All directories "
                                 "are cleared.");
    QPushButton* keep = addButton(buttons, this, "&Directories stay Unchanged", "keepDirectoriesButton",
                                  "Replace the configuration with the Basic default configuration but keep the six "
                                  "directories as they are.");
    QPushButton* stay = addButton(buttons, this, "Stay in &Advanced", "stayAdvancedButton",
                                  "Keep the configuration as it is and work in Advanced mode.");
    stay->setDefault(true);
    layout->addLayout(buttons);

    connect(problemList, &QListWidget::currentRowChanged, this, &SimpleWarningDialog::UpdateSelection);
    connect(problemList, &QListWidget::itemActivated, this, &SimpleWarningDialog::ShowDetail);
    connect(detail, &QPushButton::clicked, this, &SimpleWarningDialog::ShowDetail);
    connect(rules, &QPushButton::clicked, this, &SimpleWarningDialog::ShowBasic);
    connect(all, &QPushButton::clicked, this, &SimpleWarningDialog::Change2Simple);
    connect(keep, &QPushButton::clicked, this, &SimpleWarningDialog::Change2Simple2);
    connect(stay, &QPushButton::clicked, this, &SimpleWarningDialog::LeaveComplex);
    connect(this, &QDialog::rejected, this, [this] { chosen = SimpleChoice::StayAdvanced; });

    SetupWindow();
}

void SimpleWarningDialog::SetupWindow()
{
    const auto& items = warning.items();
    QStringList intro;
    for (int i = 0; i < kIntroLines && i < static_cast<int>(items.size()); ++i)
        intro << QString::fromStdString(items[static_cast<std::size_t>(i)].text);
    introLabel->setText(intro.join("\n"));
    for (std::size_t i = kIntroLines; i < items.size(); ++i)
        problemList->addItem(QString::fromStdString(items[i].text));
    problemList->setCurrentRow(0);
}

void SimpleWarningDialog::UpdateSelection()
{
    const int row = problemList->currentRow();
    warning.UpdateSelection(row < 0 ? -1 : row + kIntroLines);
    explanationLabel->setText(QString::fromStdString(warning.explanation()));
}

void SimpleWarningDialog::ShowDetail() { warning.ShowDetail(prompter); }

void SimpleWarningDialog::ShowBasic()
{
    SimpleRulesDialog rules(this);
    rules.exec();
}

void SimpleWarningDialog::finish(SimpleChoice choice)
{
    chosen = choice;
    accept();
}

void SimpleWarningDialog::Change2Simple() { finish(SimpleChoice::ConvertAll); }
void SimpleWarningDialog::Change2Simple2() { finish(SimpleChoice::KeepDirectories); }
void SimpleWarningDialog::LeaveComplex() { finish(SimpleChoice::StayAdvanced); }

} // namespace rk4::gui
