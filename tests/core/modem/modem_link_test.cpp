#include "core/database/defaults.h"
#include "core/link/frame.h"
#include "core/modem/line_errors.h"
#include "core/modem/modem_link.h"
#include "core/modem/simulated_modem.h"
#include "tests/core/link/link_test_support.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace rk4;
using namespace rk4::modem;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

const std::string kSummaryQuestion = "Do you want to check the Summary for warnings before programming?";

// A port that never opens, as a slot with nothing plugged in.
class MissingPort final : public link::Transport {
  public:
    link::OpenResult open() override { return {false, "No such file or directory"}; }
    bool isOpen() const override { return false; }
    void close() override {}
    bool write(std::span<const std::uint8_t>) override { return false; }
    bool allSent() override { return true; }
    std::size_t read(std::span<std::uint8_t>) override { return 0; }
    void purge(link::Purge) override {}
};

class ModemLinkTest : public ::testing::Test {
  protected:
    TempDir dir;
    ManualClock clock{1000};
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<link::MemoryLink> line = std::make_unique<link::MemoryLink>();
    std::unique_ptr<SimulatedDialUp> dialUp;
    std::unique_ptr<ModemLink> modem;
    std::vector<std::string> statuses;
    std::vector<CallState> states;

    // The modem's tool side, lent to the link.
    std::shared_ptr<link::Transport> toolEnd()
    {
        return std::shared_ptr<link::Transport>(&line->tool(), [](link::Transport*) {});
    }

    void SetUp() override
    {
        space.image.gen.basicMode = 0;
        ClearDatabase(space.image, false);
    }

    void make(ModemOptions options = {}, bool missingFirst = false)
    {
        dialUp = std::make_unique<SimulatedDialUp>(line->unit(), options);
        std::vector<ModemCandidate> ports;
        if (missingFirst)
            ports.push_back({"COM 1", std::make_shared<MissingPort>()});
        ports.push_back({"COM 2", toolEnd()});
        ModemSettings settings;
        settings.location.area = "555";
        modem = std::make_unique<ModemLink>(space, prompter, std::move(ports), settings);
        modem->askNumber = [](const DialledNumber&) { return enteredNumber("1", "555", "CALL-NOW"); };
        modem->onStatus = [this](const std::string& text) { statuses.push_back(text); };
        modem->onCallState = [this](CallState state, const std::string&) { states.push_back(state); };
    }

    // Runs the modem and the link together on the 100 ms timer until `done`.
    void runUntil(const std::function<bool()>& done, Millis limit = 600000)
    {
        const Millis end = clock.now() + limit;
        while (!done() && clock.now() < end) {
            for (int i = 0; i < 10; ++i) {
                dialUp->poll(clock.now());
                clock.advance(10);
            }
            modem->tick(clock.now());
        }
        ASSERT_TRUE(done()) << "not reached by " << clock.now();
    }

    void dial()
    {
        modem->CmDial(clock.now());
        runUntil([&] { return modem->view().dialEnabled || modem->connected(); });
    }

    bool saw(const std::string& status) const
    {
        return std::find(statuses.begin(), statuses.end(), status) != statuses.end();
    }
    const std::vector<std::string>& modemHeard() { return dialUp->modem().commands(); }
    bool modemHeardCommand(const std::string& command)
    {
        return std::find(modemHeard().begin(), modemHeard().end(), command) != modemHeard().end();
    }
};

} // namespace

