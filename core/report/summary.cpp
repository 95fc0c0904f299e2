#include "core/report/summary.h"

#include "core/common/text.h"
#include "core/database/defaults.h"
#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"
#include "core/hardware/hardware_editor.h"
#include "core/hardware/port_editor.h"
#include "core/report/warnings.h"

#include <algorithm>
#include <cstdlib>

namespace rk4 {

namespace {

constexpr std::size_t kLabelWidth = 32;
constexpr std::size_t kNumberWidth = 5;

std::string trimmed(const Name& name)
{
    std::string text = nameText(name);
    text = text.substr(0, text.find('\0'));
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string orNone(const std::string& text) { return text.empty() ? "(None)" : text; }
std::string orEmpty(const std::string& text) { return text.empty() ? "empty" : text; }

std::string number(int value) { return PadValue(std::to_string(value), kNumberWidth); }

std::string field(const std::string& label, const std::string& value)
{
    return padRight(label, kLabelWidth) + value;
}

// A stored time with its unit: 25 ms steps as seconds, or whole minutes.
std::string CalculateDebounce(std::uint16_t count, bool minutes)
{
    return minutes ? std::to_string(count) + " min" : secondsText(count) + " sec";
}

// The same time in words, for the Basic pages: "1.000 second.", "5 minutes."
std::string timeInWords(std::uint16_t count, bool minutes)
{
    if (minutes)
        return std::to_string(count) + (count == 1 ? " minute." : " minutes.");
    return secondsText(count) + (count == 40 ? " second." : " seconds.");
}

char letter(int directory) { return static_cast<char>('A' + directory); }

std::vector<int> groupsOf(std::uint8_t mask)
{
    std::vector<int> groups;
    for (int g = 0; g < kGroupCount; ++g)
        if (mask & MakeMask(g))
            groups.push_back(g + 1);
    return groups;
}

// Groups 1..6 for which `matches` holds.
template <typename Match> std::vector<int> groupsWhere(const Database& db, Match matches)
{
    std::vector<int> groups;
    for (int g = 0; g < kUsedGroupCount; ++g)
        if (matches(db.group[g]))
            groups.push_back(g + 1);
    return groups;
}

bool isAnalog(std::uint8_t typeFlags) { return typeFlags & kInputAnalog; }
int inputType(std::uint8_t typeFlags) { return typeFlags & kInputTypeMask; }

std::string edgeText(const char* head, std::uint8_t typeFlags)
{
    if (typeFlags & kBothChanges)
        return std::string(head) + "Both";
    return std::string(head) + ((typeFlags & kPolarityBit) ? "Low to High" : "High to Low");
}

std::string polarityText(std::uint8_t typeFlags)
{
    return (typeFlags & kPolarityBit) ? "Normally Low" : "Normally High";
}

// Inputs 1..8 whose reset mask names input `input` (0-based).
std::vector<int> resetInputsOf(const Database& db, int input)
{
    std::vector<int> inputs;
    for (int i = 0; i < kInputCount; ++i)
        if (db.hardware.port[i].resetMask & MakeMask(input))
            inputs.push_back(i + 1);
    return inputs;
}

std::vector<std::string> hardwareLines(const Database& db)
{
    std::vector<std::string> out;
    out.push_back("Inputs:");
    out.push_back(" I/P  " + padRight("Type", 11) + PadValue("Debounce", 14) + PadValue("Timer", 14) + "  " +
                  padRight("Operation", 24) + "Other");
    for (int i = 0; i < kInputCount; ++i) {
        const HardwarePort& entry = db.hardware.port[i];
        std::string type, debounce, timer, operation, other;
        if (isAnalog(entry.typeFlags)) {
            type = "Analog";
        } else {
            debounce = CalculateDebounce(entry.debounce, entry.scaleFlags & kDebounceMinutes);
            switch (inputType(entry.typeFlags)) {
            case kInputDigital: {
                type = "Digital";
                operation = polarityText(entry.typeFlags);
                std::vector<int> resets;
                for (int j = 0; j < kInputCount; ++j)
                    if (entry.resetMask & MakeMask(j))
                        resets.push_back(j + 1);
                if (!resets.empty())
                    other = (resets.size() == 1 ? "Resets totalizer " : "Resets totalizers ") + joinWithAnd(resets);
                break;
            }
            case kInputWatchdog:
                type = "Watchdog";
                timer = CalculateDebounce(entry.timer, entry.scaleFlags & kTimerMinutes);
                operation = edgeText("Restart: ", entry.typeFlags);
                break;
            case kInputInterval:
                type = "Interval";
                operation = polarityText(entry.typeFlags);
                other = std::string("Resolution: ") + ((entry.scaleFlags & kIntervalMinutes) ? "minutes" : "seconds");
                break;
            case kInputTotalizer: {
                type = "Totalizer";
                operation = edgeText("Count: ", entry.typeFlags);
                const std::vector<int> resets = resetInputsOf(db, i);
                if (!resets.empty())
                    other = "Reset by I/P " + joinWithAnd(resets);
                break;
            }
            default:
                type = "Unknown";
            }
        }
        out.push_back(PadValue(std::to_string(i + 1), 4) + "  " + padRight(type, 11) + PadValue(debounce, 14) +
                      PadValue(timer, 14) + "  " + padRight(operation, 24) + other);
    }
    out.emplace_back();
    out.push_back("Outputs:");
    out.push_back(" O/P  " + padRight("Type", 11) + PadValue("Timer", 14));
    for (int o = 0; o < kInputCount; ++o) {
        const HardwarePort& entry = db.hardware.port[kInputCount + o];
        const bool timed = entry.typeFlags == kOutputTimed;
        const std::string timer = timed ? CalculateDebounce(entry.timer, entry.scaleFlags & kTimerMinutes) : "";
        out.push_back(PadValue(std::to_string(o + 1), 4) + "  " + padRight(timed ? "Timed" : "On/Off", 11) +
                      PadValue(timer, 14) + "    (DTMF codes are set in Points)");
    }
    return out;
}

std::vector<std::string> groupLines(const Database& db, int first, int last)
{
    std::vector<std::string> out;
    constexpr std::size_t kColumn = 38;
    for (int n = first; n <= last; ++n) {
        const GroupRecord& group = db.group[n - 1];
        if (n > first)
            out.emplace_back();
        out.push_back("Group " + std::to_string(n) + (group.enabled ? " - Enabled" : " - Disabled"));
        auto row = [&](const std::string& label, const std::string& value, const std::string& timerLabel,
                       const std::string& timerValue, const std::string& flag) {
            out.push_back("  " + padRight(padRight(label, 18) + value, kColumn - 2) + padRight(timerLabel, 13) +
                          padRight(timerValue, 12) + flag);
        };
        row("Name:", orNone(trimmed(group.name)), "Short Timer:", number(group.shortTimer) + " min.",
            group.autoAck ? "AutoAck: Enabled" : "AutoAck: Disabled");
        row("Acknowledge Code:", orNone(dtmfCodeText(group.ackCode)), "Short Times:", number(group.shortCycles),
            group.ackRequest ? "AckRequest: Enabled" : "AckRequest: Disabled");
        row("Interrogate Code:", orNone(dtmfCodeText(group.interrogateCode)), "Long Timer:",
            number(group.longTimer) + " min.", "");
        struct Port {
            int number;
            const char* kind;
            const char* text;
        };
        const Port ports[4] = {{group.alarmOut, "Output ", " indicates this group has an alarm present."},
                               {group.newAlarmOut, "Output ", " indicates this group has a new alarm."},
                               {group.ackOut, "Output ", " indicates this group has been acknowledged."},
                               {group.ackIn, "Input ", " acknowledges this group."}};
        for (int k = 0; k < 4; ++k) {
            const int dir = group.shiftDir[k];
            std::string line = "  Shift " + std::to_string(k + 1) + " uses Directory " +
                               (dir < kDirectoryCount ? std::string(1, letter(dir)) : std::to_string(dir));
            if (ports[k].number)
                line = padRight(line, kColumn) + ports[k].kind + std::to_string(ports[k].number) + ports[k].text;
            out.push_back(line);
        }
    }
    return out;
}

// 0 and 255 both mean the unit never answers.
std::string ringsLine(const GeneralRecord& gen)
{
    if (gen.ringsToAnswer == 0 || gen.ringsToAnswer == 255)
        return "Number of rings before answer: Never";
    return field("Number of rings before answer:", number(gen.ringsToAnswer));
}

std::vector<std::string> generalLines(const Database& db)
{
    const GeneralRecord& gen = db.gen;
    std::vector<std::string> out;
    out.push_back(field("Name:", orNone(trimmed(gen.name))));
    out.push_back(field("Temporary Acknowledge Time:", number(gen.tempAckTime) + " min"));
    out.push_back(field("Security Level:", number(gen.securityLevel + 1)));
    out.push_back(field("Access Code:", orNone(dtmfCodeText(gen.accessCode))));
    out.push_back(ringsLine(gen));
    out.push_back(field("Shift Change Code:", orNone(dtmfCodeText(gen.shiftChangeCode))));
    out.push_back(field("Enable Modem Code:", orNone(dtmfCodeText(gen.modemEnableCode))));
    out.push_back(field("Call Progress:", gen.callProgress ? "Enabled" : "Disabled"));
    out.push_back(gen.carrierDetectOut ? "Modem CD Output: Output " + std::to_string(gen.carrierDetectOut)
                                       : "Modem CD Output: Not used");
    out.push_back(gen.ringOut ? "Ring Indicator Output: Output " + std::to_string(gen.ringOut)
                              : "Ring Indicator Output: Not used");
    return out;
}

std::vector<std::string> simgenLines(const Database& db)
{
    const GeneralRecord& gen = db.gen;
    std::vector<std::string> out;
    out.push_back(field("Name:", orNone(trimmed(gen.name))));
    out.push_back(ringsLine(gen));
    out.push_back(field("Access Code:", orNone(dtmfCodeText(gen.accessCode))));
    out.push_back(field("Modem Enable Code:", orNone(dtmfCodeText(gen.modemEnableCode))));
    out.push_back(field("Temporary Acknowledge Time:", number(gen.tempAckTime) + " min"));
    out.push_back(field("Call Progress:", gen.callProgress ? "Enabled" : "Disabled"));
    return out;
}


// An analog word as the technician entered it: the signed integer with its
// decimal places put back.
std::string decimalText(std::uint16_t stored, std::uint8_t places)
{
    const int value = static_cast<std::int16_t>(stored);
    const int digits = places & 0x0F;
    std::string text = std::to_string(std::abs(value));
    if (digits > 0) {
        if (text.size() <= static_cast<std::size_t>(digits))
            text.insert(0, digits + 1 - text.size(), '0');
        text.insert(text.size() - digits, ".");
    }
    return value < 0 ? "-" + text : text;
}

// The hysteresis step nearest the stored reset level, as a percentage.
int hysteresisPercent(const PointRecord& point)
{
    const int range = point.binaryMaximum - point.binaryMinimum;
    const double p = range == 0 ? 5.0 : (point.lowReset - point.lowSetpoint) * 100.0 / range;
    static constexpr double kBounds[] = {1.5, 3.0, 4.5, 6.5, 9.0, 11.0, 13.5, 17.5, 22.5, 27.5};
    static constexpr int kPercents[] = {1, 2, 4, 5, 8, 10, 12, 15, 20, 25};
    for (int i = 0; i < 10; ++i)
        if (p <= kBounds[i])
            return kPercents[i];
    return 10;
}

void pointDetails(const Database& db, const PointRecord& point, std::vector<std::string>& out)
{
    const std::string indent = "        ";
    auto detail = [&](const std::string& label, const std::string& value) {
        out.push_back(indent + padRight(label, 20) + value);
    };
    const int port = point.port;
    if (point.isOutput) {
        const int output = port + 1;
        auto uses = [&](const char* label, std::uint8_t GroupRecord::*member) {
            const std::vector<int> groups = groupsWhere(db, [&](const GroupRecord& g) { return g.*member == output; });
            if (!groups.empty())
                out.push_back(indent + label + " " + groupsText(groups));
        };
        uses("Alarm Output for", &GroupRecord::alarmOut);
        uses("New Alarm Output for", &GroupRecord::newAlarmOut);
        uses("Ack Output for", &GroupRecord::ackOut);
        if (db.gen.ringOut == output)
            out.push_back(indent + "Ring Output");
        detail("DTMF On Code:", orEmpty(dtmfCodeText(point.onCode)));
        if (point.type == kPointOnOffOutput)
            detail("DTMF Off Code:", orEmpty(dtmfCodeText(point.offCode)));
        if (point.type == kPointTimerOutput && port < kInputCount) {
            const HardwarePort& entry = db.hardware.port[kInputCount + port];
            detail("Timer:", CalculateDebounce(entry.timer, entry.scaleFlags & kTimerMinutes));
        }
        return;
    }
    if (port >= kInputCount)
        return;
    const HardwarePort& entry = db.hardware.port[port];
    const bool debounceMinutes = entry.scaleFlags & kDebounceMinutes;
    switch (point.type) {
    case kPointDigital:
        detail("Input:", polarityText(entry.typeFlags));
        detail("Debounce:", CalculateDebounce(entry.debounce, debounceMinutes));
        {
            std::vector<int> resets;
            for (int j = 0; j < kInputCount; ++j)
                if (entry.resetMask & MakeMask(j))
                    resets.push_back(j + 1);
            if (!resets.empty())
                out.push_back(indent + (resets.size() == 1 ? "Resets totalizer " : "Resets totalizers ") +
                              joinWithAnd(resets));
        }
        break;
    case kPointWatchdog:
        detail("Debounce:", CalculateDebounce(entry.debounce, debounceMinutes));
        detail("Timer:", CalculateDebounce(entry.timer, entry.scaleFlags & kTimerMinutes));
        out.push_back(indent + edgeText("Restart: ", entry.typeFlags));
        break;
    case kPointInterval:
        detail("Input:", polarityText(entry.typeFlags));
        detail("Debounce:", CalculateDebounce(entry.debounce, debounceMinutes));
        detail("Resolution:", (entry.scaleFlags & kIntervalMinutes) ? "minutes" : "seconds");
        break;
    case kPointTotalizer:
        detail("Debounce:", CalculateDebounce(entry.debounce, debounceMinutes));
        out.push_back(indent + edgeText("Count: ", entry.typeFlags));
        break;
    case kPointAnalog: {
        const std::uint8_t places = point.decimalPlaces;
        const std::string percent = std::to_string(hysteresisPercent(point)) + "%)";
        detail("Binary Minimum:", PadValue(std::to_string(point.binaryMinimum), 8));
        detail("Binary Maximum:", PadValue(std::to_string(point.binaryMaximum), 8));
        detail("Decimal Minimum:", PadValue(decimalText(point.decimalMinimum, places), 8));
        detail("Decimal Maximum:", PadValue(decimalText(point.decimalMaximum, places), 8));
        detail("Low Setpoint:", PadValue(std::to_string(point.lowSetpoint), 8));
        detail("Low Reset:", PadValue(std::to_string(point.lowReset), 8) + "  (Low Setpoint + " + percent);
        detail("High Setpoint:", PadValue(std::to_string(point.highSetpoint), 8));
        detail("High Reset:", PadValue(std::to_string(point.highReset), 8) + "  (High Setpoint - " + percent);
        break;
    }
    default:
        break;
    }
    const std::vector<int> ackFor = groupsWhere(db, [&](const GroupRecord& g) { return g.ackIn == port + 1; });
    if (ackFor.size() == kUsedGroupCount)
        detail("Ack Input for:", "All Groups");
    else if (!ackFor.empty())
        detail("Ack Input for:", groupsText(ackFor));
    if (point.latching)
        out.push_back(indent + "Latching alarm");
    detail("DTMF Tag:", orEmpty(dtmfCodeText(point.onCode)));
}

std::string pointHeads()
{
    return "Point  " + padRight("Type", 12) + padRight("Port", 7) + padRight("Name", 18) + "Group";
}

// One block a point: its row and, for a used point, its details.
std::vector<Block> pointBlocks(const Database& db)
{
    std::vector<Block> blocks;
    for (int n = 1; n <= kPointCount; ++n) {
        const PointRecord& point = db.alm[n - 1];
        std::string row = PadValue(std::to_string(n), 5) + "  " + padRight(pointTypeWord(point.type), 12);
        if (point.type != kPointUnused) {
            row += padRight((point.isOutput ? "O/P " : "I/P ") + std::to_string(point.port + 1), 7) +
                   padRight(trimmed(point.name), 18) + joinWithCommas(groupsOf(point.groupMask));
            if (point.inactive)
                row = padRight(row, 60) + "(disabled)";
        }
        Block block{row};
        if (point.type != kPointUnused)
            pointDetails(db, point, block);
        blocks.push_back(std::move(block));
    }
    return blocks;
}

// A directory's head travels with its first line; a blank line parts directories.
std::vector<Block> directoryBlocks(const Database& db)
{
    std::vector<Block> blocks;
    const int count = db.gen.basicMode ? 2 : kDirectoryCount;
    for (int d = 0; d < count; ++d) {
        Block head;
        if (d > 0)
            head.emplace_back();
        head.push_back(std::string("Directory ") + letter(d));
        const DirLines lines = DecodeDirectory(db.dir[d]);
        int last = kDirectoryLines;
        while (last > 0 && lines[last - 1].empty())
            --last;
        auto lineText = [&](int i) { return PadValue(std::to_string(i + 1), 4) + " " + dirLineText(lines[i]); };
        head.push_back(last == 0 ? "    (Empty)" : lineText(0));
        blocks.push_back(std::move(head));
        for (int i = 1; i < last; ++i)
            blocks.push_back({lineText(i)});
    }
    return blocks;
}

std::vector<std::string> alarmLines(const Database& db)
{
    std::vector<std::string> out;
    for (int n = 1; n <= 8; ++n) {
        const PointRecord& point = db.alm[n - 1];
        const std::string name = trimmed(point.name);
        std::string head = "Alarm " + std::to_string(n) + "  " + padRight(name.empty() ? "-- empty name --" : name, 17);
        if (point.inactive)
            head += "is Disabled";
        else if (point.groupMask == 1 || point.groupMask == 2)
            head += std::string("is using Directory ") + letter(point.groupMask - 1);
        else
            head += "is using " + groupsText(groupsOf(point.groupMask));
        out.push_back(head);
    }
    // One format and one debounce serve all eight alarms; input 1 carries them.
    const HardwarePort& input = db.hardware.port[0];
    const bool low = input.typeFlags & kPolarityBit;
    const bool latching = db.alm[0].latching != 0;
    out.emplace_back();
    out.push_back(std::string("Input Format is ") + (low ? "Normally Low" : "Normally High") +
                  (latching ? ", Latching." : "."));
    out.push_back("Debounce timers are " + timeInWords(input.debounce, input.scaleFlags & kDebounceMinutes));
    return out;
}

std::vector<std::string> simoutLines(const Database& db)
{
    std::vector<std::string> out;
    for (int n = 1; n <= 8; ++n) {
        const PointRecord& point = db.alm[7 + n];
        const std::string name = trimmed(point.name);
        std::string line =
            "Output " + std::to_string(n) + "  " + padRight(name.empty() ? "-- empty name --" : name, 17);
        if (n <= 4) {
            if (point.type == kPointOnOffOutput) {
                line += "is an On/Off type, ON code: " + orEmpty(dtmfCodeText(point.onCode)) +
                        ", OFF code: " + orEmpty(dtmfCodeText(point.offCode));
            } else {
                const HardwarePort& entry = db.hardware.port[kInputCount + n - 1];
                line += "is a Timed type, ON code: " + orEmpty(dtmfCodeText(point.onCode)) +
                        ", Interval: " + timeInWords(entry.timer, entry.scaleFlags & kTimerMinutes);
            }
        } else {
            const GroupRecord& any = db.group[0];
            const char* role = n == db.gen.carrierDetectOut ? "Carrier Detect"
                               : n == db.gen.ringOut       ? "Ring"
                               : n == any.alarmOut         ? "Any Alarm"
                               : n == any.newAlarmOut      ? "New Alarm"
                               : n == any.ackOut           ? "Acknowledge"
                                                           : nullptr;
            line += role ? std::string(role) + " - Hardware control" : std::string("Hardware control");
        }
        out.push_back(line);
    }
    return out;
}

} // namespace

const char* pointTypeWord(std::uint8_t type)
{
    switch (type) {
    case kPointUnused: return "Unused";
    case kPointDigital: return "Digital";
    case kPointWatchdog: return "Watchdog";
    case kPointInterval: return "Interval";
    case kPointAnalog: return "Analog";
    case kPointTotalizer: return "Totalizer";
    case kPointOnOffOutput: return "On/Off Out";
    case kPointTimerOutput: return "Timer Out";
    default: return "Unknown";
    }
}

std::string bannerLine() { return std::string(kBanner) + " " + kMakerName; }

std::string categoryTitle(Category category, int page)
{
    const std::string number = std::to_string(page + 1);
    switch (category) {
    case Category::Hardware: return "Hardware Summary";
    case Category::Groups: return "Group Summary - Page " + number;
    case Category::General: return "General Summary";
    case Category::Points: return "Points Summary - Page " + number;
    case Category::Dirs: return "Directory Summary - Page " + number;
    case Category::Warnings: return "Warnings - Page " + number;
    case Category::Alarms: return "Alarm Summary";
    case Category::Simout: return "Output Summary";
    case Category::Simgen: return "General Summary";
    case Category::All: break;
    }
    return {};
}

std::vector<Block> categoryBlocks(const Database& db, Category category)
{
    switch (category) {
    case Category::Points: return pointBlocks(db);
    case Category::Dirs: return directoryBlocks(db);
    case Category::Warnings: {
        std::vector<Block> blocks;
        for (const std::string& warning : ConfigurationWarnings(db))
            blocks.push_back(warningLines({warning}));
        return blocks;
    }
    case Category::Hardware: return {hardwareLines(db)};
    case Category::Groups: return {groupLines(db, 1, 3), groupLines(db, 4, 6)};
    case Category::General: return {generalLines(db)};
    case Category::Alarms: return {alarmLines(db)};
    case Category::Simout: return {simoutLines(db)};
    case Category::Simgen: return {simgenLines(db)};
    case Category::All: break;
    }
    return {};
}

std::vector<std::string> categoryLines(const Database& db, Category category)
{
    std::vector<std::string> lines;
    for (const Block& block : categoryBlocks(db, category))
        lines.insert(lines.end(), block.begin(), block.end());
    return lines;
}

bool PageLayout::TestItem(const Block& item)
{
    const int room = kLinesPerPage - linesOnPage;
    if (linesOnPage > 0 && static_cast<int>(item.size()) > room && static_cast<int>(item.size()) <= kLinesPerPage) {
        ++page;
        linesOnPage = 0;
    }
    if (linesOnPage == 0)
        starts.push_back(itemCount);
    ++itemCount;
    bool drawnHere = false;
    for (const std::string& line : item) {
        if (linesOnPage == kLinesPerPage) { // only an item longer than a page gets here
            ++page;
            linesOnPage = 0;
            starts.push_back(itemCount - 1);
        }
        if (linesOnPage == 0 && line.empty())
            continue; // no page begins with a blank line
        ++linesOnPage;
        if (page == wanted) {
            kept.push_back(line);
            drawnHere = true;
        }
    }
    return drawnHere;
}

namespace {

bool paged(Category category)
{
    return category == Category::Points || category == Category::Dirs || category == Category::Warnings;
}

// Lines every page of the category repeats under its title.
std::vector<std::string> pageHeads(Category category)
{
    if (category == Category::Points)
        return {pointHeads()};
    return {};
}

std::string withoutTrailingBlanks(std::string text)
{
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

} // namespace

int Printout::lastPageOf(Category category) const
{
    if (category == Category::Groups)
        return 1;
    if (!paged(category))
        return 0;
    PageLayout layout(-1);
    for (const Block& block : categoryBlocks(db, category))
        layout.TestItem(block);
    return layout.lastPage();
}

SummaryPage Printout::drawPage(Category category, int page) const
{
    SummaryPage result;
    result.lines = {bannerLine(), categoryTitle(category, page), ""};
    const std::vector<std::string> heads = pageHeads(category);
    result.lines.insert(result.lines.end(), heads.begin(), heads.end());
    const std::vector<Block> blocks = categoryBlocks(db, category);
    if (category == Category::Groups) {
        const Block& groups = blocks.at(page == 0 ? 0 : 1);
        result.lines.insert(result.lines.end(), groups.begin(), groups.end());
    } else if (!paged(category)) {
        result.lines.insert(result.lines.end(), blocks.front().begin(), blocks.front().end());
    } else {
        PageLayout layout(page);
        for (const Block& block : blocks)
            layout.TestItem(block);
        result.lines.insert(result.lines.end(), layout.drawn().begin(), layout.drawn().end());
    }
    for (std::string& line : result.lines)
        line = withoutTrailingBlanks(std::move(line));
    return result;
}
std::vector<Category> Printout::sequence() const
{
    if (db.gen.basicMode)
        return {Category::Alarms, Category::Simout, Category::Simgen, Category::Dirs};
    return {Category::Hardware, Category::Groups, Category::General, Category::Points, Category::Dirs};
}

std::vector<Category> Printout::shown() const
{
    if (chosen == Category::All)
        return sequence();
    return {chosen};
}

void Printout::select(Category category)
{
    chosen = category;
    current = shown().front();
    pageNumber = 0;
}

bool Printout::canNext() const
{
    const std::vector<Category> order = shown();
    return pageNumber < lastPageOf(current) || current != order.back();
}

bool Printout::canLast() const { return pageNumber > 0 || current != shown().front(); }

void Printout::CmNextPage()
{
    if (pageNumber < lastPageOf(current)) {
        ++pageNumber;
        return;
    }
    const std::vector<Category> order = shown();
    const auto at = std::find(order.begin(), order.end(), current);
    if (at == order.end() || at + 1 == order.end())
        return;
    current = *(at + 1);
    pageNumber = 0;
}

void Printout::CmLastPage()
{
    if (pageNumber > 0) {
        --pageNumber;
        return;
    }
    const std::vector<Category> order = shown();
    const auto at = std::find(order.begin(), order.end(), current);
    if (at == order.end() || at == order.begin())
        return;
    current = *(at - 1);
    pageNumber = lastPageOf(current); // a category entered from its end opens at its last page
}

std::vector<SummaryPage> Printout::allPages() const
{
    std::vector<SummaryPage> pages;
    for (const Category category : shown()) {
        const int last = lastPageOf(category);
        for (int page = 0; page <= last; ++page)
            pages.push_back(drawPage(category, page));
    }
    return pages;
}

} // namespace rk4
