#include "core/database/defaults.h"
#include "core/link/packing.h"
#include "core/link/programming_session.h"
#include "core/link/simulated_unit.h"
#include "core/link/wire_image.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/small_disk.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>

#include <sys/statvfs.h>

using namespace rk4;
using namespace rk4::link;
using rk4::test::ScriptedPrompter;
using rk4::test::TempDir;

namespace {

const std::string kSummaryQuestion = "Do you want to check the Summary for warnings before programming?";

class SessionTest : public ::testing::Test {
  protected:
    TempDir dir;
    ManualClock clock{1000};
    Workspace space{dir.path()};
    ScriptedPrompter prompter;
    std::unique_ptr<SimulatedUnitPort> port;
    std::unique_ptr<ProgrammingSession> session;
    std::vector<std::string> texts;   // every line 1 / line 2 / status text, in order
    std::vector<Millis> textTimes;    // when each was shown
    std::vector<Millis> requestTimes; // when the unit heard each request
    int modeChanges = 0;

    void SetUp() override
    {
        space.image.gen.basicMode = 0;
        ClearDatabase(space.image, false);
        space.ChangeMode = [this] { ++modeChanges; };
        makeUnit({});
    }

    void makeUnit(UnitOptions options)
    {
        session.reset();
        port = std::make_unique<SimulatedUnitPort>(clock, std::move(options));
        session = std::make_unique<ProgrammingSession>(space, *port, prompter);
        session->onText = [this](SessionLine, const std::string& text) {
            texts.push_back(text);
            textTimes.push_back(clock.now());
        };
        requestTimes.clear();
    }

    // Runs the started operation to its end on the manual clock.
    void runToEnd()
    {
        for (int guard = 0; guard < 200000 && session->running(); ++guard) {
            session->poll(clock.now());
            while (requestTimes.size() < port->unit().requests().size())
                requestTimes.push_back(clock.now());
            const Millis next = session->nextPollAt(clock.now());
            clock.set(std::max(next, clock.now() + 1));
        }
        ASSERT_FALSE(session->running()) << "the operation never ended";
    }

    bool sawText(const std::string& text) const { return std::find(texts.begin(), texts.end(), text) != texts.end(); }
    int countText(const std::string& text) const
    {
        return static_cast<int>(std::count(texts.begin(), texts.end(), text));
    }

    // How long after the first time `text` was shown the next request went out.
    Millis requestDelayAfter(const std::string& text) const
    {
        const auto at = std::find(texts.begin(), texts.end(), text);
        if (at == texts.end())
            return -1;
        const Millis shown = textTimes[static_cast<std::size_t>(at - texts.begin())];
        const auto next = std::upper_bound(requestTimes.begin(), requestTimes.end(), shown);
        return next == requestTimes.end() ? -1 : *next - shown;
    }

    int requestsOf(std::uint8_t command) const
    {
        const auto& heard = port->unit().requests();
        return static_cast<int>(std::count(heard.begin(), heard.end(), command));
    }

    bool write()
    {
        if (!session->Send(TransferKind::Database, clock.now()))
            return false;
        runToEnd();
        return true;
    }

    std::filesystem::path fileOf(std::size_t size, const std::string& name, std::uint8_t seed = 1)
    {
        std::vector<char> bytes(size);
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<char>((i * 7 + seed) & 0xFF);
        std::ofstream(dir / name, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(size));
        return dir / name;
    }
};

} // namespace

