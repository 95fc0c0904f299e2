#include "cli/support.h"

#include "core/common/safe_file.h"
#include "core/voice/message_file.h"
#include "core/voice/voice_editor.h"
#include "core/voice/wave.h"

#include <CLI/CLI.hpp>

#include <cstdio>
#include <memory>
#include <ostream>
#include <set>

namespace rk4::cli {

namespace {

struct MsgOptions {
    CLI::App* list = nullptr;
    CLI::App* build = nullptr;
    CLI::App* extract = nullptr;
    std::string file;
    std::vector<std::string> assignments;
    std::string slot;
    std::string phrase;
    SpeechOptions speech;
};

constexpr std::uint64_t kStoreBlocks = kVoiceStoreBytes / kMessageBlock;

std::optional<MessageHeader> loadHeader(const std::string& path, Context& context)
{
    std::string cause;
    const MessageHeader header = readMessageHeader(path, cause);
    if (!header.ok()) {
        printMessage(context.err, kCannotOpenMessageFile, fileAndCause(path, cause));
        return std::nullopt;
    }
    return header;
}

std::string blocksText(std::uint64_t blocks) { return std::to_string(blocks) + (blocks == 1 ? " block" : " blocks"); }

void warnIfOverStore(std::uint64_t blocks, Context& context)
{
    if (blocks > kStoreBlocks)
        context.err << "warning: the phrases take " << blocks << " blocks; the unit's voice store holds "
                    << kStoreBlocks << "\n";
}

int list(const MsgOptions& options, Context& context)
{
    const auto header = loadHeader(options.file, context);
    if (!header)
        return 2;
    // In the file's own order, so the offsets climb.
    std::vector<int> order;
    for (int slot = 1; slot < kSlotCount; ++slot)
        order.push_back(slot);
    order.push_back(kSiteSlot);
    context.out << "SLOT  NAME     BELONGS TO  BLOCKS  OFFSET\n";
    for (const int slot : order) {
        const std::uint16_t blocks = header->lengths[slot];
        char line[80];
        std::snprintf(line, sizeof line, "%4d  %-7s  %-10s  %6u", slot, slotKey(slot).c_str(), slotTitle(slot).c_str(),
                      static_cast<unsigned>(blocks));
        context.out << line;
        if (blocks)
            context.out << "  " << phraseOffset(header->lengths, slot);
        context.out << "\n";
    }
    const std::uint64_t total = totalBlocks(header->lengths);
    context.out << "Total " << blocksText(total) << " (" << total * kMessageBlock << " bytes) of phrases\n";
    warnIfOverStore(total, context);
    return 0;
}

int build(const MsgOptions& options, Context& context)
{
    std::array<std::optional<std::vector<std::uint8_t>>, kSlotCount> phrases;
    std::set<int> given;
    const PhraseSources sources = standardPhraseSources(speechSettings(options.speech));
    for (const std::string& text : options.assignments) {
        std::string problem;
        const auto assignment = parseSlotAssignment(text, problem);
        if (!assignment) {
            context.err << problem << "\nTry 'rk4 msg build --help'.\n";
            return 2;
        }
        if (!given.insert(assignment->slot).second) {
            context.err << slotTitle(assignment->slot) << " is given twice\n";
            return 2;
        }
        if (wouldReplace(options.file, assignment->source)) {
            printMessage(context.err, kCannotOpenMessageFile,
                         options.file + ": it is the phrase of " + slotTitle(assignment->slot));
            return 2;
        }
        PhraseLoad load = sources.load(assignment->source);
        if (!load.ok()) {
            printMessage(context.err, kCannotOpenPrefix + assignment->source, load.problem);
            return 2;
        }
        if (load.bytes.size() < kMessageBlock)
            context.err << "warning: " << assignment->source << " is shorter than a block; "
                        << slotTitle(assignment->slot) << " stays empty\n";
        phrases[assignment->slot] = std::move(load.bytes);
    }

    const std::vector<std::uint8_t> file = buildMessageFile(phrases);
    if (const SaveResult saved = writeFileAtomically(options.file, file); !saved) {
        printMessage(context.err, kCannotOpenMessageFile, fileAndCause(options.file, saved.cause()));
        return 1;
    }
    const std::uint64_t total = (file.size() - kMessageBlock) / kMessageBlock;
    context.out << "Saved " << options.file << ": " << given.size() << (given.size() == 1 ? " phrase, " : " phrases, ")
                << blocksText(total) << " (" << file.size() << " bytes)\n";
    warnIfOverStore(total, context);
    return 0;
}

int extract(const MsgOptions& options, Context& context)
{
    const auto slot = parseSlot(options.slot);
    if (!slot) {
        context.err << "\"" << options.slot
                    << "\" is not a slot: give 0..38, site, point1..point30 or group1..group8\n";
        return 2;
    }
    const auto header = loadHeader(options.file, context);
    if (!header)
        return 2;
    if (header->lengths[*slot] == 0) {
        printMessage(context.err, kCannotOpenMessageForReading,
                     options.file + ": it has no phrase for " + slotTitle(*slot));
        return 1;
    }
    std::string cause;
    const auto phrase = readMessagePhrase(options.file, header->lengths, *slot, cause);
    if (!phrase) {
        printMessage(context.err, kCannotOpenMessageForReading, fileAndCause(options.file, cause));
        return 2;
    }
    if (wouldReplace(options.phrase, options.file)) {
        printMessage(context.err, kCannotOpenPhraseForWriting, options.phrase + ": it is the message file");
        return 2;
    }
    if (const SaveResult saved = writeFileAtomically(options.phrase, *phrase); !saved) {
        printMessage(context.err, kCannotOpenPhraseForWriting, fileAndCause(options.phrase, saved.cause()));
        return 1;
    }
    context.out << "Saved " << options.phrase << ": " << slotTitle(*slot) << ", " << blocksText(header->lengths[*slot])
                << " (" << phrase->size() << " bytes)\n";
    return 0;
}

} // namespace

VerbBody addMsgVerb(CLI::App& rk4, Context& context)
{
    CLI::App* verb = rk4.add_subcommand("msg", "List, build or take apart a voice message file");
    verb->require_subcommand(1);
    auto options = std::make_shared<MsgOptions>();
    const std::string slots = "Slots: 0..38, or site, point1..point30, group1..group8 (1..30 are the points, "
                              "31..38 the groups, 0 the Site ID)\n";

    options->list = verb->add_subcommand("list", "Show each slot's phrase length and place in the file");
    options->list->add_option("FILE.msg", options->file, "The voice message file")->required();

    options->build = verb->add_subcommand("build", "Make a voice message file from phrase files or text");
    options->build->add_option("OUT.msg", options->file, "The voice message file to write")->required();
    options->build
        ->add_option("SLOT=PHRASE.vox", options->assignments,
                     "A slot and its phrase file, or SLOT=text:WORDS to speak WORDS; each phrase gives its "
                     "whole 4096-byte blocks")
        ->required();
    addSpeechOptions(*options->build, options->speech);
    options->build->footer(slots + "Spoken phrases use " + kSpeechSettingsFile +
                           " in the working folder, or English at 150 words a minute.\n");

    options->extract = verb->add_subcommand("extract", "Copy one slot's phrase out to a phrase file");
    options->extract->add_option("FILE.msg", options->file, "The voice message file")->required();
    options->extract->add_option("SLOT", options->slot, "The slot")->required();
    options->extract->add_option("OUT.vox", options->phrase, "The phrase file to write")->required();
    options->extract->footer(slots);

    return [options, &context] {
        if (options->list->parsed())
            return list(*options, context);
        if (options->build->parsed())
            return build(*options, context);
        return extract(*options, context);
    };
}

} // namespace rk4::cli
