// The radio module's replies: the input is cut at each 0xFF into the answers
// to a whole read sequence, so echoes, stray lines, long lines and damaged
// replies all reach the line assembly and every reply reader.

#include "fuzz/fuzz_peer.h"
#include "fuzz/fuzz_target.h"

#include "core/cellular/cell_session.h"

#include <algorithm>

namespace {

using namespace rk4::cellular;

class ReplyingModule final : public rk4::fuzz::FuzzPeer {
  public:
    using FuzzPeer::FuzzPeer;

  private:
    void answer() override
    {
        const std::uint8_t* end = std::find(next(), next() + left(), 0xFF);
        say(static_cast<std::size_t>(end - next()));
        skip(1);
    }
};

// Every command of the table, and two codes it does not have.
constexpr std::uint8_t kCommands[] = {
    CELL_MODEL,        CELL_WRITE_MIN, CELL_ONLINE,   CELL_UNLOCK,   CELL_RESET,   CELL_BAUD,
    CELL_NETWORK_CODE, CELL_WRITE_MDN, CELL_READ_MIN, CELL_READ_SID, CELL_VERSION, CELL_RSSI,
    CELL_PROTOCOL,     CELL_ESN,       CELL_READ_MDN, CELL_CHECK,    0x02,         0xFF};

void checkReadings(const CellReadings& readings)
{
    FUZZ_REQUIRE(readings.rssi >= 0 && readings.rssi <= 16);
    FUZZ_REQUIRE(readings.model.size() <= 10 && readings.sid.size() <= 10 && readings.band.size() <= 1);
    FUZZ_REQUIRE(readings.min.size() <= kPhoneLength && readings.mdn.size() <= kPhoneLength);
    FUZZ_REQUIRE(readings.version.size() <= 70 + 2 + 20);
    FUZZ_REQUIRE(readings.esn.empty() || readings.esn.size() >= 6);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    // Every reader on every line the receiver completes, for each selector.
    for (const WaitFor selector : {WaitFor::Any, WaitFor::S, WaitFor::D, WaitFor::M}) {
        CellReceiver receiver;
        receiver.clear(selector);
        for (std::size_t i = 0; i < size; ++i) {
            receiver.accept(data[i]);
            if (!receiver.lineReady())
                continue;
            const std::string_view line = receiver.line();
            FUZZ_REQUIRE(!line.empty() && line.size() < kReplyLineSize);
            FUZZ_REQUIRE(line.find_first_of("\r\n") == std::string_view::npos);
            FUZZ_REQUIRE(line[0] != 'A' && (line.size() < 2 || line[1] != 'T'));
            for (const std::uint8_t command : kCommands) {
                CellReadings readings;
                InterpretResponse(command, line, readings);
                checkReadings(readings);
            }
            receiver.clear(selector);
        }
    }

    // A whole read sequence; it ends by its own retry counts.
    ReplyingModule module(data, size);
    rk4::fuzz::SilentPrompter prompter(rk4::Answer::Ok);
    CellPhoneSession session(module, prompter);
    rk4::Millis now = 0;
    session.CmStartReading(now);
    for (int ticks = 0; session.active(); ++ticks) {
        FUZZ_REQUIRE(ticks < 10 * 4 * 3 + 10);
        now += kCellTick;
        session.poll(now);
    }
    checkReadings(session.readings());
    return 0;
}