TEST_F(SessionTest, WritingTheDatabaseSendsTheImageInWireOrderAndReportsSuccess)
{
    space.image.alm[0].port = 0x0102;
    space.image.hardware.port[3].debounce = 0x0A0B;
    ASSERT_TRUE(write());
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_EQ(session->view().status, "Database transferred to the Rk4");
    EXPECT_EQ(session->view().line1, "Success");
    EXPECT_TRUE(sawText("Checking Rk4 version"));
    EXPECT_TRUE(sawText("Transmitting packet 1 of 2"));
    EXPECT_TRUE(sawText("Transmitting packet 2 of 2"));
    EXPECT_EQ(session->view().version, "Product: BRK4-CEL  Version: 2.14");
    EXPECT_FALSE(session->view().progressOpen);

    // The unit stores the image as a .dat holds it: the memory image came back
    // to host order and carries the transfer stamp.
    const auto& stored = port->unit().store.database;
    ASSERT_EQ(stored.size(), dbasesize);
    EXPECT_EQ(Database::fromImage(std::span<const std::uint8_t, dbasesize>(stored.data(), dbasesize)), space.image);
    EXPECT_EQ(space.image.alm[0].port, 0x0102);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(space.image.gen.transferStamp.data())), "555555555");
    EXPECT_EQ(requestsOf(CMD_END), 1);
    EXPECT_EQ(requestsOf(CMD_LINK), 0) << "a version reply goes straight to the announce";
}

TEST_F(SessionTest, PackingSwapsTheListedWordsOnACopyAndZeroesThePacketTail)
{
    std::vector<std::uint8_t> staging(10 * kPacketSize, 0xEE);
    space.image.alm[2].lowSetpoint = 0x1234;
    space.image.alm[2].highSetpointDecimal = 0x5678; // travels as stored
    const Database before = space.image;
    EXPECT_EQ(packDatabase(space.image, false, staging), 2);
    const std::size_t point = kPointOffset + 2 * PointRecord::size;
    EXPECT_EQ(staging[point + 26], 0x12);
    EXPECT_EQ(staging[point + 27], 0x34);
    EXPECT_EQ(staging[point + 64], 0x78);
    EXPECT_EQ(staging[kHardwareOffset + 1], 0x00) << "debounce 2 goes high byte first";
    EXPECT_EQ(staging[kHardwareOffset + 2], 0x02);
    EXPECT_TRUE(std::all_of(staging.begin() + dbasesize, staging.begin() + 2 * kPacketSize,
                            [](std::uint8_t b) { return b == 0; }));
    EXPECT_EQ(space.image.alm[2].lowSetpoint, 0x1234) << "the image keeps host order";
    EXPECT_EQ(unpackDatabase(staging), space.image);
    EXPECT_EQ(space.image.alm, before.alm);
}

TEST_F(SessionTest, ASecondWriteInTheSameDialogSkipsTheVersionCheck)
{
    ASSERT_TRUE(write());
    ASSERT_TRUE(write());
    EXPECT_EQ(requestsOf(CMD_VERSION), 1);
    EXPECT_EQ(requestsOf(CMD_LINK), 1);
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
}

struct LineFault {
    std::vector<const char*> faults;
    SessionOutcome outcome;
    int versions, links, alternateLinks; // requests heard
    int firstRetries;                    // times "No response - retry 1" was shown
    std::vector<std::string> shown;
};

