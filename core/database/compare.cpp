#include "core/database/compare.h"

#include "core/database/layout.h"

#include <string_view>

namespace rk4 {

namespace {

// One field's name and value, read off a record through its layout.
struct FieldValue {
    const char* name;
    bool number;
    std::uint32_t value;
    std::vector<std::uint8_t> bytes;
};

struct ValueReader {
    std::vector<FieldValue>& out;

    template <typename T>
    void operator()(std::size_t, const char* name, const T& field)
    {
        if constexpr (std::is_integral_v<T>)
            out.push_back({name, true, field, {}});
        else
            out.push_back({name, false, 0, std::vector<std::uint8_t>(field.begin(), field.end())});
    }
};

template <typename Record>
std::vector<FieldValue> values(const Record& record)
{
    std::vector<FieldValue> out;
    layout(record, ValueReader{out});
    return out;
}

// The fields of one record pair that differ, each under the record's name.
// Arrays are compared whole; numbers carry both values.
template <typename Record>
void collect(const std::string& record, const Record& expected, const Record& actual, TransferStamp stamp,
             std::vector<FieldDifference>& out)
{
    const auto wanted = values(expected);
    const auto found = values(actual);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const FieldValue& a = wanted[i];
        const FieldValue& b = found[i];
        if (a.value == b.value && a.bytes == b.bytes)
            continue;
        if (stamp == TransferStamp::Ignore && std::string_view(a.name) == "transferStamp")
            continue;
        FieldDifference difference{record + " " + a.name, {}, {}};
        if (a.number) {
            difference.expected = std::to_string(a.value);
            difference.actual = std::to_string(b.value);
        }
        out.push_back(std::move(difference));
    }
}

} // namespace

std::vector<FieldDifference> compareDatabases(const Database& expected, const Database& actual, TransferStamp stamp)
{
    std::vector<FieldDifference> out;
    for (int i = 0; i < kDirectoryCount; ++i) {
        if (expected.dir[i].dirText != actual.dir[i].dirText)
            out.push_back({std::string("directory ") + static_cast<char>('A' + i) + " dirText", {}, {}});
    }
    for (int i = 0; i < kGroupCount; ++i)
        collect("group " + std::to_string(i + 1), expected.group[i], actual.group[i], stamp, out);
    for (int i = 0; i < kPointCount; ++i)
        collect("point " + std::to_string(i + 1), expected.alm[i], actual.alm[i], stamp, out);
    collect("general", expected.gen, actual.gen, stamp, out);
    // Entries 0..7 are the inputs, 8..15 the outputs.
    for (int i = 0; i < kPortCount; ++i) {
        const std::string record = i < kInputCount ? "hardware input " + std::to_string(i + 1)
                                                   : "hardware output " + std::to_string(i - kInputCount + 1);
        collect(record, expected.hardware.port[i], actual.hardware.port[i], stamp, out);
    }
    return out;
}

std::string differenceText(const FieldDifference& difference, const std::string& expectedLabel,
                           const std::string& actualLabel)
{
    if (difference.expected.empty())
        return difference.field;
    return difference.field + ": " + difference.expected + " " + expectedLabel + ", " + difference.actual + " " +
           actualLabel;
}

} // namespace rk4
