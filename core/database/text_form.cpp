#include "core/database/text_form.h"

#include "core/database/directory_codec.h"
#include "core/database/dtmf.h"
#include "core/database/layout.h"
#include "core/database/validators.h"
#include "core/hardware/port_editor.h"
#include "core/hardware/time_field.h"

// yaml-cpp is the text form's reader and writer, as std::filesystem is the
// .dat file's: a hand-written YAML parser would be a second, weaker one.
#include <yaml-cpp/yaml.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <map>
#include <set>
#include <span>
#include <string_view>
#include <tuple>

namespace rk4 {

namespace {

// Values the readable form cannot hold are written with one of these tags.
constexpr char kHexTag[] = "hex";         // bytes as stored, trailing zeros left out
constexpr char kStepsTag[] = "steps";     // a raw count of 25 ms steps
constexpr char kMinutesTag[] = "minutes"; // a raw count of minutes
constexpr char kRawTag[] = "raw";         // a stored number without a name

constexpr std::uint8_t kInputKindBits = 0x3F;
constexpr std::uint8_t kInputScaleBits = kDebounceMinutes | kTimerMinutes | kIntervalMinutes;
constexpr std::uint8_t kOutputScaleBits = kDebounceMinutes | kTimerMinutes;

struct NamedCode {
    std::uint8_t code;
    const char* name;
};

constexpr NamedCode kPointTypes[] = {
    {kPointUnused, "unused"},
    {kPointDigital, "digital"},
    {kPointWatchdog, "watchdog"},
    {kPointAnalog, "analog"},
    {kPointTotalizer, "totalizer"},
    {kPointInterval, "interval"},
    {kPointOnOffOutput, "on/off output"},
    {kPointTimerOutput, "timer output"},
};

constexpr NamedCode kInputTypes[] = {
    {kInputDigital, "digital"},     {kInputWatchdog, "watchdog"}, {kInputInterval, "interval"},
    {kInputTotalizer, "totalizer"}, {kInputAnalog, "analog"},
};

constexpr NamedCode kOutputTypes[] = {{kOutputOnOff, "on/off"}, {kOutputTimed, "timed"}};

const char* nameOf(std::span<const NamedCode> table, std::uint8_t code)
{
    for (const NamedCode& entry : table)
        if (entry.code == code)
            return entry.name;
    return nullptr;
}

std::optional<std::uint8_t> codeOf(std::span<const NamedCode> table, std::string_view name)
{
    for (const NamedCode& entry : table)
        if (name == entry.name)
            return entry.code;
    return std::nullopt;
}

bool oneOf(std::string_view name, std::initializer_list<std::string_view> names)
{
    return std::find(names.begin(), names.end(), name) != names.end();
}

bool isYesNoField(std::string_view name)
{
    return oneOf(name,
                 {"enabled", "autoAck", "ackRequest", "latching", "inactive", "isOutput", "basicMode", "callProgress"});
}
bool isGroupMaskField(std::string_view name) { return oneOf(name, {"groupMask", "outGroupMask"}); }
bool isSignedField(std::string_view name)
{
    return oneOf(name, {"decimalMaximum", "decimalMinimum", "highSetpointDecimal", "lowSetpointDecimal"});
}
bool isReserved(std::string_view name) { return name.starts_with("reserved"); }

bool printable(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= 0x20 && c <= 0x7E; });
}

bool allZero(std::span<const std::uint8_t> bytes)
{
    return std::all_of(bytes.begin(), bytes.end(), [](std::uint8_t b) { return b == 0; });
}

std::string hexText(std::span<const std::uint8_t> bytes)
{
    std::size_t length = bytes.size();
    while (length > 0 && bytes[length - 1] == 0)
        --length;
    static const char digits[] = "0123456789ABCDEF";
    std::string text;
    for (std::size_t i = 0; i < length; ++i) {
        if (i > 0)
            text += ' ';
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 0x0F];
    }
    return text;
}

// Tells nothing: used where a rule is run only to see whether it accepts.
class RecordingPrompter : public Prompter {
  public:
    Answer ask(const Message& message) override
    {
        if (message.icon == Icon::Error && refusal.empty())
            refusal = message.text;
        return Answer::Ok;
    }
    std::optional<std::string> chooseFile(const FileRequest&) override { return std::nullopt; }
    std::string refusal;
};

std::optional<std::uint16_t> checkedCount(const std::string& number, bool minutes, TimeKind kind,
                                          std::string* refusal = nullptr)
{
    RecordingPrompter prompter;
    const auto count = TimeField{kind, number, minutes}.validate(prompter);
    if (refusal)
        *refusal = prompter.refusal;
    return count;
}

