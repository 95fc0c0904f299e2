#include "core/link/simulated_unit.h"

#include "core/common/bytes.h"
#include "core/database/database.h"
#include "core/database/defaults.h"
#include "core/link/programming_session.h"
#include "core/link/wire_image.h"

#include <algorithm>
#include <map>

namespace rk4::link {

namespace {

// A partial frame is dropped after this much silence, so a lost byte cannot
// wedge the unit's receiver.
constexpr Millis kFrameGap = 500;

std::vector<std::uint8_t> makeReply(std::uint8_t code, std::uint16_t number, std::span<const std::uint8_t> body)
{
    std::vector<std::uint8_t> reply(static_cast<std::size_t>(kHeaderLength) + body.size() + 2);
    buildFrame(reply, kFromUnit, code, number, body);
    return reply;
}

std::string fixedWidth(std::string text, std::size_t width)
{
    text.resize(width, ' ');
    return text;
}

const std::map<std::string, int>& commandNames()
{
    static const std::map<std::string, int> names{
        {"any", -1},
        {"version", CMD_VERSION},
        {"link", CMD_LINK},
        {"link-alt", CMD_LINK_ALT},
        {"write-database", CMD_WRITE_DATABASE},
        {"write-voices", CMD_WRITE_VOICES},
        {"write-vocabulary", CMD_WRITE_VOCABULARY},
        {"read-database", CMD_READ_DATABASE},
        {"read-voices", CMD_READ_VOICES},
        {"packet", CMD_PACKET},
        {"end", CMD_END},
        {"hangup", CMD_HANGUP},
    };
    return names;
}

// Packets each of the unit's stores can take; a packet numbered beyond them
// has nowhere to go and gets no answer.
std::size_t packetsHeld(TransferKind kind)
{
    switch (kind) {
    case TransferKind::Database: return (dbasesize + kPacketSize - 1) / kPacketSize;
    case TransferKind::Vocabulary: return kSecondPassVocabularyPackets;
    case TransferKind::Voices: return kVoiceStorePackets;
    }
    return 0;
}

std::optional<int> parseCount(const std::string& text)
{
    if (text.empty() || text.size() > 6 || !std::all_of(text.begin(), text.end(), ::isdigit))
        return std::nullopt;
    return std::stoi(text);
}

} // namespace

std::optional<Fault> parseFault(const std::string& text)
{
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (;;) {
        const auto colon = text.find(':', start);
        parts.push_back(text.substr(start, colon == std::string::npos ? std::string::npos : colon - start));
        if (colon == std::string::npos)
            break;
        start = colon + 1;
    }
    if (parts.size() > 4)
        return std::nullopt;

    static const std::map<std::string, FaultKind> kinds{{"nak", FaultKind::Nak},
                                                        {"noise", FaultKind::Noise},
                                                        {"crc", FaultKind::CorruptCrc},
                                                        {"silence", FaultKind::Silence}};
    const auto kind = kinds.find(parts[0]);
    if (kind == kinds.end())
        return std::nullopt;
    Fault fault;
    fault.kind = kind->second;
    if (parts.size() > 1) {
        const std::string& command = parts[1];
        if (auto named = commandNames().find(command); named != commandNames().end()) {
            fault.command = named->second;
        } else if (command.size() > 2 && command.size() <= 4 && command.starts_with("0x") &&
                   std::all_of(command.begin() + 2, command.end(), ::isxdigit)) {
            fault.command = std::stoi(command.substr(2), nullptr, 16);
        } else {
            return std::nullopt;
        }
    }
    if (parts.size() > 2) {
        const auto skip = parseCount(parts[2]);
        if (!skip)
            return std::nullopt;
        fault.skip = *skip;
    }
    if (parts.size() > 3) {
        const auto times = parseCount(parts[3]);
        if (!times)
            return std::nullopt;
        fault.times = *times;
    }
    return fault;
}

SimulatedUnit::SimulatedUnit(Transport& line, UnitOptions options) : line(line), options(std::move(options)) {}

void SimulatedUnit::poll(Millis now)
{
    std::array<std::uint8_t, 512> chunk{};
    for (;;) {
        const std::size_t count = line.read(chunk);
        if (count == 0)
            break;
        for (std::size_t i = 0; i < count; ++i)
            take(chunk[i], now);
    }
}

void SimulatedUnit::take(std::uint8_t byte, Millis now)
{
    if (collected > 0 && now - lastByte > kFrameGap)
        collected = 0;
    lastByte = now;
    if (collected == 0 && byte != kStartByte)
        return;
    frame[static_cast<std::size_t>(collected++)] = byte;
    if (collected < kHeaderLength)
        return;
    // Only a packet during a download carries data; every other request is 7 bytes.
    const bool carriesData = frame[2] == CMD_PACKET && mode == Mode::Download;
    const int length = carriesData ? kDataFrameLength : kShortFrameLength;
    if (collected < length)
        return;
    collected = 0;
    const std::span<const std::uint8_t> bytes(frame.data(), static_cast<std::size_t>(length));
    if (bytes[1] != kFromTool || crc16(bytes.first(bytes.size() - 2)) != readBE16(bytes, bytes.size() - 2))
        return; // a damaged request goes unanswered
    handle(now);
}

const Fault* SimulatedUnit::faultFor(std::uint8_t command)
{
    const Fault* chosen = nullptr;
    for (Fault& fault : options.faults) {
        if (fault.command != -1 && fault.command != command)
            continue;
        ++fault.seen;
        const bool hit = fault.seen > fault.skip && (fault.times == 0 || fault.seen <= fault.skip + fault.times);
        if (hit && !chosen)
            chosen = &fault;
    }
    return chosen;
}

void SimulatedUnit::handle(Millis now)
{
    const std::uint8_t command = frame[2];
    const std::uint16_t number = readBE16(frame, 3);
    heard.push_back(command);

    const Fault* fault = faultFor(command);
    if (fault && fault->kind == FaultKind::Silence)
        return;
    const bool busy = now < busyUntil;
    if ((fault && fault->kind == FaultKind::Nak) || busy) {
        const std::array<std::uint8_t, 0> none{};
        auto reply = makeReply(command, 0, none);
        reply[0] = kBusyByte;
        send(std::move(reply), nullptr);
        return;
    }
    std::vector<std::uint8_t> reply;
    act(command, number, now, reply);
    if (!reply.empty())
        send(std::move(reply), fault);
}

void SimulatedUnit::act(std::uint8_t command, std::uint16_t number, Millis now, std::vector<std::uint8_t>& reply)
{
    const std::array<std::uint8_t, 0> none{};
    auto acknowledge = [&] { reply = makeReply(REPLY_ACK, 0, none); };

    switch (command) {
    case CMD_VERSION: {
        if (options.olderUnit)
            return;
        std::array<std::uint8_t, 16> body{};
        const std::string text =
            fixedWidth(options.product, kProductLength) + fixedWidth(options.firmware, kFirmwareLength);
        std::copy(text.begin(), text.end(), body.begin());
        reply = makeReply(REPLY_VERSION, 0, body);
        // A unit that has answered the version query is in programming mode:
        // the tool goes straight on to the announce without a link request.
        link = Link::Normal;
        return;
    }
    case CMD_LINK:
        if (options.olderUnit)
            return;
        link = Link::Normal;
        acknowledge();
        return;
    case CMD_LINK_ALT:
        link = Link::Alternate;
        acknowledge();
        return;
    case CMD_END:
        commitDownload();
        link = Link::None;
        mode = Mode::None;
        return;
    case CMD_HANGUP: return;
    default: break;
    }

    // Everything else needs a programming link.
    if (link == Link::None)
        return;
    switch (command) {
    case CMD_WRITE_DATABASE:
    case CMD_WRITE_VOCABULARY:
    case CMD_WRITE_VOICES:
        mode = Mode::Download;
        kind = command == CMD_WRITE_DATABASE     ? TransferKind::Database
               : command == CMD_WRITE_VOCABULARY ? TransferKind::Vocabulary
                                                 : TransferKind::Voices;
        received.clear();
        receivedPackets.clear();
        acknowledge();
        return;
    case CMD_READ_DATABASE: {
        mode = Mode::Upload;
        Database image;
        if (store.database.size() == dbasesize) {
            image.fromBytes(std::span<const std::uint8_t, dbasesize>(store.database.data(), dbasesize));
        } else {
            DefaultValues(image);
        }
        const ImageBytes bytes = image.toBytes();
        uploading.assign(bytes.begin(), bytes.end());
        swapWireFields(uploading);
        acknowledge();
        return;
    }
    case CMD_READ_VOICES:
        mode = Mode::Upload;
        uploading = store.voices;
        acknowledge();
        return;
    case CMD_PACKET:
        if (mode == Mode::Download) {
            if (number >= packetsHeld(kind))
                return;
            const std::size_t offset = static_cast<std::size_t>(number) * kPacketSize;
            if (received.size() < offset + kPacketSize) {
                received.resize(offset + kPacketSize);
                receivedPackets.resize(number + 1u);
            }
            std::copy_n(frame.begin() + kHeaderLength, kPacketSize,
                        received.begin() + static_cast<std::ptrdiff_t>(offset));
            receivedPackets[number] = true;
            if (kind == TransferKind::Voices && number == 0) {
                store.voices.clear();
                busyUntil = now + options.voiceEraseMillis;
            }
            acknowledge();
        } else if (mode == Mode::Upload) {
            const std::size_t offset = static_cast<std::size_t>(number) * kPacketSize;
            if (offset >= uploading.size()) {
                acknowledge(); // no more data
                return;
            }
            std::vector<std::uint8_t> body(kPacketSize, 0);
            const std::size_t count = std::min<std::size_t>(kPacketSize, uploading.size() - offset);
            std::copy_n(uploading.begin() + static_cast<std::ptrdiff_t>(offset), count, body.begin());
            reply = makeReply(REPLY_DATA, number, body);
        }
        return;
    default: return;
    }
}

void SimulatedUnit::commitDownload()
{
    if (mode != Mode::Download)
        return;
    // Keep the packets that arrived in one run from the first.
    const auto firstGap = std::find(receivedPackets.begin(), receivedPackets.end(), false);
    const std::size_t whole = static_cast<std::size_t>(firstGap - receivedPackets.begin()) * kPacketSize;
    if (kind == TransferKind::Database) {
        if (whole < dbasesize)
            return; // an incomplete database is not taken
        store.database.assign(received.begin(), received.begin() + dbasesize);
        swapWireFields(store.database);
    } else if (kind == TransferKind::Vocabulary) {
        if (whole == 0)
            return;
        store.vocabulary.assign(received.begin(), received.begin() + static_cast<std::ptrdiff_t>(whole));
    } else {
        store.voices.assign(received.begin(), received.begin() + static_cast<std::ptrdiff_t>(whole));
    }
    if (onStored)
        onStored(kind);
}

void SimulatedUnit::send(std::vector<std::uint8_t> reply, const Fault* fault)
{
    if (fault && fault->kind == FaultKind::CorruptCrc)
        reply.back() ^= 0xFF;
    if (fault && fault->kind == FaultKind::Noise) {
        // Noise never holds a start or busy byte, which would read as a reply.
        std::vector<std::uint8_t> noise;
        for (int i = 0; i < 5; ++i) {
            noiseSeed = noiseSeed * 1103515245u + 12345u;
            auto byte = static_cast<std::uint8_t>(noiseSeed >> 16);
            if (byte == kStartByte || byte == kBusyByte)
                byte = 0xFF;
            noise.push_back(byte);
        }
        line.write(noise);
    }
    line.write(reply);
}

SimulatedUnitPort::SimulatedUnitPort(const Clock& clock, UnitOptions options, unsigned baud)
    : clock(clock),
      toolPaced(baud ? std::optional<PacedTransport>(std::in_place, link.tool(), clock, baud) : std::nullopt),
      unitPaced(baud ? std::optional<PacedTransport>(std::in_place, link.unit(), clock, baud) : std::nullopt),
      simulated(unitPaced ? static_cast<Transport&>(*unitPaced) : link.unit(), std::move(options))
{}

bool SimulatedUnitPort::write(std::span<const std::uint8_t> bytes)
{
    const bool written = toolSide().write(bytes);
    runUnit();
    return written;
}

bool SimulatedUnitPort::allSent()
{
    runUnit();
    return toolSide().allSent();
}

std::size_t SimulatedUnitPort::read(std::span<std::uint8_t> buffer)
{
    runUnit();
    if (unitPaced)
        unitPaced->allSent(); // lets the unit's paced reply move on
    return toolSide().read(buffer);
}

void SimulatedUnitPort::purge(Purge side)
{
    runUnit();
    toolSide().purge(side);
}

} // namespace rk4::link
