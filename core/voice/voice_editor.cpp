#include "core/voice/voice_editor.h"

#include "core/common/safe_file.h"
#include "core/common/text.h"

#include <algorithm>
#include <cerrno>

namespace rk4 {

namespace fs = std::filesystem;

namespace {

std::string trimRight(std::string text)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\0'))
        text.pop_back();
    return text;
}

std::string absoluteText(const std::string& path)
{
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error);
    return error ? path : absolute.lexically_normal().string();
}

} // namespace

std::string databaseName(const Database& db, int slot)
{
    const SlotRef ref = slotRef(slot);
    switch (ref.kind) {
    case SlotKind::Point: return trimRight(nameText(db.alm[ref.index - 1].name));
    case SlotKind::Group: return trimRight(nameText(db.group[ref.index - 1].name));
    case SlotKind::Site: break;
    }
    return trimRight(nameText(db.gen.name));
}

VoiceEditor::VoiceEditor(fs::path workingDirectory) : directory(std::move(workingDirectory)) {}

std::string VoiceEditor::loadedLine() const { return "Loaded: " + (loadedFile.empty() ? kNotLoaded : loadedFile); }

std::string VoiceEditor::savedLine() const
{
    return " Saved: " + (messageSaved && !savedFile.empty() ? savedFile : std::string(kNotSaved));
}

std::string VoiceEditor::entryText(int slot) const
{
    const VoiceSlot& entry = slotTable[slot];
    std::string text = entry.hasPhrase ? "+" : "-";
    if (namesInUse)
        text += padRight(entry.name.substr(0, kNameWidth), kNameWidth);
    return text + entry.source;
}

std::string VoiceEditor::sourceText(int slot) const
{
    const VoiceSlot& entry = slotTable[slot];
    if (!entry.hasPhrase)
        return {};
    if (entry.newPhrase())
        return entry.source;
    if (loadedFile.empty())
        return "message file (not loaded)";
    const int blocks = lengths[slot];
    return "message file, " + std::to_string(blocks) + (blocks == 1 ? " block" : " blocks");
}

void VoiceEditor::slotEdited()
{
    messageSaved = false;
    changed = true;
    slotsMatchLoaded = false;
}

bool VoiceEditor::noSelection(Prompter& prompter) const
{
    if (selected && *selected >= 0 && *selected < kSlotCount)
        return false;
    prompter.tell("Error", kMessageNotSelected, Icon::Error);
    return true;
}

bool VoiceEditor::SetupNewMsgFile(const std::string& path, Prompter& prompter)
{
    std::string cause;
    const MessageHeader header = readMessageHeader(path, cause);
    if (!header.ok()) {
        prompter.fileError(kCannotOpenMessageFile, path + ": " + cause);
        return false;
    }
    lengths = header.lengths;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        VoiceSlot& entry = slotTable[slot];
        if (entry.newPhrase())
            continue;
        entry.hasPhrase = lengths[slot] != 0;
        entry.source.clear();
        entry.phrase.reset();
    }
    loadedFile = absoluteText(path);
    slotEdited();
    slotsMatchLoaded =
        std::none_of(slotTable.begin(), slotTable.end(), [](const VoiceSlot& slot) { return slot.newPhrase(); });
    return true;
}

bool VoiceEditor::CmLoadMessageFile(Prompter& prompter)
{
    const auto chosen =
        prompter.chooseFile({FileMode::Open, "Load Message File", kMessageFileFilter, "msg", loadedFile});
    return chosen && SetupNewMsgFile(*chosen, prompter);
}

bool VoiceEditor::CmWriteAll(Prompter& prompter)
{
    const std::string start = loadedFile.empty() ? (directory / kDefaultMessageFile).string() : loadedFile;
    const auto chosen = prompter.chooseFile({FileMode::Save, "Save Message File", kMessageFileFilter, "msg", start});
    return chosen && writeAllTo(*chosen, prompter);
}

