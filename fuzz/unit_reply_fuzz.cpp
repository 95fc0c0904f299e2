// The unit's replies: a whole configuration read in which every request is
// answered with the next piece of the input (its length in the first two
// bytes), so damaged, short, long and misplaced replies all reach the session.

#include "fuzz/fuzz_peer.h"
#include "fuzz/fuzz_target.h"

#include "core/link/link_session.h"
#include "core/link/programming_session.h"
#include "core/shell/workspace.h"

#include <algorithm>

namespace {

class ReplyingUnit final : public rk4::fuzz::FuzzPeer {
  public:
    using FuzzPeer::FuzzPeer;

  private:
    void answer() override
    {
        if (left() < 2)
            return; // nothing more to say: the unit falls silent
        const std::size_t length = (next()[0] << 8 | next()[1]) % 4200;
        skip(2);
        say(length);
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    rk4::Workspace workspace;
    ReplyingUnit unit(data, size);
    rk4::fuzz::SilentPrompter prompter(rk4::Answer::No);
    rk4::link::ProgrammingSession session(workspace, unit, prompter);
    rk4::Millis now = 0;
    if (!session.Receive(rk4::link::TransferKind::Database, now))
        return 0;
    // Every exchange ends by its own deadline; a read that outlives this many
    // polls is stuck.
    for (int polls = 0; session.running(); ++polls) {
        FUZZ_REQUIRE(polls < 200000);
        now = std::max(now + 1, session.nextPollAt(now));
        session.poll(now);
    }
    return 0;
}
