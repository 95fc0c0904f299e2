#include "core/cellular/cell_session.h"
#include "core/cellular/simulated_module.h"
#include "core/link/memory_transport.h"
#include "tests/support/scripted_prompter.h"

#include <gtest/gtest.h>

using namespace rk4;
using namespace rk4::cellular;

namespace {

// The dialog's session against a module in memory, on the manual clock.
struct Bench {
    explicit Bench(ModuleOptions options = {}) : module(link.unit(), std::move(options)) { link.unit().open(); }

    // Runs until the session is idle or `limit` ms have passed; returns the
    // ms from the first tick to the one that ended the sequence.
    Millis run(Millis limit = 60'000)
    {
        const Millis start = clock.now();
        Millis last = start;
        while (session.active() && clock.now() - start < limit) {
            last = clock.now();
            step();
        }
        return last - start;
    }
    // One tick of the dialog's timer, the module answering at once.
    void step()
    {
        session.poll(clock.now());
        module.poll();
        clock.advance(kCellTick);
    }
    int sentCount(const std::string& command) const
    {
        return static_cast<int>(std::count(session.sent().begin(), session.sent().end(), command));
    }

    ManualClock clock{5000};
    link::MemoryLink link;
    test::ScriptedPrompter prompter;
    SimulatedModule module;
    CellPhoneSession session{link.tool(), prompter};
};

} // namespace

TEST(CellSession, WriteProgramsTheModuleAndChecksBothNumbersBack)
{
    Bench bench;
    CellEntries entries{" 5551234567", "", true};
    ASSERT_EQ(bench.session.CmSendMIN(entries, bench.clock.now()), EntryCheck::Good);
    EXPECT_EQ(bench.session.status(), "");
    bench.run();

    EXPECT_EQ(
        bench.session.sent(),
        (std::vector<std::string>{"AT", "AT$KWMODE=1", "AT$KWSPC=482916", "AT$KWDIR=5551234567", "AT$KWMSID=5551234567",
                                  "AT$KWMNC=86", "AT$KWMODE=2", "AT$KWMSID?", "AT$KWDIR?"}));
    EXPECT_EQ(bench.module.min(), "5551234567");
    EXPECT_EQ(bench.module.mdn(), "5551234567");
    EXPECT_TRUE(bench.module.networkCodeSet());
    EXPECT_EQ(bench.session.minCheckPassed(), true);
    EXPECT_EQ(bench.session.mdnCheckPassed(), true);
    EXPECT_EQ(bench.session.status(), "MDN check passed.");
    EXPECT_TRUE(bench.session.lastSequenceSucceeded());
    EXPECT_TRUE(bench.prompter.messages().empty());
}

TEST(CellSession, ReadBackThatDiffersIsShownWithBothNumbers)
{
    ModuleOptions options;
    options.ignoreMinWrites = true;
    options.min = "5550000000";
    Bench bench(options);
    CellEntries entries{"5551234567", "5559876543", false};
    bench.session.CmSendMIN(entries, bench.clock.now());
    std::vector<std::string> statuses;
    while (bench.session.active()) {
        bench.step();
        if (statuses.empty() || statuses.back() != bench.session.status())
            statuses.push_back(bench.session.status());
    }
    EXPECT_NE(std::find(statuses.begin(), statuses.end(),
                        "MIN check failed!  Written MIN = 5551234567, Read MIN = 5550000000"),
              statuses.end());
    EXPECT_EQ(bench.session.minCheckPassed(), false);
    EXPECT_EQ(bench.session.mdnCheckPassed(), true);
    EXPECT_EQ(bench.session.status(), "MDN check passed.");
}

TEST(CellSession, RefusedEntriesStartNothing)
{
    Bench bench;
    CellEntries badMin{"(555) 123-4567", "5559876543", false};
    EXPECT_EQ(bench.session.CmSendMIN(badMin, 0), EntryCheck::BadMin);
    CellEntries badMdn{"5551234567", "555x876543", false};
    EXPECT_EQ(bench.session.CmSendMIN(badMdn, 0), EntryCheck::BadMdn);
    EXPECT_EQ(bench.prompter.texts(),
              (std::vector<std::string>{"Phone Number must be 10 digits", "Phone Number must be digits 0 to 9"}));
    EXPECT_FALSE(bench.session.active());
    EXPECT_FALSE(bench.link.tool().isOpen());
}

TEST(CellSession, LockedModuleEndsTheWriteAfterFourUnlockAttempts)
{
    ModuleOptions options;
    options.locked = true;
    Bench bench(options);
    CellEntries entries{"5551234567", "5559876543", false};
    bench.session.CmSendMIN(entries, bench.clock.now());
    bench.run();
    EXPECT_EQ(bench.sentCount("AT$KWSPC=482916"), 4);
    EXPECT_EQ(bench.sentCount("AT$KWDIR=5559876543"), 0);
    ASSERT_EQ(bench.prompter.messages().size(), 1u);
    EXPECT_EQ(bench.prompter.messages()[0].title, "ERROR");
    EXPECT_EQ(bench.prompter.messages()[0].text, "Error unlocking module.");
    EXPECT_EQ(bench.prompter.messages()[0].icon, Icon::Error);
    EXPECT_FALSE(bench.session.lastSequenceSucceeded());
    EXPECT_EQ(bench.module.min(), "0000000000");
}

TEST(CellSession, SilentOrWronglyAnsweringModuleFailsAfterThreeAttempts)
{
    struct Case {
        const char* fault;
        const char* command;
        const char* message;
        const char* status;
    };
    for (const Case& c : {
             Case{"silence:AT", "AT", "Communications failure - check cable connection.", "Communications failure."},
             Case{"error:AT$KWMODE=1", "AT$KWMODE=1", "Error putting module Online.", "Error putting module Online."},
             Case{"silence:AT$KWMNC", "AT$KWMNC=86", "Error setting network code.", "Error setting network code."},
         }) {
        ModuleOptions options;
        options.faults.push_back(*parseModuleFault(c.fault));
        Bench bench(options);
        CellEntries entries{"5551234567", "5559876543", false};
        bench.session.CmSendMIN(entries, bench.clock.now());
        bench.run();
        EXPECT_EQ(bench.sentCount(c.command), 3) << c.fault;
        EXPECT_EQ(bench.prompter.texts(), std::vector<std::string>{c.message}) << c.fault;
        EXPECT_EQ(bench.session.status(), c.status) << c.fault;
        EXPECT_FALSE(bench.session.active());
    }
}

TEST(CellSession, OneMissIsForgivenAndTheStepGoesOn)
{
    ModuleOptions options;
    options.faults.push_back(*parseModuleFault("silence:AT$KWDIR=:0:2"));
    Bench bench(options);
    CellEntries entries{"5551234567", "5559876543", false};
    bench.session.CmSendMIN(entries, bench.clock.now());
    bench.run();
    EXPECT_EQ(bench.sentCount("AT$KWDIR=5559876543"), 3);
    EXPECT_TRUE(bench.session.lastSequenceSucceeded());
    EXPECT_EQ(bench.module.mdn(), "5559876543");
}

TEST(CellSession, ReadFillsEveryDisplayOneStepEveryTwoTicks)
{
    ModuleOptions options;
    options.min = "5551234567";
    options.mdn = "5559876543";
    Bench bench(options);
    ASSERT_TRUE(bench.session.CmStartReading(bench.clock.now()));
    EXPECT_EQ(bench.session.activity(), CellActivity::Reading);
    const Millis taken = bench.run();

    // Ten steps, each sent at one tick and its reply taken at the next.
    EXPECT_EQ(taken, 19 * kCellTick);
    CellReadings expected;
    expected.model = "KX-414";
    expected.version = "M6.2B  PRL 52001";
    expected.bandClass = "800 MHz";
    expected.band = "B";
    expected.sid = "4152";
    expected.protocol = "IS-2000";
    expected.esn = "159 01223629";
    expected.min = "5551234567";
    expected.mdn = "5559876543";
    expected.rssi = 15;
    expected.rssiText = "Reading = 15";
    EXPECT_EQ(bench.session.readings(), expected);
    EXPECT_EQ(bench.session.status(), "Values read successfully");
    EXPECT_EQ(bench.session.sent().front(), "AT+IPR=19200");
}

TEST(CellSession, PollingShowsEachReadingAndReportsMissedOnes)
{
    ModuleOptions options;
    options.rssiValues = {31, 20, 99};
    options.faults.push_back(*parseModuleFault("silence:AT+CSQ?:3"));
    Bench bench(options);
    ASSERT_TRUE(bench.session.CmStartPolling(true, bench.clock.now()));
    std::vector<std::pair<int, std::string>> seen;
    for (int tick = 0; tick < 7; ++tick) {
        bench.step();
        seen.emplace_back(bench.session.readings().rssi, bench.session.status());
    }
    EXPECT_EQ(seen, (std::vector<std::pair<int, std::string>>{{0, ""},
                                                              {15, "RSSI read"},
                                                              {10, "RSSI read *"},
                                                              {0, "RSSI read"},
                                                              {0, "RSSI read"},
                                                              {0, "RSSI read"},
                                                              {0, "Error reading RSSI."}}));
    EXPECT_TRUE(bench.session.polling());
    ASSERT_TRUE(bench.session.CmStartPolling(false, bench.clock.now()));
    EXPECT_FALSE(bench.session.active());
}

TEST(CellSession, StartingAReadStopsPollingAndAPortThatWillNotOpenSaysSo)
{
    Bench bench;
    bench.session.CmStartPolling(true, bench.clock.now());
    bench.step();
    ASSERT_TRUE(bench.session.CmStartReading(bench.clock.now()));
    EXPECT_FALSE(bench.session.polling());
    bench.session.CloseHandles();
    EXPECT_FALSE(bench.link.tool().isOpen());

    bench.link.refuseOpen("There is no device /dev/ttyUSB0.");
    EXPECT_FALSE(bench.session.CmStartReading(bench.clock.now()));
    EXPECT_EQ(bench.session.status(), "COM port failure.");
    ASSERT_EQ(bench.prompter.messages().size(), 1u);
    EXPECT_EQ(bench.prompter.messages()[0].text, "Error opening COM port");
}
