#include "core/database/directory_codec.h"

#include "core/database/defaults.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace rk4;

namespace {

DirectoryRecord recordOf(const std::string& text)
{
    DirectoryRecord record;
    std::memcpy(record.dirText.data(), text.data(), std::min<std::size_t>(text.size(), 256));
    return record;
}

DirLine lineOf(std::uint8_t letter, std::string parameter)
{
    DirLine line;
    line.command[0] = letter;
    line.parameter[0] = std::move(parameter);
    return line;
}

} // namespace

TEST(DirectoryCodec, LabelsMapToLettersExactly)
{
    EXPECT_EQ(ShrinkCommand(" [DIAL]"), 'P');
    EXPECT_EQ(ShrinkCommand("[DIAL]"), 0);
    EXPECT_EQ(ShrinkCommand(" "), ' ');
    std::string label = "kept";
    ExpandCommand('U', label);
    EXPECT_EQ(label, "kept");
    ExpandCommand('X', label);
    EXPECT_EQ(label, " [AUTO ACK]");
}

TEST(DirectoryCodec, DecodesDialAndWaitFromStoredBytes)
{
    const DirLines lines = DecodeDirectory(recordOf("P1:::Y&W5&"));
    EXPECT_EQ(lineCount(lines), 2);
    EXPECT_EQ(lines[0], lineOf('P', "1000Y"));
    EXPECT_EQ(dirLineText(lines[1]), " [WAIT]5");

    const DirLines service = DecodeDirectory(factoryServiceLine());
    EXPECT_EQ(lineCount(service), 3);
    EXPECT_EQ(service[2], lineOf('P', std::string(kServiceNumber2) + "Y"));

    // What does not fit the editor's lines is dropped: bytes before the first
    // command, a 13th command, parameter characters past 39, lines past 20.
    std::string text = "12P5" + std::string(11, 'N') + "W9&Q" + std::string(45, '1') + "&";
    for (int i = 2; i < 25; ++i)
        text += "W" + std::to_string(i) + "&";
    const DirLines cut = DecodeDirectory(recordOf(text));
    EXPECT_EQ(cut[0].parameter[0], "5");
    EXPECT_EQ(cut[0].commandCount(), 12);
    EXPECT_EQ(cut[0].command[11], 'N');
    EXPECT_EQ(cut[1].parameter[0], std::string(39, '1'));
    EXPECT_EQ(lineCount(cut), 20);
}

TEST(DirectoryCodec, EmptyDirectoryIsALineEndAndANul)
{
    EXPECT_EQ(lineCount(DecodeDirectory(recordOf("&"))), 0);
    EXPECT_EQ(lineCount(DecodeDirectory(DirectoryRecord{})), 0);

    DirLines lines{};
    DirectoryRecord record;
    record.dirText.fill(0xEE);
    EXPECT_TRUE(EncodeDirectory(lines, record));
    EXPECT_EQ(std::vector(record.dirText.begin(), record.dirText.begin() + 3),
              (std::vector<std::uint8_t>{'&', 0, 0xEE}));
    EXPECT_EQ(usedBytes(lines), 1);

    // An empty line between used ones keeps its place, so nothing shown is
    // lost; the fill still counts up to the first empty line.
    lines[0] = lineOf('W', "5");
    lines[2] = lineOf('W', "6");
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(EncodeDirectory(lines).dirText.data())), "W5&&W6&");
    EXPECT_EQ(usedBytes(lines), 4);
}

TEST(DirectoryCodec, OnlyDialDtmfAndPatchUseTheDigitCodeAndTapKeepsSevenBits)
{
    const DirLines lines = DecodeDirectory(recordOf("Q=>?0;<!&Z:&W:0&R=&H\xC1\xC1\xB0&"));
    EXPECT_EQ(lines[0].parameter[0], "ABCD*#!");
    EXPECT_EQ(lines[1].parameter[0], "0");
    EXPECT_EQ(lines[2].parameter[0], ":0");
    EXPECT_EQ(lines[3].parameter[0], "=");
    EXPECT_EQ(lines[4].parameter[0], "\xC1"
                                     "A0");

    DirLines edited{};
    edited[0].command = {'P', 'W', 'N', 'Q', 'H'};
    edited[0].parameter = {"0*#Y!", "10", "", "0AD", "0#"};
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(EncodeDirectory(edited).dirText.data())), "P:;<Y!W10NQ:=0H0#&");
}

TEST(DirectoryCodec, EncodingNeverWritesPastTheRecord)
{
    DirLines full{};
    for (DirLine& line : full) {
        line.command.fill('P');
        line.parameter.fill(std::string(kMaxParameterLength, '0'));
    }
    std::array<std::uint8_t, 300> buffer{};
    EXPECT_FALSE(EncodeDirectory(full, std::span(buffer).first(256)));
    EXPECT_EQ(buffer[255], ':');
    EXPECT_EQ(std::count(buffer.begin() + 256, buffer.end(), 0), 44);
}