// Busy answers are repeated without counting an attempt; a spoiled or lost
// reply counts one and the request goes out again 200 ms after the retry text;
// three in a row move on to the alternate link and then give up.
TEST_F(SessionTest, LineFaultsAreRetriedAsTheUnitNeeds)
{
    const LineFault cases[] = {
        {{"nak:version:0:6", "nak:packet:0:5"}, SessionOutcome::Succeeded, 7, 0, 0, 0, {}},
        {{"crc:packet:0:2", "noise:any:0:0"}, SessionOutcome::Succeeded, 1, 0, 0, 1, {"No response - retry 2"}},
        {{"silence:version:0:2"}, SessionOutcome::Succeeded, 3, 0, 0, 1, {"No response - retry 2"}},
        {{"silence:any:0:0"},
         SessionOutcome::Failed,
         3,
         3,
         3,
         3,
         {"No version available - trying alternate connection.", "Communications Failure - Starting second pass.",
          "Communications Failure - Check connection."}},
    };
    for (const LineFault& c : cases) {
        SCOPED_TRACE(c.faults.front());
        UnitOptions options;
        for (const char* fault : c.faults)
            options.faults.push_back(*parseFault(fault));
        makeUnit(options);
        texts.clear();
        textTimes.clear();
        ASSERT_TRUE(write());
        EXPECT_EQ(session->outcome(), c.outcome);
        EXPECT_EQ(requestsOf(CMD_VERSION), c.versions);
        EXPECT_EQ(requestsOf(CMD_LINK), c.links);
        EXPECT_EQ(requestsOf(CMD_LINK_ALT), c.alternateLinks);
        EXPECT_EQ(countText("No response - retry 1"), c.firstRetries);
        for (const std::string& text : c.shown)
            EXPECT_TRUE(sawText(text)) << text;
        if (c.firstRetries > 0) {
            EXPECT_EQ(requestDelayAfter("No response - retry 1"), 200);
        }
        EXPECT_EQ(requestsOf(CMD_END), 1) << "a write ends with the end request, failed or not";
    }
    EXPECT_EQ(session->view().status, "Communications Failure - Check connection.");
}

// An older unit is reached on the second pass and loses the selectors it does
// not know; the second pass ends with its run, so a newer unit on another port
// keeps them.
TEST_F(SessionTest, OnlyAnOlderUnitLosesTheSelectorsItDoesNotKnow)
{
    UnitOptions older;
    older.olderUnit = true;
    makeUnit(older);
    space.image.alm[4].unitSelector[1] = 19;
    space.image.alm[5].unitSelector[1] = 20;
    space.image.alm[6].unitSelector[1] = 18;
    ASSERT_TRUE(write());
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_EQ(space.image.alm[4].unitSelector[1], 0);
    EXPECT_EQ(space.image.alm[5].unitSelector[1], 0);
    EXPECT_EQ(space.image.alm[6].unitSelector[1], 18);
    ASSERT_EQ(port->unit().requests().back(), CMD_END);
    ASSERT_TRUE(port->unit().alternateLink() || requestsOf(CMD_LINK_ALT) == 1);

    SimulatedUnitPort newer(clock);
    session->changeTransport(newer);
    space.image.alm[4].unitSelector[1] = 19;
    space.image.alm[5].unitSelector[1] = 20;
    ASSERT_TRUE(write());
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    const auto& heard = newer.unit().requests();
    EXPECT_EQ(std::count(heard.begin(), heard.end(), CMD_LINK_ALT), 0);
    EXPECT_EQ(space.image.alm[4].unitSelector[1], 19);
    EXPECT_EQ(space.image.alm[5].unitSelector[1], 20);
    Database stored;
    stored.fromBytes(std::span<const std::uint8_t, dbasesize>(newer.unit().store.database.data(), dbasesize));
    EXPECT_EQ(stored.alm[4].unitSelector[1], 19);
    EXPECT_EQ(stored.alm[5].unitSelector[1], 20);
}

TEST_F(SessionTest, ThePortThatWillNotOpenStopsBeforeAnythingIsSent)
{
    port->memory().refuseOpen("Permission denied");
    EXPECT_FALSE(session->Send(TransferKind::Database, clock.now()));
    ASSERT_FALSE(prompter.messages().empty());
    EXPECT_EQ(prompter.messages().back().text, "Error opening COM port");
    EXPECT_EQ(prompter.messages().back().detail, "Permission denied");
    EXPECT_FALSE(session->view().progressOpen);
}