bool VoiceEditor::writeAllTo(const std::string& path, Prompter& prompter)
{
    if (!loadedFile.empty() && wouldReplace(path, loadedFile)) {
        prompter.fileError(kSavingOntoLoaded);
        return false;
    }
    const fs::path temporary = directory / kMessageTemporaryFile;
    if (wouldReplace(path, temporary)) {
        prompter.fileError(kCannotOpenMessageFile, path + ": the editor's own temporary file");
        return false;
    }
    if (const SaveResult target = checkSaveTarget(path); !target) {
        prompter.fileError(kCannotOpenMessageFile, path + ": " + target.cause());
        return false;
    }

    // The loaded file is read through a copy, so the phrases come from the
    // file as it was when the save began.
    std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
    struct RemoveTemporary {
        explicit RemoveTemporary(fs::path path) : path(std::move(path)) {}
        RemoveTemporary(const RemoveTemporary&) = delete;
        RemoveTemporary& operator=(const RemoveTemporary&) = delete;
        fs::path path;
        ~RemoveTemporary()
        {
            std::error_code ignored;
            fs::remove(path, ignored);
        }
    };
    std::optional<RemoveTemporary> copy;
    if (!loadedFile.empty()) {
        std::error_code error;
        fs::copy_file(loadedFile, temporary, fs::copy_options::overwrite_existing, error);
        if (error) {
            prompter.fileError(kCannotOpenTemporaryMessageFile, loadedFile + ": " + error.message());
            return false;
        }
        copy.emplace(temporary);
    }
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const VoiceSlot& entry = slotTable[slot];
        if (!entry.hasPhrase)
            continue;
        if (entry.phrase) {
            phrases[slot] = *entry.phrase;
        } else if (!entry.source.empty()) {
            PhraseLoad load = readPhraseFile(entry.source);
            if (!load.ok()) {
                prompter.fileError(kCannotOpenPrefix + entry.source, load.problem);
                return false;
            }
            phrases[slot] = std::move(load.bytes);
        } else if (copy && lengths[slot] != 0) {
            std::string cause;
            phrases[slot] = readMessagePhrase(temporary, lengths, slot, cause);
            if (!phrases[slot]) {
                prompter.fileError(kCannotOpenTemporaryMessageFile, loadedFile + ": " + cause);
                return false;
            }
        }
    }

    const std::vector<std::uint8_t> file = buildMessageFile(phrases);
    if (const SaveResult saved = writeFileAtomically(path, file); !saved) {
        prompter.fileError(kCannotOpenMessageFile, path + ": " + saved.cause());
        return false;
    }
    lengths = parseMessageHeader(std::span<const std::uint8_t>(file).first(kMessageHeaderBytes));
    loadedFile = savedFile = absoluteText(path);
    messageSaved = true;
    slotsMatchLoaded = true;
    changed = true;
    // Phrases made in memory now live in the saved file.
    for (VoiceSlot& entry : slotTable)
        if (entry.phrase) {
            entry.phrase.reset();
            entry.source.clear();
        }
    return true;
}

bool VoiceEditor::CmReadIndividual(Prompter& prompter)
{
    if (noSelection(prompter))
        return false;
    const auto chosen = prompter.chooseFile({FileMode::Open, "Read Individual Phrase", kVoxFileFilter, "vox", {}});
    return chosen && readIndividual(*selected, *chosen, prompter);
}

bool VoiceEditor::readIndividual(int slot, const std::string& path, Prompter& prompter)
{
    const PhraseLoad load = readPhraseFile(path);
    if (!load.ok()) {
        prompter.fileError(kCannotOpenIndividualVoiceFile, load.problem);
        return false;
    }
    const std::string source = absoluteText(path);
    if (1 + kNameWidth + source.size() > kLongestEntryText) {
        prompter.fileError(kCannotOpenIndividualVoiceFile, source + ": the name is too long for a slot entry");
        return false;
    }
    VoiceSlot& entry = slotTable[slot];
    entry.hasPhrase = true;
    entry.source = source;
    entry.phrase.reset();
    slotEdited();
    return true;
}

bool VoiceEditor::CmWriteIndividual(Prompter& prompter)
{
    if (noSelection(prompter))
        return false;
    const int slot = *selected;
    const auto chosen = prompter.chooseFile({FileMode::Save, "Write Individual Phrase", kVoxFileFilter, "vox", {}});
    if (!chosen)
        return false;
    if (loadedFile.empty()) {
        prompter.fileError(kCannotOpenMessageForReading, "no message file is loaded");
        return false;
    }
    if (lengths[slot] == 0) {
        prompter.fileError(kCannotOpenMessageForReading, loadedFile + ": it has no phrase for " + slotTitle(slot));
        return false;
    }
    std::string cause;
    const auto phrase = readMessagePhrase(loadedFile, lengths, slot, cause);
    if (!phrase) {
        prompter.fileError(kCannotOpenMessageForReading, loadedFile + ": " + cause);
        return false;
    }
    if (wouldReplace(*chosen, loadedFile)) {
        prompter.fileError(kCannotOpenPhraseForWriting, *chosen + ": it is the loaded message file");
        return false;
    }
    if (const SaveResult saved = writeFileAtomically(*chosen, *phrase); !saved) {
        prompter.fileError(kCannotOpenPhraseForWriting, *chosen + ": " + saved.cause());
        return false;
    }
    return true;
}

bool VoiceEditor::CmClearIndividual(Prompter& prompter)
{
    if (noSelection(prompter))
        return false;
    VoiceSlot& entry = slotTable[*selected];
    entry.hasPhrase = false;
    entry.source.clear();
    entry.phrase.reset();
    slotEdited();
    return true;
}

void VoiceEditor::putPhrase(int slot, std::vector<std::uint8_t> phrase, std::string label)
{
    VoiceSlot& entry = slotTable[slot];
    entry.hasPhrase = true;
    entry.phrase = std::move(phrase);
    entry.source = std::move(label);
    slotEdited();
}