// ---------------------------------------------------------------- writing

class Writer {
  public:
    explicit Writer(YAML::Emitter& out) : out(out) {}

    void key(const std::string& name) { out << YAML::Key << name << YAML::Value; }
    void text(const std::string& value) { out << YAML::DoubleQuoted << value; }
    void hex(std::span<const std::uint8_t> bytes) { out << YAML::LocalTag(kHexTag) << hexText(bytes); }
    void yesNo(std::uint32_t value)
    {
        if (value <= 1)
            out << (value ? "yes" : "no");
        else
            out << YAML::LocalTag(kRawTag) << value;
    }
    void bitList(std::uint8_t mask)
    {
        out << YAML::Flow << YAML::BeginSeq;
        for (int bit = 0; bit < 8; ++bit)
            if (mask & (1u << bit))
                out << bit + 1;
        out << YAML::EndSeq;
    }

    void name(const Name& field)
    {
        std::string shown = nameText(field);
        while (!shown.empty() && shown.back() == ' ')
            shown.pop_back();
        Name back;
        setName(back, shown);
        if (back == field && printable(shown))
            text(shown);
        else
            hex(std::span<const std::uint8_t>(reinterpret_cast<const std::uint8_t*>(field.data()), field.size()));
    }

    // A text held up to a NUL, with whatever lies after the NUL kept as hex.
    void withLeftover(std::span<const std::uint8_t> field, std::size_t end, const std::function<void()>& value)
    {
        const auto after = end < field.size() ? field.subspan(end + 1) : std::span<const std::uint8_t>();
        if (allZero(after)) {
            value();
            return;
        }
        out << YAML::BeginMap;
        key("value");
        value();
        key("after");
        out << hexText(after);
        out << YAML::EndMap;
    }

    void code(const DtmfCode& field)
    {
        const std::size_t end = std::find(field.begin(), field.end(), 0) - field.begin();
        const std::string shown = dtmfCodeText(field);
        DtmfCode back{};
        if (end < field.size() && shown.size() <= kMaxCodeDigits && !CheckDTMF(shown)) {
            storeDtmfCode(shown, back);
            if (std::equal(field.begin(), field.begin() + end + 1, back.begin())) {
                withLeftover(field, end, [&] { text(shown); });
                return;
            }
        }
        hex(field);
    }

    void directory(std::span<const std::uint8_t> field)
    {
        const std::size_t end = std::find(field.begin(), field.end(), 0) - field.begin();
        const DirLines lines = DecodeDirectory(field);
        std::vector<std::uint8_t> back(field.size(), 0);
        const bool fits = EncodeDirectory(lines, back);
        const std::size_t backEnd = std::find(back.begin(), back.end(), 0) - back.begin();
        if (!fits || backEnd != end || !std::equal(back.begin(), back.begin() + end, field.begin()) ||
            !showable(lines)) {
            hex(field);
            return;
        }
        withLeftover(field, end, [&] {
            out << YAML::BeginSeq;
            for (int i = 0; i < lineCount(lines); ++i) {
                out << YAML::Flow << YAML::BeginSeq;
                for (int c = 0; c < lines[i].commandCount(); ++c)
                    out << YAML::DoubleQuoted << commandText(lines[i].command[c], lines[i].parameter[c]);
                out << YAML::EndSeq;
            }
            out << YAML::EndSeq;
        });
    }

    // The editor's label without its leading blank, then the parameter: "[DIAL] 5551234".
    static std::string commandText(std::uint8_t letter, const std::string& parameter)
    {
        std::string label;
        ExpandCommand(letter, label);
        return label.substr(1) + (parameter.empty() ? "" : " " + parameter);
    }

    static bool showable(const DirLines& lines)
    {
        for (const DirLine& line : lines)
            for (int c = 0; c < line.commandCount(); ++c) {
                std::string label;
                ExpandCommand(line.command[c], label);
                if (label.size() < 2 || !printable(line.parameter[c]))
                    return false;
            }
        return true;
    }

