#include "core/cellular/cell_commands.h"
#include "core/cellular/cell_receiver.h"
#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

using namespace rk4;
using namespace rk4::cellular;

TEST(CellCommands, TextsCarryTheEntriesAndEndInCrLf)
{
    EXPECT_EQ(MakeTXMessage(CELL_CHECK), "AT\r\n");
    EXPECT_EQ(MakeTXMessage(CELL_UNLOCK), "AT$KWSPC=482916\r\n");
    EXPECT_EQ(MakeTXMessage(CELL_WRITE_MIN, "5551234567", "5559876543"), "AT$KWMSID=5551234567\r\n");
    EXPECT_EQ(MakeTXMessage(CELL_WRITE_MDN, "5551234567", "5559876543"), "AT$KWDIR=5559876543\r\n");
    EXPECT_EQ(MakeTXMessage(CELL_NETWORK_CODE), "AT$KWMNC=86\r\n");
    EXPECT_EQ(MakeTXMessage(0x02), "");
}

TEST(CellCommands, SignalReadingsAreHalvedWithinTheirLimits)
{
    struct Case {
        const char* line;
        int reading;
    };
    for (const Case& c : {Case{"+CSQ: 31,99", 15}, Case{"+CSQ: 99,99", 0}, Case{"+CSQ: 40,0", 0},
                          Case{"+CSQ: 33,99", 16}, Case{"+CSQ: 75,0", 0}, Case{"+CSQ: 1,99", 0}, Case{"+CSQ: ,99", 0},
                          Case{"+CSQ: -9,99", 0}, Case{"+CSQ: 12", 6}}) {
        CellReadings readings;
        readings.rssi = 7;
        ASSERT_TRUE(InterpretResponse(CELL_RSSI, c.line, readings)) << c.line;
        EXPECT_EQ(readings.rssi, c.reading) << c.line;
        EXPECT_EQ(readings.rssiText, "Reading = " + std::to_string(c.reading)) << c.line;
    }
}

TEST(CellCommands, EsnShowsManufacturerAndSerialWithOneLeadingZero)
{
    CellReadings readings;
    ASSERT_TRUE(InterpretResponse(CELL_ESN, "+GSN: 9F12ABCD", readings));
    EXPECT_EQ(readings.esn, "159 01223629");
    EXPECT_EQ(esnText("05000001"), "005 01"); // one zero only, however short
    EXPECT_EQ(esnText("ffFFFFFF"), "255 16777215");
    EXPECT_EQ(esnText("9F12ABC"), "");
    EXPECT_FALSE(InterpretResponse(CELL_ESN, "+GSN: 9F12ABXD", readings));
    EXPECT_FALSE(InterpretResponse(CELL_ESN, "+GSN: ", readings));
    EXPECT_EQ(readings.esn, "159 01223629");
}

TEST(CellCommands, ReadRepliesFillTheirDisplaysByPosition)
{
    CellReadings readings;
    ASSERT_TRUE(InterpretResponse(CELL_MODEL, "+GMM: KX-414 DUAL BAND", readings));
    EXPECT_EQ(readings.model, "KX-414 DUA");

    ASSERT_TRUE(InterpretResponse(CELL_READ_SID, "+CSS: 2,B,4152", readings));
    EXPECT_EQ(readings.bandClass, "1900 MHz");
    EXPECT_EQ(readings.band, "B");
    EXPECT_EQ(readings.sid, "4152");
    ASSERT_TRUE(InterpretResponse(CELL_READ_SID, "+CSS: 0,A,123456789012", readings));
    EXPECT_EQ(readings.bandClass, "Unsupported");
    EXPECT_EQ(readings.sid, "1234567890");
    ASSERT_TRUE(InterpretResponse(CELL_READ_SID, "+CSS: 1", readings));
    EXPECT_EQ(readings.bandClass, "800 MHz");
    EXPECT_EQ(readings.band, "");

    ASSERT_TRUE(InterpretResponse(CELL_VERSION, "+GMR: S/W VER: M6.2B 2003 PRL 52001 extra text here", readings));
    EXPECT_EQ(readings.version, "M6.2B  PRL 52001 extra text");
    ASSERT_TRUE(InterpretResponse(CELL_VERSION, "+GMR: S/W VER: M6.2B", readings));
    EXPECT_EQ(readings.version, "M6.2B");

    for (const auto& [digit, name] : std::vector<std::pair<const char*, const char*>>{
             {"$QCPREV: 1", "JSTD008"}, {"$QCPREV: 3", "IS-95B"}, {"$QCPREV: 6", "IS-2000"}, {"$QCPREV: 4", ""}}) {
        ASSERT_TRUE(InterpretResponse(CELL_PROTOCOL, digit, readings));
        EXPECT_EQ(readings.protocol, name) << digit;
    }

    ASSERT_TRUE(InterpretResponse(CELL_READ_MIN, "$KWMSID: 555123456789", readings));
    EXPECT_EQ(readings.min, "5551234567");
    ASSERT_TRUE(InterpretResponse(CELL_READ_MDN, "$KWDIR: 5559876543", readings));
    EXPECT_EQ(readings.mdn, "5559876543");
}

