#pragma once
// Driving a step machine on the real clock from a plain loop (the command
// line, the benchmark): sleep until it is due, without spinning.
//
//     while (session.running()) {
//         session.poll(clock.now());
//         sleepUntil(transport, clock, session.nextPollAt(clock.now()));
//     }

#include "core/common/clock.h"
#include "core/link/transport.h"

namespace rk4::link {

// Sleeps until `target`. A wait no longer than the link's poll interval is an
// exchange looking for its reply, so it ends early when bytes arrive on the
// transport's descriptor; a longer one is one of the session's own pauses, in
// which no reply is due and stray bytes must not cut it short.
void sleepUntil(const Transport& transport, const Clock& clock, Millis target);

} // namespace rk4::link