    // The editor's text of the count when typing it back gives the same count.
    // Seconds show truncated to the thousandth, so 7 steps show 0.174 but only
    // 0.175 reads back as 7: the next thousandth is tried too.
    void time(std::uint16_t count, bool minutes, TimeKind kind)
    {
        std::vector<std::string> candidates;
        if (minutes) {
            candidates.push_back(std::to_string(count));
        } else {
            const std::string shown = timeFieldText(count, false);
            candidates.push_back(shown);
            const std::size_t point = shown.find('.');
            if (point != std::string::npos) {
                const long thousandths = std::stol(shown.substr(0, point)) * 1000 + std::stol(shown.substr(point + 1));
                char next[24];
                std::snprintf(next, sizeof next, "%ld.%03ld", (thousandths + 1) / 1000, (thousandths + 1) % 1000);
                candidates.push_back(next);
            }
        }
        for (const std::string& number : candidates)
            if (checkedCount(number, minutes, kind) == count) {
                out << number + (minutes ? " min" : " s");
                return;
            }
        out << YAML::LocalTag(minutes ? kMinutesTag : kStepsTag) << count;
    }

    void named(std::span<const NamedCode> table, std::uint8_t code)
    {
        if (const char* shown = nameOf(table, code))
            out << shown;
        else
            out << YAML::LocalTag(kRawTag) << static_cast<unsigned>(code);
    }

    // One field of a group, point or general record, chosen by its layout name.
    template <typename T>
    void operator()(std::size_t, const char* fieldName, const T& field)
    {
        const std::string_view name(fieldName);
        if constexpr (std::is_same_v<T, Name>) {
            key(fieldName);
            this->name(field);
        } else if constexpr (std::is_integral_v<T>) {
            if (isReserved(name) && field == 0)
                return;
            key(fieldName);
            if (isYesNoField(name))
                yesNo(field);
            else if (isGroupMaskField(name))
                bitList(field);
            else if (name == "type")
                named(kPointTypes, field);
            else if (isSignedField(name))
                out << static_cast<std::int16_t>(field);
            else
                out << static_cast<unsigned>(field);
        } else {
            if (isReserved(name) && allZero(field))
                return;
            key(fieldName);
            constexpr std::size_t size = std::tuple_size_v<T>;
            if (name == "serviceLine")
                directory(field);
            else if (name == "shiftDir")
                directoryLetters(field);
            else if (name == "slope" && size == 3)
                out << ((field[0] << 16) | (field[1] << 8) | field[size - 1]);
            else if (name == "unitSelector") {
                out << YAML::Flow << YAML::BeginSeq;
                for (std::uint8_t selector : field)
                    out << static_cast<unsigned>(selector);
                out << YAML::EndSeq;
            } else if constexpr (std::is_same_v<T, DtmfCode>) {
                if (name.ends_with("Code"))
                    code(field);
                else
                    hex(field);
            } else
                hex(field);
        }
    }

    template <std::size_t N>
    void directoryLetters(const std::array<std::uint8_t, N>& field)
    {
        if (std::any_of(field.begin(), field.end(), [](std::uint8_t d) { return d >= kDirectoryCount; })) {
            hex(field);
            return;
        }
        out << YAML::Flow << YAML::BeginSeq;
        for (std::uint8_t d : field)
            out << std::string(1, static_cast<char>('A' + d));
        out << YAML::EndSeq;
    }

    void port(const HardwarePort& entry, bool input)
    {
        out << YAML::BeginMap;
        key("type");
        if (input) {
            named(kInputTypes, entry.typeFlags & kInputKindBits);
            key("normallyLow");
            yesNo((entry.typeFlags & kPolarityBit) ? 1 : 0);
            key("bothChanges");
            yesNo((entry.typeFlags & kBothChanges) ? 1 : 0);
        } else {
            named(kOutputTypes, entry.typeFlags);
        }
        key("debounce");
        time(entry.debounce, entry.scaleFlags & kDebounceMinutes, TimeKind::Debounce);
        key("timer");
        time(entry.timer, entry.scaleFlags & kTimerMinutes, timerKind(entry, input));
        if (input) {
            key("intervalInMinutes");
            yesNo((entry.scaleFlags & kIntervalMinutes) ? 1 : 0);
            key("resetsTotalizers");
            bitList(entry.resetMask);
        } else if (entry.resetMask != 0) {
            key("resetMask");
            out << static_cast<unsigned>(entry.resetMask);
        }
        const std::uint8_t otherScale = entry.scaleFlags & ~(input ? kInputScaleBits : kOutputScaleBits);
        if (otherScale != 0) {
            key("otherScaleFlags");
            out << static_cast<unsigned>(otherScale);
        }
        if (entry.reserved != 0) {
            key("reserved");
            out << static_cast<unsigned>(entry.reserved);
        }
        out << YAML::EndMap;
    }

    static TimeKind timerKind(const HardwarePort& entry, bool input)
    {
        return input && (entry.typeFlags & kInputKindBits) == kInputWatchdog ? TimeKind::Watchdog : TimeKind::Timer;
    }