TEST_F(SessionTest, WarningsBeforeAWriteCanCancelIt)
{
    space.image.gen.securityLevel = 1; // remote programming on, no access code
    bool generalOpened = false;
    bool summaryOpened = false;
    session->openGeneralEditor = [&] { generalOpened = true; };
    session->openSummary = [&] { summaryOpened = true; };
    prompter.expectPrefix("The Access Code has not been entered in the General section.", Answer::No)
        .expect(kSummaryQuestion, Answer::Yes)
        .expect("Do you want to continue with programming?", Answer::No);
    EXPECT_FALSE(session->Send(TransferKind::Database, clock.now()));
    EXPECT_FALSE(generalOpened);
    EXPECT_TRUE(summaryOpened);
    EXPECT_TRUE(prompter.finished());

    // Yes opens the general settings; the write stops when the user says so.
    prompter.expectPrefix("The Access Code has not been entered", Answer::Yes)
        .expect("Do you want to continue with programming?", Answer::No);
    EXPECT_FALSE(session->Send(TransferKind::Database, clock.now()));
    EXPECT_TRUE(generalOpened);
    EXPECT_TRUE(prompter.finished());
    EXPECT_TRUE(port->unit().requests().empty());
}

TEST_F(SessionTest, WithoutTheGeneralEditorTheAccessCodeIsAWarningAndTheWriteGoesOn)
{
    space.image.gen.securityLevel = 2;
    ASSERT_TRUE(session->Send(TransferKind::Database, clock.now()));
    ASSERT_EQ(prompter.messages().size(), 1u) << "and no Summary question, with no Summary to show";
    EXPECT_EQ(prompter.messages()[0].text, link::kMissingAccessCodeText);
    EXPECT_EQ(prompter.messages()[0].buttons, Buttons::Ok);
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
}

TEST_F(SessionTest, FilesTheUnitCannotHoldAreRefusedBeforeAnythingIsSent)
{
    const auto phrases = [&](std::size_t blocks, std::uint16_t listed, const std::string& name) {
        std::vector<std::uint8_t> bytes(blocks * kPacketSize, 0x5A);
        std::fill_n(bytes.begin(), 78, 0);
        bytes[76] = static_cast<std::uint8_t>(listed >> 8); // the Site ID's phrase, high byte first
        bytes[77] = static_cast<std::uint8_t>(listed);
        bytes[73] = 9; // group 7, never used, does not count
        EXPECT_TRUE(writeFileAtomically(dir / name, bytes));
        return dir / name;
    };
    const struct {
        TransferKind kind;
        std::filesystem::path file;
        const char* detail;
    } cases[] = {
        {TransferKind::Vocabulary, fileOf(4097, "odd.bin"), "4097 bytes, not a whole number of 4096-byte blocks"},
        {TransferKind::Vocabulary, fileOf(65 * kPacketSize, "big.bin"),
         "65 blocks of 4096 bytes, and the unit's vocabulary store holds 64"},
        {TransferKind::Vocabulary, phrases(4, 3, "voices.msg"),
         "it is a voice message file: its header lists the 3 blocks of phrases that follow it"},
        {TransferKind::Voices, fileOf(0, "empty.msg"), "the file is empty"},
        {TransferKind::Voices, fileOf(100, "short.msg"), "100 bytes, not a whole number of 4096-byte blocks"},
        {TransferKind::Voices, phrases(129, 128, "huge.msg"),
         "129 blocks of 4096 bytes, and the unit's voice store holds 128"},
        {TransferKind::Voices, phrases(3, 5, "cut.msg"), "its header lists 5 blocks of phrases, and the file holds 2"},
        {TransferKind::Voices, fileOf(12 * kPacketSize, "voc8xx.bin"), "its header lists "},
    };
    for (const auto& refused : cases) {
        prompter.clear();
        EXPECT_FALSE(session->Send(refused.kind, clock.now(), refused.file)) << refused.file;
        ASSERT_EQ(prompter.messages().size(), 1u) << refused.file;
        EXPECT_EQ(prompter.messages()[0].text, refused.kind == TransferKind::Vocabulary
                                                   ? " VOCABULARY FILE IS NOT VALID "
                                                   : " VOICE MESSAGE FILE IS NOT VALID ");
        EXPECT_NE(prompter.messages()[0].detail.find(refused.detail), std::string::npos)
            << prompter.messages()[0].detail;
    }
    EXPECT_FALSE(session->Send(TransferKind::Vocabulary, clock.now(), dir / "missing.bin"));
    EXPECT_TRUE(prompter.saw(" CANNOT OPEN VOCABULARY FILE "));
    EXPECT_FALSE(session->portOpen());
    EXPECT_TRUE(port->unit().requests().empty());

    // What just fits goes.
    ASSERT_TRUE(session->Send(TransferKind::Voices, clock.now(), phrases(128, 127, "full.msg")));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_EQ(port->unit().store.voices.size(), 128u * kPacketSize);
}

