#include "core/link/session_driver.h"

#include "core/link/link_session.h"
#include "core/link/serial_transport.h"

#include <chrono>
#include <thread>

namespace rk4::link {

void sleepUntil(const Transport& transport, const Clock& clock, Millis target)
{
    const Millis now = clock.now();
    if (target <= now)
        return;
    const Millis remaining = target - now;
    if (remaining <= kPollInterval && transport.readableDescriptor() >= 0)
        waitForBytes(transport, remaining);
    else
        std::this_thread::sleep_for(std::chrono::milliseconds(remaining));
}

} // namespace rk4::link