// The modem is looked for on each port in turn: COM 1 has nothing plugged in.
TEST_F(ModemLinkTest, DialsWritesReadsBackAndHangsUp)
{
    make({}, true);
    dial();
    ASSERT_TRUE(modem->connected());
    EXPECT_EQ(modem->modemPort(), "COM 2");
    EXPECT_EQ(dialUp->modem().dialled(), std::vector<std::string>{"2255669"}) << "the local number of this area";
    for (const char* text : {"Getting the telephone number.", "Call setup in progress, please wait.",
                             "Dial Tone Detected.", "Ringing Detected.", "Call Connected"})
        EXPECT_TRUE(saw(text)) << text;
    EXPECT_EQ(states, (std::vector<CallState>{CallState::DialTone, CallState::Ringback, CallState::Connected}));
    EXPECT_TRUE(modem->view().transfersEnabled);
    EXPECT_TRUE(modem->view().disconnectEnabled);
    EXPECT_FALSE(modem->view().dialEnabled);

    space.image.alm[0].port = 0x0102;
    ASSERT_TRUE(modem->CmSendData(clock.now()));
    EXPECT_FALSE(modem->view().transfersEnabled) << "one transfer at a time";
    runUntil([&] { return !modem->transferRunning(); });
    EXPECT_EQ(modem->view().status, "Database transferred to the Rk4");
    const Database sent = space.image;
    const auto& stored = dialUp->unit().store.database;
    ASSERT_EQ(stored.size(), dbasesize);
    EXPECT_EQ(Database::fromImage(std::span<const std::uint8_t, dbasesize>(stored.data(), dbasesize)), sent);

    ClearDatabase(space.image, false);
    ASSERT_TRUE(modem->CmReceiveData(clock.now()));
    runUntil([&] { return !modem->transferRunning(); });
    EXPECT_EQ(modem->view().status, "Configuration data read from the Rk4");
    EXPECT_EQ(space.image, sent) << "read back byte for byte";
    EXPECT_TRUE(modem->view().transfersEnabled);

    modem->CmDisconnect(clock.now());
    EXPECT_TRUE(saw("Disconnecting line."));
    EXPECT_TRUE(saw("Terminating modem link."));
    runUntil([&] { return modem->view().dialEnabled; });
    const auto& unitHeard = dialUp->unit().requests();
    EXPECT_EQ(unitHeard.back(), link::CMD_HANGUP);
    EXPECT_TRUE(modemHeardCommand("+++"));
    EXPECT_TRUE(modemHeardCommand("ATH"));
    EXPECT_FALSE(dialUp->modem().onCall());
    EXPECT_EQ(states.back(), CallState::Idle);
    EXPECT_FALSE(modem->view().closeRequested);
    EXPECT_FALSE(prompter.saw("Error Placing Call."));

    modem->telephonyShutdown(clock.now());
    runUntil([&] { return modem->finished(); });
    EXPECT_EQ(modemHeard().back(), "ATZ") << "the modem gets its own profile back";
}

TEST_F(ModemLinkTest, ACallThatFailsShowsWhyAndLetsTheTechnicianDialAgain)
{
    struct Case {
        LineFault fault;
        const char* word;
    };
    for (const Case& c : {Case{LineFault::Busy, "BUSY"}, Case{LineFault::NoCarrier, "NO CARRIER"},
                          Case{LineFault::NoDialtone, "NO DIALTONE"}, Case{LineFault::NoAnswer, "NO ANSWER"}}) {
        SCOPED_TRACE(c.word);
        statuses.clear();
        prompter.clear();
        line = std::make_unique<link::MemoryLink>();
        ModemOptions options;
        options.fault = c.fault;
        make(options);
        dial();
        EXPECT_FALSE(modem->connected());
        EXPECT_EQ(modem->view().status, "Error Placing Call.");
        ASSERT_FALSE(prompter.messages().empty());
        EXPECT_EQ(prompter.messages().back().text, "Error Placing Call.");
        EXPECT_EQ(prompter.messages().back().detail, std::string("The modem said ") + c.word + ".");
        EXPECT_TRUE(modem->view().dialEnabled);
        EXPECT_FALSE(modem->view().transfersEnabled);
        EXPECT_FALSE(modem->view().closeRequested);
    }
}