    YAML::Emitter& out;
};

// The shapes of a point slot nobody uses, written as one word each: as the
// defaults leave it, as a type change empties it, and all zero.
struct UnusedPoint {
    const char* word;
    PointRecord record;
};

std::vector<UnusedPoint> unusedPoints()
{
    PointRecord cleared;
    cleared.inactive = 1;
    PointRecord empty = cleared;
    empty.highReset = 1;
    empty.name.fill(' ');
    return {{"empty", empty}, {"cleared", cleared}, {"zeroed", PointRecord{}}};
}

template <typename Record>
void writeRecord(Writer& writer, const Record& record)
{
    writer.out << YAML::BeginMap;
    layout(record, writer);
    writer.out << YAML::EndMap;
}

// ---------------------------------------------------------------- reading

struct Refusal {
    TextFormError error;
};

[[noreturn]] void refuse(const YAML::Node& node, const std::string& key, const std::string& reason)
{
    const int line = node.IsDefined() && node.Mark().line >= 0 ? node.Mark().line + 1 : 0;
    throw Refusal{{line, key, reason}};
}

std::string tagOf(const YAML::Node& node)
{
    const std::string& tag = node.Tag();
    return tag.size() > 1 && tag[0] == '!' ? tag.substr(1) : std::string();
}

const std::string& scalar(const YAML::Node& node, const std::string& key)
{
    if (!node.IsScalar())
        refuse(node, key, "a single value is expected here");
    return node.Scalar();
}

long long integer(const YAML::Node& node, const std::string& key, long long low, long long high)
{
    const std::string& text = scalar(node, key);
    std::string_view digits(text);
    int base = 10;
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
        base = 16;
    }
    long long value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
    if (digits.empty() || result.ec != std::errc() || result.ptr != digits.data() + digits.size())
        refuse(node, key, "'" + text + "' is not a whole number");
    if (value < low || value > high)
        refuse(node, key, text + " is out of range (" + std::to_string(low) + " to " + std::to_string(high) + ")");
    return value;
}

// Hex bytes into `field`, the rest zero.
void hexInto(const YAML::Node& node, const std::string& key, std::span<std::uint8_t> field)
{
    const std::string& text = scalar(node, key);
    std::fill(field.begin(), field.end(), 0);
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size();) {
        if (text[i] == ' ') {
            ++i;
            continue;
        }
        unsigned value = 0;
        const auto result = std::from_chars(text.data() + i, text.data() + std::min(text.size(), i + 2), value, 16);
        if (result.ptr != text.data() + i + 2)
            refuse(node, key, "hex bytes are written as pairs of digits: '" + text + "'");
        if (count == field.size())
            refuse(node, key, "more than " + std::to_string(field.size()) + " bytes");
        field[count++] = static_cast<std::uint8_t>(value);
        i += 2;
    }
}

// A map whose keys are all known: each key is taken once, and finish()
// refuses whatever was not taken.
class MapReader {
  public:
    MapReader(const YAML::Node& node, std::string path) : node(node), path(std::move(path))
    {
        if (!node.IsMap())
            refuse(node, this->path, "a list of keys is expected here");
        // Looking keys up in the node itself walks the whole map every time.
        for (const auto& entry : node) {
            const std::string name = entry.first.IsScalar() ? entry.first.Scalar() : std::string();
            if (!children.emplace(name, entry.second).second)
                refuse(entry.first, place(name), "the key appears twice");
            order.emplace_back(name, entry.first);
        }
    }

    std::string place(const std::string& key) const { return path.empty() ? key : path + "." + key; }

    YAML::Node get(const std::string& key)
    {
        const auto child = children.find(key);
        if (child == children.end())
            refuse(node, place(key), "the key is missing");
        taken.insert(key);
        return child->second;
    }

    YAML::Node optional(const std::string& key)
    {
        taken.insert(key);
        const auto child = children.find(key);
        return child == children.end() ? YAML::Node(YAML::NodeType::Undefined) : child->second;
    }

    void finish() const
    {
        for (const auto& [name, keyNode] : order)
            if (!taken.contains(name))
                refuse(keyNode, place(name), "unknown key '" + name + "'");
    }

  private:
    YAML::Node node;
    std::string path;
    std::map<std::string, YAML::Node> children;
    std::vector<std::pair<std::string, YAML::Node>> order;
    std::set<std::string> taken;
};

bool yesNo(const YAML::Node& node, const std::string& key)
{
    const std::string& text = scalar(node, key);
    if (text == "yes")
        return true;
    if (text == "no")
        return false;
    refuse(node, key, "'" + text + "' is neither yes nor no");
}

