#pragma once
// The five transfer buttons the programming dialog and the modem dialog share,
// laid out in a grid, and the two questions before a vocabulary write.

#include "core/common/prompter.h"

#include <QList>

class QBoxLayout;
class QGridLayout;
class QLabel;
class QPushButton;
class QString;
class QWidget;

namespace rk4::gui {

struct TransferButtons {
    QPushButton* sendData;
    QPushButton* receiveData;
    QPushButton* sendVoice;
    QPushButton* receiveVoice;
    QPushButton* writeVocab;

    QList<QPushButton*> all() const { return {sendData, receiveData, sendVoice, receiveVoice, writeVocab}; }
};

// A button with its object name and the help for What's This and its tip.
QPushButton* helpedButton(QWidget* parent, const QString& text, const char* name, const QString& help);

TransferButtons addTransferButtons(QWidget* parent, QGridLayout* grid);

// The "Status:" and "Unit:" lines both dialogs show under their buttons.
struct StatusLines {
    QLabel* status;
    QLabel* version;
};
StatusLines addStatusLines(QWidget* parent, QBoxLayout* layout, const QString& statusHelp);

// " Writing the vocabulary will destroy ..." and "ARE YOU SURE?": true on two Yes.
bool confirmVocabularyWrite(Prompter& prompter);

} // namespace rk4::gui
