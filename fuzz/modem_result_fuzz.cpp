// The modem's output: whatever it says goes through the result reader and
// drives the line through finding the modem, opening it, a call and its
// drop. Lines stay bounded, and every operation ends by its own deadline.

#include "fuzz/fuzz_peer.h"
#include "fuzz/fuzz_target.h"

#include "core/modem/result_reader.h"
#include "core/modem/telephony.h"

#include <algorithm>

namespace {

// Says the next piece of the input (its length in the first byte) after
// every command the line sends.
class TalkingModem final : public rk4::fuzz::FuzzPeer {
  public:
    TalkingModem(const std::uint8_t* data, std::size_t size) : FuzzPeer(data, size, false, false) {}

  private:
    void answer() override
    {
        if (left() == 0)
            return;
        const std::size_t length = next()[0];
        skip(1);
        say(length);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    rk4::modem::ResultReader reader;
    reader.feed(std::span(data, size));
    std::size_t lines = 0;
    while (auto line = reader.nextLine()) {
        FUZZ_REQUIRE(!line->empty() && line->size() <= rk4::modem::ResultReader::kLongestLine);
        rk4::modem::parseResult(*line);
        ++lines;
    }
    FUZZ_REQUIRE(lines <= rk4::modem::ResultReader::kMostLines);

    TalkingModem modem(data, size);
    rk4::modem::Telephony line(modem, "ATE0V1");
    line.answerCalls = true;
    rk4::Millis now = 0;
    auto settle = [&] {
        for (int polls = 0; line.busy(); ++polls) {
            FUZZ_REQUIRE(polls < 100000);
            now = std::max(now + 1, line.nextPollAt(now));
            line.poll(now);
        }
    };
    line.telephonyInitialize(now);
    settle();
    line.telephonyOpen(now);
    settle();
    if (line.lineMakeCall("2255669", now) == 0) {
        for (int polls = 0; polls < 1000 && line.callActive() && !line.connected(); ++polls) {
            now += 100;
            line.poll(now);
        }
        FUZZ_REQUIRE(line.callActive() || !line.connected());
        if (line.connected()) {
            std::uint8_t scratch[64];
            line.callPort().open();
            line.callPort().read(scratch);
        }
    }
    line.lineDrop(now);
    settle();
    line.telephonyShutdown(now);
    settle();
    FUZZ_REQUIRE(!line.initialized());
    return 0;
}