TEST_F(SessionTest, AVocabularyWriteStreamsTheFileAndCallsForAttention)
{
    const auto file = fileOf(12 * kPacketSize, "voc8xx.bin");
    int beeps = 0;
    session->beep = [&] { ++beeps; };
    ASSERT_TRUE(session->Send(TransferKind::Vocabulary, clock.now(), file));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_EQ(session->view().status, "Vocab succesfully transferred to the Rk4");
    EXPECT_EQ(port->unit().store.vocabulary, *readWholeFile(file));
    EXPECT_TRUE(session->attention());
    session->IdleAction(clock.now() + 1000);
    session->IdleAction(clock.now() + 1500);
    session->IdleAction(clock.now() + 2000);
    EXPECT_EQ(beeps, 2) << "once a second";
    session->clearAttention();
    session->IdleAction(clock.now() + 5000);
    EXPECT_EQ(beeps, 2);
}

TEST_F(SessionTest, ASecondPassVocabularyWriteSendsSixtyFourPackets)
{
    UnitOptions options;
    options.olderUnit = true;
    makeUnit(options);
    ASSERT_TRUE(session->Send(TransferKind::Vocabulary, clock.now(), fileOf(3 * kPacketSize, "voc.bin")));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_TRUE(sawText("Transmitting packet 64 of 64"));
    EXPECT_EQ(requestsOf(CMD_PACKET), 64);
}

TEST_F(SessionTest, AVoiceWriteWaitsTenSecondsForTheUnitToEraseItsStore)
{
    auto file = fileOf(3 * kPacketSize, "rk4.msg", 9);
    std::vector<std::uint8_t> voices = *readWholeFile(file);
    std::fill_n(voices.begin(), 78, 0);
    voices[1] = 2; // point 1's phrase: the two blocks after the header
    ASSERT_TRUE(writeFileAtomically(file, voices));
    ASSERT_TRUE(session->Send(TransferKind::Voices, clock.now(), file));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_TRUE(sawText("Waiting for Rk4 to initialize voice storage memory."));
    EXPECT_TRUE(sawText("10 seconds remaining."));
    EXPECT_TRUE(sawText("1 seconds remaining."));
    EXPECT_EQ(port->unit().store.voices, *readWholeFile(file));
    EXPECT_EQ(session->view().status, "Voices transferred to the Rk4");
}

TEST_F(SessionTest, ReadingTheDatabaseReplacesTheImageOnlyWhenComplete)
{
    Database unitImage;
    unitImage.gen.basicMode = 1;
    ClearDatabase(unitImage, false);
    unitImage.gen.name[0] = 'U';
    const ImageBytes bytes = unitImage.toBytes();
    port->unit().store.database.assign(bytes.begin(), bytes.end());

    ASSERT_TRUE(session->Receive(TransferKind::Database, clock.now()));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_EQ(space.image, unitImage);
    EXPECT_EQ(session->view().status, "Configuration data read from the Rk4");
    EXPECT_EQ(modeChanges, 1) << "a Basic image read into Advanced mode switches the window";
    EXPECT_TRUE(space.DatabaseChanged);
}