std::uint8_t yesNoOrRaw(const YAML::Node& node, const std::string& key)
{
    if (tagOf(node) == kRawTag)
        return static_cast<std::uint8_t>(integer(node, key, 0, 255));
    return yesNo(node, key) ? 1 : 0;
}

std::uint8_t bitList(const YAML::Node& node, const std::string& key, const char* what)
{
    if (!node.IsSequence())
        refuse(node, key, std::string("a list of ") + what + " numbers 1 to 8 is expected here");
    std::uint8_t mask = 0;
    for (const auto& item : node)
        mask |= static_cast<std::uint8_t>(1u << (integer(item, key, 1, 8) - 1));
    return mask;
}

std::uint8_t named(const YAML::Node& node, const std::string& key, std::span<const NamedCode> table, int maxRaw)
{
    if (tagOf(node) == kRawTag)
        return static_cast<std::uint8_t>(integer(node, key, 0, maxRaw));
    const std::string& text = scalar(node, key);
    if (const auto code = codeOf(table, text))
        return *code;
    std::string choices;
    for (const NamedCode& entry : table)
        choices += (choices.empty() ? "" : ", ") + std::string(entry.name);
    refuse(node, key, "unknown type '" + text + "' (one of " + choices + ")");
}

// A value that may carry the bytes after its end as {value, after}.
template <typename ReadValue>
void withLeftover(const YAML::Node& node, const std::string& key, std::span<std::uint8_t> field, ReadValue readValue)
{
    if (!node.IsMap()) {
        readValue(node);
        return;
    }
    MapReader map(node, key);
    readValue(map.get("value"));
    const YAML::Node afterNode = map.get("after");
    map.finish();
    const std::size_t end = std::find(field.begin(), field.end(), 0) - field.begin();
    if (end >= field.size())
        refuse(afterNode, map.place("after"), "the value fills the field; nothing can follow it");
    std::vector<std::uint8_t> after(field.size() - end - 1);
    hexInto(afterNode, map.place("after"), after);
    std::copy(after.begin(), after.end(), field.begin() + static_cast<std::ptrdiff_t>(end + 1));
}

void readName(const YAML::Node& node, const std::string& key, Name& field)
{
    if (tagOf(node) == kHexTag) {
        hexInto(node, key, std::span(reinterpret_cast<std::uint8_t*>(field.data()), field.size()));
        return;
    }
    const std::string& text = scalar(node, key);
    if (text.size() > field.size())
        refuse(node, key, "a name has at most 16 characters");
    if (!printable(text))
        refuse(node, key, "a name holds letters, digits, blanks and punctuation only");
    setName(field, text);
}

void readCode(const YAML::Node& node, const std::string& key, DtmfCode& field)
{
    if (tagOf(node) == kHexTag) {
        hexInto(node, key, field);
        return;
    }
    field = {};
    withLeftover(node, key, field, [&](const YAML::Node& value) {
        const std::string& text = scalar(value, key);
        for (char c : text)
            if (CheckDTMF(std::string_view(&c, 1)))
                refuse(value, key, std::string("'") + c + "' is not a DTMF digit (0-9, A-D, *, # and ! only)");
        if (text.size() > kMaxCodeDigits)
            refuse(value, key, "a code has at most 7 digits");
        storeDtmfCode(text, field);
    });
}

std::pair<std::uint8_t, std::string> readCommand(const YAML::Node& node, const std::string& key)
{
    const std::string& text = scalar(node, key);
    const std::size_t close = text.find(']');
    const std::uint8_t letter =
        text.starts_with("[") && close != std::string::npos ? ShrinkCommand(" " + text.substr(0, close + 1)) : 0;
    if (letter == 0 || letter == kEmptySlot)
        refuse(node, key, "'" + text + "' does not start with a command such as [DIAL] or [WAIT]");
    std::string parameter = text.substr(close + 1);
    if (!parameter.empty() && parameter.front() == ' ')
        parameter.erase(0, 1);
    if (parameter.size() > kMaxParameterLength)
        refuse(node, key, "a command's parameter has at most 39 characters");
    if (!printable(parameter))
        refuse(node, key, "the parameter holds a character that cannot be stored");
    return {letter, parameter};
}

