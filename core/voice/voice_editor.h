#pragma once
// The voice editor's working state and commands: the 39 phrase slots, the
// loaded message file they draw on, rebuilding the message file, single
// phrases in and out, the database's names beside the slots, and the
// editor's configuration file.

#include "core/common/prompter.h"
#include "core/database/database.h"
#include "core/voice/message_file.h"
#include "core/voice/voice_configuration.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace rk4 {

inline constexpr char kMessageNotSelected[] = " Message location not selected. ";
inline constexpr char kCannotOpenIndividualVoiceFile[] = " CANNOT OPEN INDIVIDUAL VOICE FILE ";
inline constexpr char kCannotOpenMessageForReading[] = " CANNOT OPEN MESSAGE FILE FOR READING";
inline constexpr char kCannotOpenPhraseForWriting[] = " CANNOT OPEN INDIVIDUAL PHRASE FILE FOR WRITING";
inline constexpr char kSavingOntoLoaded[] =
    " The message file to be saved cannot have the same name and location as the loaded message file.";
inline constexpr char kCannotOpenMessageFile[] = " CANNOT OPEN MESSAGE FILE ";
inline constexpr char kCannotOpenTemporaryMessageFile[] = " CANNOT OPEN TEMPORARY MESSAGE FILE ";
inline constexpr char kCannotOpenPrefix[] = " CANNOT OPEN ";
inline constexpr char kCannotOpenConfigurationFile[] = " CANNOT OPEN CONFIGURATION FILE ";
inline constexpr char kReplaceChangesQuestion[] =
    "Loading this configuration file will replace all changes made so far.  Proceed?";
inline constexpr char kSaveMessageFirst[] = " Message file must be saved before configuration is saved. ";
inline constexpr char kNotLoaded[] = "* not loaded *";
inline constexpr char kNotSaved[] = "* not saved *";
inline constexpr char kVoxFileFilter[] = "Individual Voice files (*.vox)";
inline constexpr char kMessageFileFilter[] = "Sentrix Rk4 message files (*.msg)";
inline constexpr char kConfigurationFilter[] = "Voice Editor Configuration files (*.vcf)";
// With names in use the name takes the 17 characters after the mark.
inline constexpr std::size_t kNameWidth = 17;

struct VoiceSlot {
    bool hasPhrase = false; // the "+" mark
    std::string name;       // the database's name, while names are in use
    // A newly chosen phrase file, or for a phrase made in memory what it
    // says; empty for the loaded message file's own phrase.
    std::string source;
    std::optional<std::vector<std::uint8_t>> phrase; // made in memory, not yet in any file

    bool newPhrase() const { return hasPhrase && (phrase || !source.empty()); }
};

class VoiceEditor {
  public:
    explicit VoiceEditor(std::filesystem::path workingDirectory = std::filesystem::current_path());

    std::array<VoiceSlot, kSlotCount> slotTable;
    PhraseLengths lengths{}; // of the loaded message file
    std::string loadedFile;  // empty while none is loaded
    std::string savedFile;   // the last message file saved
    bool messageSaved = false;
    bool namesInUse = false;
    bool changed = false; // since the configuration was last read or written
    std::optional<int> selected;

    std::string loadedLine() const; // "Loaded: ..." with the file or "* not loaded *"
    std::string savedLine() const;  // " Saved: ..." likewise
    // The slot's text as the configuration file keeps it: mark, name, source.
    std::string entryText(int slot) const;
    // What the slot's phrase is, for the list: the file, "message file, 3 blocks", or nothing.
    std::string sourceText(int slot) const;

    // Loads a message file's header and marks the slots from it; a slot that
    // holds a newly chosen phrase keeps it.
    bool SetupNewMsgFile(const std::string& path, Prompter& prompter);
    bool CmLoadMessageFile(Prompter& prompter);

    // Whether the loaded message file is what the slots show, so that it is
    // what the unit would receive: one is loaded, no slot holds a phrase
    // chosen since and none has been cleared.
    bool loadedFileComplete() const { return !loadedFile.empty() && slotsMatchLoaded; }

    // Saves a new message file from the slots and makes it the loaded one.
    bool CmWriteAll(Prompter& prompter);
    bool writeAllTo(const std::string& path, Prompter& prompter);

    bool CmReadIndividual(Prompter& prompter);
    bool readIndividual(int slot, const std::string& path, Prompter& prompter);
    bool CmWriteIndividual(Prompter& prompter);
    bool CmClearIndividual(Prompter& prompter);

    // Puts a phrase made in memory into a slot, shown as `label` until the
    // message file is saved, which then holds it.
    void putPhrase(int slot, std::vector<std::uint8_t> phrase, std::string label);
    // The slot's phrase bytes wherever they are; nothing, and `why`, if none.
    std::optional<std::vector<std::uint8_t>> phraseOf(int slot, std::string& why) const;

    void CmUseNames(const Database& db);
    void AddNames(const Database& db);
    void RemoveNames();

    bool CmReadConfiguration(Prompter& prompter);
    bool readConfiguration(const std::string& path, Prompter& prompter);
    bool CmWriteConfiguration(Prompter& prompter);
    bool writeConfiguration(const std::string& path, Prompter& prompter);

    const std::filesystem::path& workingDirectory() const { return directory; }

  private:
    bool noSelection(Prompter& prompter) const;
    void slotEdited();

    std::filesystem::path directory;
    bool slotsMatchLoaded = false;
};

// The database's name for a slot's owner, without its padding.
std::string databaseName(const Database& db, int slot);

} // namespace rk4