TEST(CellCommands, WriteRepliesAreAcceptedOnlyInTheirOwnWords)
{
    struct Case {
        std::uint8_t command;
        const char* line;
        bool accepted;
    };
    for (const Case& c : {
             Case{CELL_CHECK, "OK", true},
             Case{CELL_CHECK, "OK ", false},
             Case{CELL_BAUD, "OK", true},
             Case{CELL_ONLINE, "MODE CHANGED", true},
             Case{CELL_ONLINE, "MODE", false},
             Case{CELL_RESET, "MODE RESET", true},
             Case{CELL_UNLOCK, "SPC UNLOCKED", true},
             Case{CELL_UNLOCK, "ERROR", false},
             Case{CELL_WRITE_MDN, "DIRECTORY NUMBER CHANGED", true},
             Case{CELL_WRITE_MIN, "MOBILE STATION ID CHANGED", true},
             Case{CELL_NETWORK_CODE, "MOBILE NETWORK CODE CHANGED", true},
             Case{CELL_NETWORK_CODE, "MOBILE STATION ID CHANGED", false},
             Case{CELL_MODEL, "+GMR: S/W VER: 1", false},
         }) {
        CellReadings readings;
        EXPECT_EQ(InterpretResponse(c.command, c.line, readings), c.accepted) << c.line;
    }
}

TEST(CellEntries, MinAndMdnMustBeTenCharactersOfDigitsAndSeparators)
{
    struct Case {
        const char* min;
        const char* message; // nullptr: accepted
        const char* stored;
    };
    for (const Case& c : {
             Case{" 5551234567", nullptr, "5551234567"},
             Case{"5551234567", nullptr, "5551234567"},
             Case{"555-123-45", nullptr, "555-123-45"},
             Case{"  5551234567", "Phone Number must be 10 digits", " 5551234567"},
             Case{"(555) 123-4567", "Phone Number must be 10 digits", "(555) 123-4567"},
             Case{"555123456", "Phone Number must be 10 digits", "555123456"},
             Case{"555123456A", "Phone Number must be digits 0 to 9", "555123456A"},
             Case{"", "Phone Number must be 10 digits", ""},
         }) {
        test::ScriptedPrompter prompter;
        CellEntries entries{c.min, "5559876543", true};
        EXPECT_EQ(CheckMIN(entries, &prompter), c.message != nullptr) << c.min;
        EXPECT_EQ(entries.min, c.stored);
        EXPECT_EQ(entries.mdn, c.stored) << "the same-as-MIN option copies the MIN as checked";
        if (c.message)
            EXPECT_EQ(prompter.texts(), std::vector<std::string>{c.message}) << c.min;
        else
            EXPECT_TRUE(prompter.messages().empty());
    }

    test::ScriptedPrompter prompter;
    CellEntries entries{"5551234567", " 555987654", false};
    EXPECT_FALSE(CheckMDN(entries, &prompter)) << "only the MIN loses a leading blank";
    entries.mdn = "555.987.65";
    EXPECT_TRUE(CheckMDN(entries, nullptr));
    EXPECT_TRUE(prompter.messages().empty()) << "a silent check says nothing";
}

namespace {

void feed(CellReceiver& receiver, std::string_view text)
{
    for (const char c : text)
        receiver.accept(static_cast<std::uint8_t>(c));
}

} // namespace

TEST(CellReceiver, DropsEchoAndWaitsForTheSelectedLine)
{
    CellReceiver receiver;
    receiver.clear(WaitFor::S);
    feed(receiver, "AT$KWSPC=482916\r\n\r\nERROR\r\n");
    EXPECT_FALSE(receiver.lineReady()) << "echo and a line of another letter are dropped";
    feed(receiver, "\r\nSPC UNLOCKED\r\n\r\nOK\r\n");
    ASSERT_TRUE(receiver.lineReady());
    EXPECT_EQ(receiver.line(), "SPC UNLOCKED") << "the held line keeps out what follows";

    receiver.clear(WaitFor::Any);
    EXPECT_FALSE(receiver.lineReady());
    feed(receiver, "XT dropped\rOK\n");
    ASSERT_TRUE(receiver.lineReady());
    EXPECT_EQ(receiver.line(), "OK");

    receiver.clear(WaitFor::D);
    feed(receiver, "MODE CHANGED\nDIRECTORY NUMBER CHANGED\n");
    EXPECT_EQ(receiver.line(), "DIRECTORY NUMBER CHANGED");
    receiver.clear(WaitFor::M);
    feed(receiver, "MOBILE STATION ID CHANGED");
    EXPECT_FALSE(receiver.lineReady()) << "a line completes only at its end";
    feed(receiver, "\r");
    EXPECT_EQ(receiver.line(), "MOBILE STATION ID CHANGED");
}

TEST(CellReceiver, CutsLongLinesAtTheBufferSize)
{
    CellReceiver receiver;
    receiver.clear(WaitFor::Any);
    feed(receiver, "+GMM: " + std::string(300, 'x') + "\n");
    ASSERT_TRUE(receiver.lineReady());
    EXPECT_EQ(receiver.line().size(), kReplyLineSize - 1);
}