void readDirectory(const YAML::Node& node, const std::string& key, std::span<std::uint8_t> field)
{
    if (tagOf(node) == kHexTag) {
        hexInto(node, key, field);
        return;
    }
    std::fill(field.begin(), field.end(), 0);
    withLeftover(node, key, field, [&](const YAML::Node& value) {
        if (!value.IsSequence())
            refuse(value, key, "a list of lines is expected here");
        if (value.size() > static_cast<std::size_t>(kDirectoryLines))
            refuse(value, key, "a directory has at most 20 lines");
        DirLines lines{};
        for (std::size_t i = 0; i < value.size(); ++i) {
            const YAML::Node line = value[i];
            const std::string place = key + " line " + std::to_string(i + 1);
            if (!line.IsSequence() || line.size() == 0)
                refuse(line, place, "a line is a list of one or more commands");
            if (line.size() > static_cast<std::size_t>(kCommandsPerLine))
                refuse(line, place, "a line has at most 12 commands");
            for (std::size_t c = 0; c < line.size(); ++c)
                std::tie(lines[i].command[c], lines[i].parameter[c]) = readCommand(line[c], place);
        }
        if (!EncodeDirectory(lines, field))
            refuse(value, key, "the lines do not fit in the directory");
    });
}

std::uint16_t readTime(const YAML::Node& node, const std::string& key, TimeKind kind, bool& minutes)
{
    const std::string tag = tagOf(node);
    if (tag == kStepsTag || tag == kMinutesTag) {
        minutes = tag == kMinutesTag;
        return static_cast<std::uint16_t>(integer(node, key, 0, 65535));
    }
    const std::string& text = scalar(node, key);
    std::string number;
    if (text.ends_with(" s"))
        number = text.substr(0, text.size() - 2);
    else if (text.ends_with(" min"))
        number = text.substr(0, text.size() - 4);
    else
        refuse(node, key, "'" + text + "': give the time in seconds (\"1.000 s\") or minutes (\"5 min\")");
    minutes = text.ends_with(" min");
    float value = 0;
    const auto result = std::from_chars(number.data(), number.data() + number.size(), value);
    if (number.empty() || result.ec != std::errc() || result.ptr != number.data() + number.size() ||
        !std::isfinite(value) || (minutes && number.find('.') != std::string::npos))
        refuse(node, key, "'" + text + "' is not a time");
    std::string refusal;
    const auto count = checkedCount(number, minutes, kind, &refusal);
    if (!count)
        refuse(node, key, refusal);
    return *count;
}

// One field of a group, point or general record, chosen by its layout name.
struct FieldReader {
    MapReader& map;

    template <typename T>
    void operator()(std::size_t, const char* fieldName, T& field)
    {
        const std::string_view name(fieldName);
        const std::string key = map.place(fieldName);
        if constexpr (!std::is_same_v<T, Name>) {
            if (isReserved(name)) {
                readReserved(map.optional(fieldName), key, field);
                return;
            }
        }
        const YAML::Node node = map.get(fieldName);
        if constexpr (std::is_same_v<T, Name>) {
            readName(node, key, field);
        } else if constexpr (std::is_same_v<T, std::uint8_t>) {
            if (isYesNoField(name))
                field = yesNoOrRaw(node, key);
            else if (isGroupMaskField(name))
                field = bitList(node, key, "group");
            else if (name == "type")
                field = named(node, key, kPointTypes, 255);
            else
                field = static_cast<std::uint8_t>(integer(node, key, 0, 255));
        } else if constexpr (std::is_same_v<T, std::uint16_t>) {
            if (isSignedField(name))
                field = static_cast<std::uint16_t>(integer(node, key, -32768, 32767));
            else
                field = static_cast<std::uint16_t>(integer(node, key, 0, 65535));
        } else {
            if (tagOf(node) == kHexTag)
                hexInto(node, key, field);
            else if (name == "serviceLine")
                readDirectory(node, key, field);
            else if (name == "shiftDir")
                readLetters(node, key, field);
            else if (name == "slope" && std::tuple_size_v<T> == 3) {
                const auto value = integer(node, key, 0, 0xFFFFFF);
                field[0] = static_cast<std::uint8_t>(value >> 16);
                field[1] = static_cast<std::uint8_t>(value >> 8);
                field[std::tuple_size_v<T> - 1] = static_cast<std::uint8_t>(value);
            } else if (name == "unitSelector")
                readNumbers(node, key, field);
            else if constexpr (std::is_same_v<T, DtmfCode>) {
                if (name.ends_with("Code"))
                    readCode(node, key, field);
                else
                    hexInto(node, key, field);
            } else
                hexInto(node, key, field);
        }
    }

    template <typename T>
    static void readReserved(const YAML::Node& node, const std::string& key, T& field)
    {
        if constexpr (std::is_integral_v<T>)
            field = node.IsDefined() ? static_cast<T>(integer(node, key, 0, 255)) : 0;
        else if (node.IsDefined())
            hexInto(node, key, field);
        else
            field = {};
    }

