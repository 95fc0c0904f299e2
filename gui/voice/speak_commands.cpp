#include "gui/voice/speak_commands.h"

#include "core/voice/speech.h"
#include "core/voice/spoken_slots.h"
#include "gui/voice/vedit_dialog.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <optional>

namespace rk4::gui {

namespace {

constexpr char kSpeakTitle[] = "Speak";
constexpr char kSpeakAllTitle[] = "Speak all names";

// The words for a slot, proposed and edited; nothing when cancelled.
std::optional<std::string> askWords(QWidget* parent, const std::string& slotName, const std::string& proposed)
{
    QDialog ask(parent);
    ask.setObjectName("speakDialog");
    ask.setWindowTitle(kSpeakTitle);
    auto* layout = new QVBoxLayout(&ask);
    layout->addWidget(new QLabel(QString::fromStdString("What " + slotName + " says:"), &ask));
    auto* words = new QLineEdit(QString::fromStdString(proposed), &ask);
    words->setObjectName("speakWords");
    words->setMinimumWidth(320);
    words->selectAll();
    layout->addWidget(words);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &ask);
    buttons->button(QDialogButtonBox::Ok)->setText("Speak and &Play");
    layout->addWidget(buttons);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &ask, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &ask, &QDialog::reject);
    if (ask.exec() != QDialog::Accepted)
        return std::nullopt;
    return words->text().toStdString();
}

// Speaks `words` into the slot; false after telling the technician why not.
bool speakInto(VeditDialog& dialog, int slot, const std::string& words, const SpeechSettings& settings,
               Prompter& prompter, const char* title)
{
    VoxConversion phrase = speakPhrase(words, settings);
    if (!phrase.format.convertible()) {
        prompter.tell(title, "The phrase could not be spoken.", Icon::Warning, phrase.format.problem);
        return false;
    }
    dialog.putPhrase(slot, std::move(phrase.vox), spokenLabel(words));
    return true;
}

} // namespace

void addSpeakCommands(VeditDialog& dialog, Workspace& workspace, Prompter& prompter)
{
    auto* speak = new QPushButton("Spea&k...", &dialog);
    speak->setObjectName("speakButton");
    speak->setToolTip("Make the selected slot's phrase from text, its name to start with, and play it");
    auto* speakAll = new QPushButton(kSpeakAllTitle, &dialog);
    speakAll->setObjectName("speakAllButton");
    speakAll->setToolTip("Speak the name of every point, group and the site whose slot has no phrase yet");
    dialog.addSlotCommand(speak);
    dialog.addSlotCommand(speakAll);

    const auto settings = [&workspace] {
        return SpeechSettings::load(speechSettingsPath(workspace.workingDirectory()));
    };

    QObject::connect(speak, &QPushButton::clicked, &dialog, [&dialog, &workspace, &prompter, settings] {
        const int slot = dialog.selectedSlot();
        if (slot < 0) {
            prompter.tell(kSpeakTitle, "Select the slot to speak first.", Icon::Information);
            return;
        }
        const auto words = askWords(&dialog, slotTitle(slot), proposedWords(workspace.image, slot));
        if (!words || !speakInto(dialog, slot, *words, settings(), prompter, kSpeakTitle))
            return;
        dialog.selectSlot(slot);
        dialog.CmPlay();
    });

    QObject::connect(speakAll, &QPushButton::clicked, &dialog, [&dialog, &workspace, &prompter, settings] {
        const std::vector<int> named = unspokenNamedSlots(dialog.editor(), workspace.image);
        if (named.empty()) {
            prompter.tell(kSpeakAllTitle, "Every slot whose record has a name already has a phrase.",
                          Icon::Information);
            return;
        }
        QApplication::setOverrideCursor(Qt::WaitCursor);
        const SpeechSettings speech = settings();
        int spoken = 0;
        for (const int slot : named) {
            if (!speakInto(dialog, slot, proposedWords(workspace.image, slot), speech, prompter, kSpeakAllTitle))
                break;
            ++spoken;
        }
        QApplication::restoreOverrideCursor();
        prompter.tell(kSpeakAllTitle,
                      std::to_string(spoken) + (spoken == 1 ? " phrase" : " phrases") +
                          " spoken. Save the message file to keep them.",
                      Icon::Information);
    });
}

} // namespace rk4::gui