TEST_F(ModemLinkTest, ALineLostDuringATransferClosesTheDialog)
{
    ModemOptions options;
    options.fault = LineFault::LineLost;
    options.lineLostAfter = 2000; // inside the first data packet of a read
    make(options);
    dial();
    ASSERT_TRUE(modem->connected());
    ASSERT_TRUE(modem->CmReceiveData(clock.now()));
    const Database before = space.image;
    runUntil([&] { return modem->view().closeRequested; });
    EXPECT_TRUE(modem->view().lineLost);
    EXPECT_TRUE(prompter.saw(kLineLostText));
    EXPECT_TRUE(saw("Communications Failure."));
    EXPECT_EQ(modem->view().status, "Line Disconnected.");
    EXPECT_EQ(space.image, before) << "a read cut short changes nothing";
    EXPECT_FALSE(modem->view().transfersEnabled);
}

TEST_F(ModemLinkTest, NoModemAnywhereIsAnInitialisationError)
{
    dialUp.reset();
    std::vector<ModemCandidate> ports;
    ports.push_back({"COM 1", std::make_shared<MissingPort>()});
    ports.push_back({"COM 2", toolEnd()}); // nothing answers on it
    modem = std::make_unique<ModemLink>(space, prompter, std::move(ports), ModemSettings{});
    modem->CmDial(clock.now());
    for (int i = 0; i < 200 && !modem->view().dialEnabled; ++i) {
        clock.advance(100);
        modem->tick(clock.now());
    }
    ASSERT_TRUE(modem->view().dialEnabled);
    ASSERT_EQ(prompter.messages().size(), 2u);
    EXPECT_EQ(prompter.messages()[0].text, " LINEERR_NODEVICE");
    EXPECT_EQ(prompter.messages()[1].text, "Error");
    EXPECT_EQ(prompter.messages()[1].title, "Error initializing");
    EXPECT_NE(prompter.messages()[1].detail.find("COM 1: No such file or directory"), std::string::npos);
    EXPECT_NE(prompter.messages()[1].detail.find("COM 2: no modem answered AT"), std::string::npos);
}

TEST_F(ModemLinkTest, CancellingTheNumberOrTheQuestionsStopsBeforeDialling)
{
    make();
    modem->askNumber = [](const DialledNumber&) { return std::optional<DialledNumber>(); };
    dial();
    EXPECT_TRUE(modem->view().dialEnabled);
    EXPECT_TRUE(dialUp->modem().dialled().empty());

    prompter.expect(kSummaryQuestion, Answer::Yes).expect("Do you want to continue with programming?", Answer::No);
    modem->session().openSummary = [] {};
    modem->CmDial(clock.now());
    EXPECT_TRUE(modem->view().closeRequested);
}

// Replies over the modem may be slow: 4 s of silence end a reply, 8 s before
// the first byte of a packet's.
TEST(ModemTiming, PacketsWaitLongerForTheirFirstByte)
{
    class Slow final : public link::Transport {
      public:
        link::OpenResult open() override { return {true, {}}; }
        bool isOpen() const override { return true; }
        void close() override {}
        bool write(std::span<const std::uint8_t>) override { return true; }
        bool allSent() override { return true; }
        std::size_t read(std::span<std::uint8_t>) override { return 0; }
        void purge(link::Purge side) override { purged.push_back(side); }
        link::LinkTiming timing() const override { return kModemTiming; }
        std::vector<link::Purge> purged;
    } silent;
    for (const auto& [command, wait] : {std::pair{link::CMD_VERSION, 4000}, std::pair{link::CMD_PACKET, 8000}}) {
        ManualClock clock{100};
        link::LinkSession session(silent);
        session.start(command, 0, false, clock.now());
        EXPECT_EQ(rk4::test::finish(session, clock), link::ExchangeStatus::Failed);
        EXPECT_EQ(clock.now(), Millis{100} + static_cast<Millis>(wait));
    }
    EXPECT_EQ(silent.purged.front(), link::Purge::Both);
}