    template <std::size_t N>
    static void readLetters(const YAML::Node& node, const std::string& key, std::array<std::uint8_t, N>& field)
    {
        if (!node.IsSequence() || node.size() != N)
            refuse(node, key, "a list of " + std::to_string(N) + " directory letters A to F is expected here");
        for (std::size_t i = 0; i < N; ++i) {
            const std::string& letter = scalar(node[i], key);
            if (letter.size() != 1 || letter[0] < 'A' || letter[0] >= 'A' + kDirectoryCount)
                refuse(node[i], key, "'" + letter + "' is not a directory letter A to F");
            field[i] = static_cast<std::uint8_t>(letter[0] - 'A');
        }
    }

    template <std::size_t N>
    static void readNumbers(const YAML::Node& node, const std::string& key, std::array<std::uint8_t, N>& field)
    {
        if (!node.IsSequence() || node.size() != N)
            refuse(node, key, "a list of " + std::to_string(N) + " numbers is expected here");
        for (std::size_t i = 0; i < N; ++i)
            field[i] = static_cast<std::uint8_t>(integer(node[i], key, 0, 255));
    }
};

template <typename Record>
void readRecordFields(const YAML::Node& node, const std::string& path, Record& record)
{
    MapReader map(node, path);
    layout(record, FieldReader{map});
    map.finish();
}

void readPort(const YAML::Node& node, const std::string& path, HardwarePort& entry, bool input)
{
    MapReader map(node, path);
    entry = HardwarePort{};
    if (input) {
        entry.typeFlags = named(map.get("type"), map.place("type"), kInputTypes, kInputKindBits);
        if (yesNo(map.get("normallyLow"), map.place("normallyLow")))
            entry.typeFlags |= kPolarityBit;
        if (yesNo(map.get("bothChanges"), map.place("bothChanges")))
            entry.typeFlags |= kBothChanges;
    } else {
        entry.typeFlags = named(map.get("type"), map.place("type"), kOutputTypes, 255);
    }
    bool minutes = false;
    entry.debounce = readTime(map.get("debounce"), map.place("debounce"), TimeKind::Debounce, minutes);
    if (minutes)
        entry.scaleFlags |= kDebounceMinutes;
    entry.timer = readTime(map.get("timer"), map.place("timer"), Writer::timerKind(entry, input), minutes);
    if (minutes)
        entry.scaleFlags |= kTimerMinutes;
    if (input) {
        if (yesNo(map.get("intervalInMinutes"), map.place("intervalInMinutes")))
            entry.scaleFlags |= kIntervalMinutes;
        entry.resetMask = bitList(map.get("resetsTotalizers"), map.place("resetsTotalizers"), "input");
    } else if (const YAML::Node mask = map.optional("resetMask"); mask.IsDefined()) {
        entry.resetMask = static_cast<std::uint8_t>(integer(mask, map.place("resetMask"), 0, 255));
    }
    if (const YAML::Node other = map.optional("otherScaleFlags"); other.IsDefined()) {
        const std::uint8_t used = input ? kInputScaleBits : kOutputScaleBits;
        const auto bits = static_cast<std::uint8_t>(integer(other, map.place("otherScaleFlags"), 0, 255));
        if (bits & used)
            refuse(other, map.place("otherScaleFlags"), "holds a bit that the times already give");
        entry.scaleFlags |= bits;
    }
    if (const YAML::Node reserved = map.optional("reserved"); reserved.IsDefined())
        entry.reserved = static_cast<std::uint8_t>(integer(reserved, map.place("reserved"), 0, 255));
    map.finish();
}

// The numbered entries of a list ("groups: {1: ..., 2: ...}"), each present once.
template <typename ReadEntry>
void readNumbered(MapReader& top, const std::string& key, int count, ReadEntry readEntry, char first = '1')
{
    MapReader map(top.get(key), top.place(key));
    for (int i = 0; i < count; ++i) {
        const std::string label = first == '1' ? std::to_string(i + 1) : std::string(1, static_cast<char>(first + i));
        readEntry(map.get(label), map.place(label), i);
    }
    map.finish();
}

} // namespace

