#include "core/basic/simple_check.h"

#include "core/database/directory_codec.h"

namespace rk4 {

namespace {

struct DirectoryCommands {
    bool advanced = false; // a command other than DIAL and VOICE
    bool dialOrVoice = false;
};

// Walks a directory as the unit does: stop at NUL or at a line end followed by
// NUL; only the command letters start commands, every other byte is a parameter
// ('Y' after a dialled number included).
DirectoryCommands scan(const DirectoryRecord& directory)
{
    DirectoryCommands found;
    const auto& text = directory.dirText;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const std::uint8_t byte = text[i];
        if (byte == 0 || (byte == '&' && i + 1 < text.size() && text[i + 1] == 0))
            break;
        if (!isCommandLetter(byte))
            continue;
        if (byte == 'P' || byte == 'V')
            found.dialOrVoice = true;
        else
            found.advanced = true;
    }
    return found;
}

constexpr std::uint8_t kPolarityBit = 0x80;
constexpr std::uint8_t kNotDigitalBits = 0x1F;
constexpr std::uint8_t kMinutesBit = 0x01;

// Records one rule's offenders; the rule enters the list once, when it first fails.
class Recorder {
  public:
    explicit Recorder(SimpleCheck& check) : check(check) {}
    void offend(int code, int index)
    {
        check.offenders[code][index] = 1;
        raise(code);
    }
    void raise(int code)
    {
        if (check.problems & ruleBit(code))
            return;
        check.problems |= ruleBit(code);
        check.list.push_back(code);
    }

  private:
    SimpleCheck& check;
};

} // namespace

std::uint32_t CheckForSimpleDir(const Database& db)
{
    std::uint32_t mask = 0;
    for (int d = 0; d < kDirectoryCount; ++d) {
        const DirectoryCommands found = scan(db.dir[d]);
        if (found.advanced)
            mask |= d == 0 ? kDirAdvancedInA : kDirAdvancedInBtoF;
        if (found.dialOrVoice && d >= 2)
            mask |= kDirDialInCtoF;
    }
    return mask;
}

bool directoryHasAdvancedCommands(const Database& db, int directory) { return scan(db.dir[directory]).advanced; }

std::uint32_t ruleBit(int code)
{
    switch (code) {
    case kRuleInputType: return 0x1;
    case kRuleInputDebounce: return 0x2;
    case kRuleInputPolarity: return 0x4;
    case kRuleAlarmType: return 0x8;
    case kRuleAlarmGroup: return 0x10;
    case kRuleHighPointType: return 0x80;
    case kRuleHighPointActive: return 0x400;
    case kRuleAlarmLatching: return 0x20;
    case kRuleOutputPoint: return 0x40;
    case kRuleGroupEnabled: return 0x100;
    case kRuleAlarmIsOutput: return 0x200;
    case kRuleDirectoryCtoF: return 0x10000;
    case kRuleDirectoryCommands: return 0x20000;
    default: return 0;
    }
}

SimpleCheck CheckForSimple(const Database& db)
{
    SimpleCheck check;
    Recorder record(check);
    const auto& input = db.hardware.port;
    const auto& point = db.alm;

    for (int i = 0; i < kInputCount; ++i)
        if (input[i].typeFlags & kNotDigitalBits)
            record.offend(kRuleInputType, i);
    for (int i = 1; i < kInputCount; ++i)
        if (input[i].debounce != input[0].debounce ||
            (input[i].scaleFlags & kMinutesBit) != (input[0].scaleFlags & kMinutesBit))
            record.offend(kRuleInputDebounce, i);
    for (int i = 1; i < kInputCount; ++i)
        if ((input[i].typeFlags & kPolarityBit) != (input[0].typeFlags & kPolarityBit))
            record.offend(kRuleInputPolarity, i);

    for (int p = 0; p < 8; ++p)
        if (point[p].type != kPointDigital || point[p].isOutput != 0)
            record.offend(kRuleAlarmType, p);
    for (int p = 0; p < 8; ++p)
        if (static_cast<std::int8_t>(point[p].groupMask) > 2)
            record.offend(kRuleAlarmGroup, p);
    for (int p = 16; p < kPointCount; ++p)
        if (point[p].type != kPointUnused)
            record.offend(kRuleHighPointType, p);
    for (int p = 16; p < kPointCount; ++p)
        if (point[p].inactive == 0)
            record.offend(kRuleHighPointActive, p);
    for (int p = 1; p < 8; ++p)
        if (point[p].latching != point[0].latching)
            record.offend(kRuleAlarmLatching, p);
    // Points 9 to 11 only: the Basic template makes outputs of exactly these.
    for (int p = 8; p < 11; ++p)
        if (point[p].isOutput == 0)
            record.offend(kRuleOutputPoint, p);

    for (int g = 2; g < kGroupCount; ++g)
        if (db.group[g].enabled)
            record.offend(kRuleGroupEnabled, g);
    for (int p = 0; p < 8; ++p)
        if (point[p].isOutput)
            record.offend(kRuleAlarmIsOutput, p);

    const std::uint32_t directories = CheckForSimpleDir(db);
    if (directories & kDirDialInCtoF)
        record.raise(kRuleDirectoryCtoF);
    if (directories & (kDirAdvancedInA | kDirAdvancedInBtoF))
        record.raise(kRuleDirectoryCommands);
    return check;
}

} // namespace rk4
