#include "gui/link/transfer_buttons.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

namespace rk4::gui {

QPushButton* helpedButton(QWidget* parent, const QString& text, const char* name, const QString& help)
{
    auto* button = new QPushButton(text, parent);
    button->setObjectName(name);
    button->setWhatsThis(help);
    button->setToolTip(help);
    button->setMinimumHeight(32);
    return button;
}

StatusLines addStatusLines(QWidget* parent, QBoxLayout* layout, const QString& statusHelp)
{
    StatusLines labels{new QLabel(parent), new QLabel(parent)};
    labels.status->setObjectName("statusLabel");
    labels.status->setWhatsThis(statusHelp);
    labels.version->setObjectName("versionLabel");
    auto* lines = new QGridLayout;
    lines->addWidget(new QLabel("Status:", parent), 0, 0);
    lines->addWidget(labels.status, 0, 1);
    lines->addWidget(new QLabel("Unit:", parent), 1, 0);
    lines->addWidget(labels.version, 1, 1);
    lines->setColumnStretch(1, 1);
    layout->addLayout(lines);
    return labels;
}

TransferButtons addTransferButtons(QWidget* parent, QGridLayout* grid)
{
    TransferButtons buttons{
        helpedButton(parent, "Write to Rk4", "sendDataButton", "Send the configuration in the programmer to the unit."),
        helpedButton(parent, "Read from Rk4", "receiveDataButton",
                     "Read the unit's configuration into the programmer."),
        helpedButton(parent, "Write Voices...", "sendVoiceButton", "Send a voice message file (*.msg) to the unit."),
        helpedButton(parent, "Read Voices...", "receiveVoiceButton",
                     "Read the unit's voice messages into a file (*.msg)."),
        helpedButton(parent, "Write Vocabulary...", "writeVocabButton",
                     "Send a vocabulary file (*.bin) to the unit. This erases its stored voices."),
    };
    grid->addWidget(buttons.sendData, 0, 0);
    grid->addWidget(buttons.receiveData, 0, 1);
    grid->addWidget(buttons.sendVoice, 1, 0);
    grid->addWidget(buttons.receiveVoice, 1, 1);
    grid->addWidget(buttons.writeVocab, 2, 0);
    return buttons;
}

bool confirmVocabularyWrite(Prompter& prompter)
{
    if (prompter.ask(Message{"WARNING",
                             " Writing the vocabulary will destroy all of the stored voices in the Rk4!    Do you "
                             "want to proceed?",
                             Icon::Warning, Buttons::YesNo}) != Answer::Yes)
        return false;
    return prompter.ask(Message{"WARNING", "          ARE YOU SURE?          ", Icon::Warning, Buttons::YesNo}) ==
           Answer::Yes;
}

} // namespace rk4::gui