TEST_F(SessionTest, AFailedReadLeavesTheImageAlone)
{
    UnitOptions options;
    options.faults.push_back(*parseFault("silence:packet:1:0"));
    makeUnit(options);
    const Database before = space.image;
    ASSERT_TRUE(session->Receive(TransferKind::Database, clock.now()));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Failed);
    EXPECT_EQ(session->view().line2, "Transfer failed at packet number 2");
    EXPECT_EQ(space.image, before);
    EXPECT_EQ(modeChanges, 0);
}

TEST_F(SessionTest, AVoiceReadEndingAfterFivePacketsKeepsFiveBlocksOfData)
{
    std::vector<std::uint8_t> voices(5 * kPacketSize);
    for (std::size_t i = 0; i < voices.size(); ++i)
        voices[i] = static_cast<std::uint8_t>(i / 7);
    port->unit().store.voices = voices;
    const auto target = dir / "read.msg";
    ASSERT_TRUE(session->Receive(TransferKind::Voices, clock.now(), target));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_EQ(*readWholeFile(target), voices);
    EXPECT_TRUE(sawText("Select a file for storage"));
    EXPECT_FALSE(std::filesystem::exists(dir / "voice.tmp"));
}

TEST_F(SessionTest, TwoVoiceReadsInOneFolderEachKeepTheirOwnVoicesAndLeaveNothingElse)
{
    const std::vector<std::uint8_t> first(3 * kPacketSize, 0x11), second(2 * kPacketSize, 0x22);
    port->unit().store.voices = first;
    SimulatedUnitPort otherPort(clock);
    otherPort.unit().store.voices = second;
    ScriptedPrompter otherPrompter;
    ProgrammingSession other(space, otherPort, otherPrompter);
    // As in the window: each file is asked for once its voices are in, so
    // both wait in the working folder.
    prompter.fileChoice((dir / "first.msg").string());
    otherPrompter.fileChoice((dir / "second.msg").string());

    ASSERT_TRUE(session->Receive(TransferKind::Voices, clock.now()));
    ASSERT_TRUE(other.Receive(TransferKind::Voices, clock.now()));
    std::size_t stagingFiles = 0;
    for (int guard = 0; guard < 400000 && (session->running() || other.running()); ++guard) {
        session->poll(clock.now());
        other.poll(clock.now());
        stagingFiles = std::max(
            stagingFiles, static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(dir.path()), {})));
        clock.set(std::min(session->nextPollAt(clock.now()), other.nextPollAt(clock.now())) + 1);
    }
    EXPECT_EQ(stagingFiles, 2u) << "one private staging file each";
    EXPECT_EQ(readWholeFile(dir / "first.msg"), first);
    EXPECT_EQ(readWholeFile(dir / "second.msg"), second);
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(dir.path()))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (std::vector<std::string>{"first.msg", "second.msg"}));
}

TEST_F(SessionTest, AVoiceReadWithNoDataFailsAndLeavesNoFile)
{
    ASSERT_TRUE(session->Receive(TransferKind::Voices, clock.now(), dir / "none.msg"));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Failed);
    EXPECT_EQ(session->view().line2, "Not enough voice data to be valid.");
    EXPECT_TRUE(std::filesystem::is_empty(dir.path())) << "neither the target nor a staging file";
}

TEST_F(SessionTest, AVoiceReadKeepsNoMoreThanTheLargestVoiceStore)
{
    port->unit().store.voices.assign(140 * kPacketSize, 0x11);
    ASSERT_TRUE(session->Receive(TransferKind::Voices, clock.now(), dir / "big.msg"));
    runToEnd();
    EXPECT_EQ(session->outcome(), SessionOutcome::Succeeded);
    EXPECT_EQ(requestsOf(CMD_PACKET), kVoiceStorePackets);
    // Whole ten-packet blocks only: the 129th packet's block is never complete.
    EXPECT_EQ(readWholeFile(dir / "big.msg")->size(), 120u * kPacketSize);
}

