#include "core/database/defaults.h"
#include "core/link/link_session.h"
#include "core/link/simulated_unit.h"
#include "core/link/wire_image.h"
#include "tests/core/link/link_test_support.h"

#include <gtest/gtest.h>

using namespace rk4;
using namespace rk4::link;
using rk4::test::finish;

namespace {

struct WithUnit : ::testing::Test {
    ManualClock clock{5000};
    std::unique_ptr<SimulatedUnitPort> port;
    std::unique_ptr<LinkSession> session;

    void connect(UnitOptions options = {}, unsigned baud = 0)
    {
        session.reset();
        port = std::make_unique<SimulatedUnitPort>(clock, std::move(options), baud);
        ASSERT_TRUE(port->open().ok);
        session = std::make_unique<LinkSession>(*port);
    }
    void SetUp() override { connect(); }

    ExchangeStatus exchange(std::uint8_t command, int number = 10000, bool withData = false)
    {
        session->start(command, number, withData, clock.now());
        return finish(*session, clock);
    }
    SimulatedUnit& unit() { return port->unit(); }
};

Database sampleImage()
{
    Database image;
    DefaultValues(image);
    image.alm[3].lowSetpoint = 0x1234; // a field that travels high byte first
    image.hardware.port[15].timer = 0xBEEF;
    return image;
}

} // namespace

TEST_F(WithUnit, AnswersVersionAndLinkAndLeavesProgrammingAtTheEnd)
{
    ASSERT_EQ(exchange(CMD_VERSION), ExchangeStatus::Good);
    EXPECT_EQ(session->product(), "RK4-CEL");
    EXPECT_EQ(session->firmware(), "2.14");
    EXPECT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    EXPECT_TRUE(unit().linked());
    EXPECT_EQ(exchange(CMD_END), ExchangeStatus::Sent);
    EXPECT_FALSE(unit().linked());
    // Without a link the unit ignores announces.
    EXPECT_EQ(exchange(CMD_WRITE_DATABASE), ExchangeStatus::Failed);
}

TEST_F(WithUnit, KeepsAWrittenDatabaseInHostOrder)
{
    const Database image = sampleImage();
    const ImageBytes bytes = image.toBytes();
    std::copy(bytes.begin(), bytes.end(), session->staging.begin());
    swapWireFields(std::span(session->staging).first(dbasesize));
    EXPECT_EQ(session->staging[kPointOffset + 3 * 80 + 26], 0x12);
    EXPECT_EQ(session->staging[kPointOffset + 3 * 80 + 27], 0x34);
    EXPECT_EQ(session->staging[kHardwareOffset + 15 * 8 + 6], 0xBE);

    std::vector<TransferKind> stored;
    unit().onStored = [&](TransferKind kind) { stored.push_back(kind); };
    ASSERT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_WRITE_DATABASE), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_PACKET, 0, true), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_PACKET, 1, true), ExchangeStatus::Good);
    exchange(CMD_END);
    EXPECT_EQ(stored, std::vector<TransferKind>{TransferKind::Database});
    EXPECT_TRUE(std::equal(bytes.begin(), bytes.end(), unit().store.database.begin(), unit().store.database.end()));
}

TEST_F(WithUnit, IsBusyWhileErasingItsVoiceStore)
{
    unit().store.voices.assign(kPacketSize, 0x11);
    session->kind = TransferKind::Voices;
    session->blockSlot = 0;
    ASSERT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_WRITE_VOICES), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_PACKET, 0, true), ExchangeStatus::Good);
    EXPECT_TRUE(unit().store.voices.empty());
    EXPECT_EQ(exchange(CMD_PACKET, 1, true), ExchangeStatus::Busy);
    clock.advance(8000);
    EXPECT_EQ(exchange(CMD_PACKET, 1, true), ExchangeStatus::Good);
    exchange(CMD_END);
    EXPECT_EQ(unit().store.voices.size(), 2u * kPacketSize);
}

TEST_F(WithUnit, InjectedFaultsHitTheChosenRequests)
{
    UnitOptions options;
    options.faults = {*parseFault("nak:version"), *parseFault("silence:link:1"), *parseFault("crc:0x89:2"),
                      *parseFault("noise:any:0:0")};
    connect(options);
    EXPECT_EQ(exchange(CMD_VERSION), ExchangeStatus::Busy);
    EXPECT_EQ(exchange(CMD_VERSION), ExchangeStatus::Good); // noise before it
    EXPECT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    EXPECT_EQ(exchange(CMD_LINK), ExchangeStatus::Failed); // silence
    EXPECT_EQ(exchange(CMD_LINK), ExchangeStatus::Failed); // bad CRC
    EXPECT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
}

TEST(Faults, ParseOnlyWellFormedFaultTexts)
{
    const auto fault = parseFault("silence:packet:3:2");
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->kind, FaultKind::Silence);
    EXPECT_EQ(fault->command, CMD_PACKET);
    EXPECT_EQ(fault->skip, 3);
    EXPECT_EQ(fault->times, 2);
    EXPECT_EQ(parseFault("nak")->command, -1);
    for (const char* bad : {"", "loud", "nak:nothing", "nak:0x", "nak:1:x", "nak:1:2:3:4", "crc:0x1234"})
        EXPECT_FALSE(parseFault(bad)) << bad;
}

TEST_F(WithUnit, APacedLineTakesTheWireTime)
{
    connect({}, 9600);
    ASSERT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
    ASSERT_EQ(exchange(CMD_WRITE_DATABASE), ExchangeStatus::Good);
    const Millis started = clock.now();
    ASSERT_EQ(exchange(CMD_PACKET, 0, true), ExchangeStatus::Good);
    // 4103 bytes out and 7 back at 960 bytes a second.
    const Millis took = clock.now() - started;
    EXPECT_GE(took, 4281u);
    EXPECT_LE(took, 4281u + 50u);
}

TEST_F(WithUnit, PacketsBeyondWhatTheUnitHoldsAreNotAnsweredNorStored)
{
    struct Case {
        std::uint8_t announce;
        int lastHeld; // the highest packet number the store takes
    };
    for (const Case& c : {Case{CMD_WRITE_DATABASE, 1}, Case{CMD_WRITE_VOCABULARY, 63}, Case{CMD_WRITE_VOICES, 128}}) {
        connect();
        session->kind = TransferKind::Voices; // the tool's side takes any packet number from its stream
        ASSERT_EQ(exchange(CMD_LINK), ExchangeStatus::Good);
        ASSERT_EQ(exchange(c.announce), ExchangeStatus::Good);
        EXPECT_EQ(exchange(CMD_PACKET, c.lastHeld, true), ExchangeStatus::Good) << int(c.announce);
        EXPECT_EQ(exchange(CMD_PACKET, c.lastHeld + 1, true), ExchangeStatus::Failed) << int(c.announce);
        EXPECT_EQ(exchange(CMD_PACKET, 0xFFFF, true), ExchangeStatus::Failed) << int(c.announce);
    }
}