std::optional<std::vector<std::uint8_t>> VoiceEditor::phraseOf(int slot, std::string& why) const
{
    const VoiceSlot& entry = slotTable[slot];
    if (entry.hasPhrase && entry.phrase)
        return entry.phrase;
    if (entry.newPhrase()) {
        PhraseLoad load = readPhraseFile(entry.source);
        if (!load.ok()) {
            why = load.problem;
            return std::nullopt;
        }
        return std::move(load.bytes);
    }
    if (!entry.hasPhrase || loadedFile.empty() || lengths[slot] == 0) {
        why = slotTitle(slot) + " has no phrase" + (entry.hasPhrase ? " in a loaded message file" : "");
        return std::nullopt;
    }
    return readMessagePhrase(loadedFile, lengths, slot, why);
}

void VoiceEditor::CmUseNames(const Database& db)
{
    if (namesInUse)
        RemoveNames();
    else
        AddNames(db);
}

void VoiceEditor::AddNames(const Database& db)
{
    namesInUse = true;
    for (int slot = 0; slot < kSlotCount; ++slot)
        slotTable[slot].name = databaseName(db, slot);
    changed = true;
}

void VoiceEditor::RemoveNames()
{
    namesInUse = false;
    for (VoiceSlot& entry : slotTable)
        entry.name.clear();
    changed = true;
}

bool VoiceEditor::CmReadConfiguration(Prompter& prompter)
{
    if (changed && prompter.ask({"Warning", kReplaceChangesQuestion, Icon::Warning, Buttons::YesNo}) != Answer::Yes)
        return false;
    const auto chosen = prompter.chooseFile({FileMode::Open, "Load Configuration", kConfigurationFilter, "vcf", {}});
    return chosen && readConfiguration(*chosen, prompter);
}

bool VoiceEditor::readConfiguration(const std::string& path, Prompter& prompter)
{
    const FileRead read = readFileBytes(path, kVoiceConfigurationBytes);
    if (!read) {
        prompter.fileError(kCannotOpenConfigurationFile,
                           path + ": " +
                               (read.error == EFBIG ? "not a voice editor configuration (too long)" : read.cause()));
        return false;
    }
    std::string problem;
    const auto configuration = parseVoiceConfiguration(read.bytes, problem);
    if (!configuration) {
        prompter.fileError(kCannotOpenConfigurationFile, path + ": " + problem);
        return false;
    }

    namesInUse = configuration->namesInUse;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        const std::string& text = configuration->entries[slot];
        VoiceSlot entry;
        entry.hasPhrase = !text.empty() && text.front() == '+';
        const std::string rest = text.empty() ? std::string() : text.substr(1);
        if (namesInUse) {
            entry.name = trimRight(rest.substr(0, kNameWidth));
            entry.source = rest.size() > kNameWidth ? rest.substr(kNameWidth) : std::string();
        } else {
            entry.source = rest;
        }
        slotTable[slot] = std::move(entry);
    }
    lengths = {};
    loadedFile.clear();
    savedFile.clear();
    messageSaved = false;
    changed = false;
    if (configuration->messageLoaded) {
        std::string cause;
        const MessageHeader header = readMessageHeader(configuration->messagePath, cause);
        if (!header.ok()) {
            prompter.fileError(kCannotOpenMessageFile, configuration->messagePath + ": " + cause);
            return true; // the slots are loaded; the message file shows as not loaded
        }
        lengths = header.lengths;
        loadedFile = savedFile = configuration->messagePath;
        messageSaved = true; // a configuration is only written once its message file is saved
    }
    slotsMatchLoaded = messageSaved;
    return true;
}

bool VoiceEditor::CmWriteConfiguration(Prompter& prompter)
{
    if (!messageSaved) {
        prompter.tell("Error", kSaveMessageFirst, Icon::Error);
        return false;
    }
    const auto chosen = prompter.chooseFile({FileMode::Save, "Save Configuration", kConfigurationFilter, "vcf", {}});
    return chosen && writeConfiguration(*chosen, prompter);
}

bool VoiceEditor::writeConfiguration(const std::string& path, Prompter& prompter)
{
    VoiceConfiguration configuration;
    for (int slot = 0; slot < kSlotCount; ++slot) {
        configuration.entries[slot] = entryText(slot);
        if (configuration.entries[slot].size() > kLongestEntryText) {
            prompter.fileError(kCannotOpenConfigurationFile, slotTitle(slot) + ": the phrase file's name is too long");
            return false;
        }
    }
    if (loadedFile.size() > kLongestEntryText) {
        prompter.fileError(kCannotOpenConfigurationFile, loadedFile + ": the message file's name is too long");
        return false;
    }
    configuration.namesInUse = namesInUse;
    configuration.messageLoaded = !loadedFile.empty();
    configuration.messagePath = loadedFile;
    if (const SaveResult saved = writeFileAtomically(path, voiceConfigurationBytes(configuration)); !saved) {
        prompter.fileError(kCannotOpenConfigurationFile, path + ": " + saved.cause());
        return false;
    }
    changed = false;
    return true;
}

} // namespace rk4
