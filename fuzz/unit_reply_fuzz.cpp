// The unit's replies: a whole configuration read in which every request is
// answered with the next piece of the input (its length in the first two
// bytes), so damaged, short, long and misplaced replies all reach the session.

#include "fuzz/fuzz_target.h"

#include "core/common/prompter.h"
#include "core/link/link_session.h"
#include "core/link/programming_session.h"
#include "core/shell/workspace.h"

#include <algorithm>
#include <deque>

namespace {

class ReplyingUnit final : public rk4::link::Transport {
  public:
    ReplyingUnit(const std::uint8_t* data, std::size_t size) : data(data), size(size) {}

    rk4::link::OpenResult open() override { return {true, {}}; }
    bool isOpen() const override { return true; }
    void close() override {}
    bool write(std::span<const std::uint8_t>) override
    {
        if (offset + 2 > size)
            return true; // nothing more to say: the unit falls silent
        const std::size_t length = std::min<std::size_t>((data[offset] << 8 | data[offset + 1]) % 4200, size - offset - 2);
        offset += 2;
        inbox.insert(inbox.end(), data + offset, data + offset + length);
        offset += length;
        return true;
    }
    bool allSent() override { return true; }
    std::size_t read(std::span<std::uint8_t> buffer) override
    {
        const std::size_t count = std::min(buffer.size(), inbox.size());
        std::copy_n(inbox.begin(), count, buffer.begin());
        inbox.erase(inbox.begin(), inbox.begin() + static_cast<std::ptrdiff_t>(count));
        return count;
    }
    void purge(rk4::link::Purge) override { inbox.clear(); }

  private:
    const std::uint8_t* data;
    std::size_t size;
    std::size_t offset = 0;
    std::deque<std::uint8_t> inbox;
};

class SilentPrompter final : public rk4::Prompter {
  public:
    rk4::Answer ask(const rk4::Message&) override { return rk4::Answer::No; }
    std::optional<std::string> chooseFile(const rk4::FileRequest&) override { return std::nullopt; }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    rk4::Workspace workspace;
    ReplyingUnit unit(data, size);
    SilentPrompter prompter;
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
