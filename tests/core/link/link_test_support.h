#pragma once
// Drives exchanges on the manual clock and builds unit replies for the link tests.

#include "core/common/clock.h"
#include "core/link/frame.h"
#include "core/link/link_session.h"

#include <vector>

namespace rk4::test {

// Polls until the exchange is decided, moving the clock to each time the
// session asks for. Returns the outcome.
inline link::ExchangeStatus finish(link::LinkSession& session, ManualClock& clock)
{
    link::ExchangeStatus status = session.poll(clock.now());
    for (int guard = 0; status == link::ExchangeStatus::Pending && guard < 1'000'000; ++guard) {
        const Millis next = session.nextPollAt(clock.now());
        clock.set(next > clock.now() ? next : clock.now() + 1);
        status = session.poll(clock.now());
    }
    return status;
}

inline std::vector<std::uint8_t> unitReply(std::uint8_t code, std::vector<std::uint8_t> body = {},
                                           std::uint8_t direction = link::kFromUnit, std::uint16_t number = 0)
{
    std::vector<std::uint8_t> frame(link::kHeaderLength + body.size() + 2);
    link::buildFrame(frame, direction, code, number, body);
    return frame;
}

} // namespace rk4::test