namespace {

// A directory the editors could have produced: parameters from the characters
// each field takes, at most 12 commands a line, 20 lines and the byte budget.
// Each directory gets its own scale, so both 20 short lines and lines of 12
// commands or of 39-character parameters occur.
DirLines randomDirectory(std::mt19937& random)
{
    const auto pick = [&](std::size_t n) { return static_cast<int>(random() % n); };
    const int maxCommands = std::array{2, 4, kCommandsPerLine}[pick(3)];
    const int maxParameter = std::array{3, 10, static_cast<int>(kMaxParameterLength)}[pick(3)];
    DirLines lines{};
    for (int i = 0, wanted = pick(kDirectoryLines + 1); i < wanted; ++i) {
        DirLines trial = lines;
        for (int c = 0, commands = 1 + pick(maxCommands); c < commands; ++c) {
            const std::uint8_t letter = "PQZWVNMXSHRFTGLU"[pick(16)];
            const std::string alphabet = hasDtmfParameter(letter) ? "0123456789*#ABCD!Y"
                                         : letter == kCmdWait     ? "0123456789"
                                                                  : "0123456789abcdxyz !#*.:;<=>?@";
            trial[i].command[c] = letter;
            for (int n = pick(maxParameter + 1); n > 0; --n)
                trial[i].parameter[c] += alphabet[pick(alphabet.size())];
        }
        if (usedBytes(trial) > kDirectoryByteBudget)
            break;
        lines = trial;
    }
    return lines;
}

} // namespace

TEST(DirectoryCodec, RandomDirectoriesWithinCapacityRoundTrip)
{
    std::mt19937 random(20240611);
    int longest = 0, widest = 0;
    for (int iteration = 0; iteration < 3000; ++iteration) {
        const DirLines lines = randomDirectory(random);
        longest = std::max(longest, lineCount(lines));
        for (const DirLine& line : lines)
            widest = std::max(widest, line.commandCount());

        // Written over whatever the record held before, as the editor writes it back.
        DirectoryRecord record;
        for (auto& byte : record.dirText)
            byte = static_cast<std::uint8_t>(random());
        ASSERT_TRUE(EncodeDirectory(lines, record));
        ASSERT_EQ(DecodeDirectory(record), lines) << iteration;
        DirectoryRecord again = record;
        ASSERT_TRUE(EncodeDirectory(DecodeDirectory(record), again));
        ASSERT_EQ(again, record) << iteration;
    }
    EXPECT_EQ(longest, kDirectoryLines);
    EXPECT_EQ(widest, kCommandsPerLine);
}

TEST(DirectoryCodec, WhatIsShownIsWhatIsWrittenBack)
{
    // Decoded, encoded in place and decoded again, every record shows the same.
    const auto stable = [](const DirectoryRecord& original) {
        const DirLines shown = DecodeDirectory(original);
        DirectoryRecord written = original;
        EncodeDirectory(shown, written);
        return DecodeDirectory(written) == shown && DecodeDirectory(EncodeDirectory(shown)) == shown;
    };
    // Lines after an empty first line, a TAP byte whose cleared form is a
    // command letter, a line end or the end, and lower-case tones.
    for (const std::string& text : {std::string("&W5&"), std::string("W5&&W6&"), std::string("H1\xC6\xA6\x80""2&"),
                                    std::string("Pab1cd&Qd&Z#a&")})
        EXPECT_TRUE(stable(recordOf(text))) << text;
    EXPECT_EQ(DecodeDirectory(EncodeDirectory(DecodeDirectory(recordOf("&W5&"))))[1].parameter[0], "5");
    EXPECT_EQ(DecodeDirectory(recordOf("H1\xC6\xC1&"))[0].parameter[0], "1\xC6""A");
    EXPECT_EQ(DecodeDirectory(recordOf("Pab1cd&"))[0].parameter[0], "AB1CD");

    // Random records, mostly structure bytes so that lines, commands and long
    // parameters all occur: each decodes in the editor's shape and is stable.
    std::mt19937 random(977);
    const std::string structure = "&&&PQZWHFGLMNRSTUVXY0123456789:;<=>?!abcdABCD#*\x80\xA6\xC6\xD0";
    for (int iteration = 0; iteration < 12000; ++iteration) {
        DirectoryRecord record;
        for (auto& byte : record.dirText) {
            const unsigned r = random();
            byte = r % 4 == 0 ? static_cast<std::uint8_t>(r >> 8) : structure[(r >> 8) % structure.size()];
        }
        if (iteration % 2)
            record.dirText[random() % 256] = 0;
        for (const DirLine& line : DecodeDirectory(record))
            for (int c = 0; c < kCommandsPerLine; ++c) {
                const bool used = c < line.commandCount();
                ASSERT_TRUE(used ? isCommandLetter(line.command[c]) : line.command[c] == 0) << iteration;
                ASSERT_LE(line.parameter[c].size(), used ? kMaxParameterLength : 0) << iteration;
            }
        ASSERT_TRUE(stable(record)) << iteration;
    }
}