std::string exportText(const Database& db)
{
    YAML::Emitter out;
    out.SetIndent(2);
    Writer writer(out);
    out << YAML::Comment("Rk4 configuration. Times are in seconds (s) or minutes (min); codes and dialled\n"
                         "numbers are DTMF digits; group and input lists are numbered from 1. Values\n"
                         "tagged !hex are bytes kept as stored, trailing zeros left out.");
    out << YAML::BeginMap;

    writer.key("general");
    writeRecord(writer, db.gen);

    writer.key("groups");
    out << YAML::BeginMap;
    for (int i = 0; i < kGroupCount; ++i) {
        writer.key(std::to_string(i + 1));
        writeRecord(writer, db.group[i]);
    }
    out << YAML::EndMap;

    for (const bool input : {true, false}) {
        writer.key(input ? "inputs" : "outputs");
        out << YAML::BeginMap;
        for (int i = 0; i < kInputCount; ++i) {
            writer.key(std::to_string(i + 1));
            writer.port(db.hardware.port[input ? i : kInputCount + i], input);
        }
        out << YAML::EndMap;
    }

    writer.key("points");
    out << YAML::BeginMap;
    const auto unusedPoints = rk4::unusedPoints();
    for (int i = 0; i < kPointCount; ++i) {
        writer.key(std::to_string(i + 1));
        const auto unused = std::find_if(unusedPoints.begin(), unusedPoints.end(),
                                         [&](const UnusedPoint& shape) { return shape.record == db.alm[i]; });
        if (unused != unusedPoints.end())
            out << unused->word;
        else
            writeRecord(writer, db.alm[i]);
    }
    out << YAML::EndMap;

    writer.key("directories");
    out << YAML::BeginMap;
    for (int i = 0; i < kDirectoryCount; ++i) {
        writer.key(std::string(1, static_cast<char>('A' + i)));
        writer.directory(db.dir[i].dirText);
    }
    out << YAML::EndMap;

    out << YAML::EndMap;
    return std::string(out.c_str()) + "\n";
}

std::string textFormPlace(const TextFormError& error)
{
    std::string text = error.line > 0 ? "line " + std::to_string(error.line) : std::string();
    if (!error.key.empty())
        text += (text.empty() ? "" : ", ") + error.key;
    return text;
}

std::string textFormErrorText(const TextFormError& error)
{
    const std::string place = textFormPlace(error);
    return place.empty() ? error.reason : place + ": " + error.reason;
}

ImportResult importText(std::string_view text)
{
    try {
        const YAML::Node root = YAML::Load(std::string(text));
        Database db;
        MapReader top(root, "");
        const auto unusedPoints = rk4::unusedPoints();
        readRecordFields(top.get("general"), "general", db.gen);
        readNumbered(top, "groups", kGroupCount, [&](const YAML::Node& node, const std::string& path, int i) {
            readRecordFields(node, path, db.group[i]);
        });
        for (const bool input : {true, false})
            readNumbered(top, input ? "inputs" : "outputs", kInputCount,
                         [&](const YAML::Node& node, const std::string& path, int i) {
                             readPort(node, path, db.hardware.port[input ? i : kInputCount + i], input);
                         });
        readNumbered(top, "points", kPointCount, [&](const YAML::Node& node, const std::string& path, int i) {
            if (!node.IsScalar()) {
                readRecordFields(node, path, db.alm[i]);
                return;
            }
            const auto unused = std::find_if(unusedPoints.begin(), unusedPoints.end(),
                                             [&](const UnusedPoint& shape) { return node.Scalar() == shape.word; });
            if (unused == unusedPoints.end())
                refuse(node, path, "'" + node.Scalar() + "': a point is its fields, or empty, cleared or zeroed");
            db.alm[i] = unused->record;
        });
        readNumbered(
            top, "directories", kDirectoryCount,
            [&](const YAML::Node& node, const std::string& path, int i) {
                readDirectory(node, path, db.dir[i].dirText);
            },
            'A');
        top.finish();
        return {db, {}};
    } catch (const Refusal& refusal) {
        return {std::nullopt, refusal.error};
    } catch (const YAML::Exception& error) {
        return {std::nullopt, {error.mark.line >= 0 ? error.mark.line + 1 : 0, {}, error.msg}};
    }
}

ImportResult readTextFormFile(const std::filesystem::path& path)
{
    const FileRead read = readFileBytes(path);
    if (!read)
        return {std::nullopt, {0, {}, "cannot read " + path.string() + ": " + read.cause()}};
    return importText(std::string_view(reinterpret_cast<const char*>(read.bytes.data()), read.bytes.size()));
}

SaveResult writeTextFormFile(const std::filesystem::path& path, const Database& db)
{
    const std::string text = exportText(db);
    return writeFileAtomically(path, std::string_view(text));
}

bool isTextFormName(const std::filesystem::path& path)
{
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return extension == ".yaml" || extension == ".yml";
}

} // namespace rk4