TEST_F(SessionTest, AVoiceReadStopsAtAFullDiskAndKeepsNothing)
{
    std::filesystem::create_directory(dir / "small");
    port->unit().store.voices.assign(40 * kPacketSize, 0x33);
    // 3 = refused at the start, 0 = stopped at the first block that did not fit.
    const int status = test::onSmallDisk(dir / "small", "640k", [&] {
        const auto target = dir / "small" / "unit.msg";
        std::vector<std::uint8_t> filler(256 * 1024, 1);
        if (!writeFileAtomically(dir / "small" / "other.dat", filler))
            return 10;
        if (session->Receive(TransferKind::Voices, clock.now(), target))
            return 11;
        if (!prompter.saw(" CANNOT OPEN voice.tmp FILE ") ||
            prompter.messages()[0].detail.find("disk full") == std::string::npos)
            return 12;
        if (!port->unit().requests().empty())
            return 13;
        // Room for the whole store when the read starts, then something else fills the disk.
        std::filesystem::remove(dir / "small" / "other.dat");
        prompter.clear();
        if (!session->Receive(TransferKind::Voices, clock.now(), target))
            return 14;
        struct statvfs disk {};
        ::statvfs((dir / "small").c_str(), &disk);
        filler.resize(disk.f_bavail * disk.f_frsize - 20000);
        std::ofstream((dir / "small" / "other.dat").string(), std::ios::binary)
            .write(reinterpret_cast<const char*>(filler.data()), static_cast<std::streamsize>(filler.size()));
        runToEnd();
        if (session->outcome() != SessionOutcome::Failed || session->view().line2 != "disk full")
            return 15;
        if (prompter.messages().size() != 1 || prompter.messages()[0].detail.find("disk full") == std::string::npos)
            return 16;
        if (requestsOf(CMD_PACKET) > 10)
            return 17; // went on after the first block failed
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(dir / "small"))
            names.push_back(entry.path().filename().string());
        return names == std::vector<std::string>{"other.dat"} ? 0 : 18;
    });
    if (status == test::kNoPrivateMounts)
        GTEST_SKIP() << "no private mounts here";
    EXPECT_EQ(status, 0);
}

TEST_F(SessionTest, WireProgressFollowsEveryByteOfAPacketBothWays)
{
    SimulatedUnitPort paced(clock, {}, 9600);
    ProgrammingSession overWire(space, paced, prompter);
    // The 30 cells of a terminal's bar that each run's progress filled, one by one.
    const auto cellsFilled = [&] {
        std::vector<std::int64_t> cells;
        std::int64_t last = 0;
        for (int guard = 0; guard < 200000 && overWire.running(); ++guard) {
            overWire.poll(clock.now());
            const WireProgress progress = overWire.wireProgress();
            if (progress.done < last)
                return std::vector<std::int64_t>{-1}; // went backwards
            last = progress.done;
            if (progress.total > 0 && (cells.empty() || progress.done * 30 / progress.total != cells.back()))
                cells.push_back(progress.done * 30 / progress.total);
            clock.set(std::max(overWire.nextPollAt(clock.now()), clock.now() + 1));
        }
        return cells;
    };
    std::vector<std::int64_t> everyCell(31);
    for (std::int64_t cell = 0; cell <= 30; ++cell)
        everyCell[static_cast<std::size_t>(cell)] = cell;

    ASSERT_TRUE(overWire.Send(TransferKind::Database, clock.now()));
    EXPECT_EQ(cellsFilled(), everyCell) << "writing";
    ASSERT_EQ(overWire.outcome(), SessionOutcome::Succeeded);

    ASSERT_TRUE(overWire.Receive(TransferKind::Database, clock.now()));
    EXPECT_EQ(cellsFilled(), everyCell) << "reading";
    EXPECT_EQ(overWire.outcome(), SessionOutcome::Succeeded);
}
