#include "core/link/memory_transport.h"

#include <algorithm>

namespace rk4::link {

MemoryLink::MemoryLink() : toolEnd(toTool, toUnit, &refusal), unitEnd(toUnit, toTool, nullptr)
{
    unitEnd.opened = true;
}

OpenResult MemoryLink::End::open()
{
    if (refusal && *refusal)
        return {false, **refusal};
    opened = true;
    return {true, {}};
}

bool MemoryLink::End::write(std::span<const std::uint8_t> bytes)
{
    if (!opened)
        return false;
    outbox.insert(outbox.end(), bytes.begin(), bytes.end());
    return true;
}

std::size_t MemoryLink::End::read(std::span<std::uint8_t> buffer)
{
    if (!opened)
        return 0;
    const std::size_t count = std::min(buffer.size(), inbox.size());
    std::copy_n(inbox.begin(), count, buffer.begin());
    inbox.erase(inbox.begin(), inbox.begin() + static_cast<std::ptrdiff_t>(count));
    return count;
}

void MemoryLink::End::purge(Purge side)
{
    // Written bytes reach the peer at once, so there is never a transmit side to drop.
    if (side != Purge::Transmit)
        inbox.clear();
}

PacedTransport::PacedTransport(Transport& inner, const Clock& clock, unsigned baud)
    : inner(inner), clock(clock), characterTime(10'000'000ull / std::max(baud, 1u))
{}

bool PacedTransport::write(std::span<const std::uint8_t> bytes)
{
    if (!inner.isOpen())
        return false;
    if (outgoing.empty())
        sendLineFree = std::max(sendLineFree, nowMicros());
    outgoing.insert(outgoing.end(), bytes.begin(), bytes.end());
    release();
    return true;
}

void PacedTransport::release()
{
    const std::uint64_t now = nowMicros();
    std::size_t count = 0;
    while (count < outgoing.size() && sendLineFree + characterTime <= now) {
        sendLineFree += characterTime;
        ++count;
    }
    if (count == 0)
        return;
    std::vector<std::uint8_t> chunk(outgoing.begin(), outgoing.begin() + static_cast<std::ptrdiff_t>(count));
    outgoing.erase(outgoing.begin(), outgoing.begin() + static_cast<std::ptrdiff_t>(count));
    inner.write(chunk);
}

bool PacedTransport::allSent()
{
    release();
    return outgoing.empty() && inner.allSent();
}

std::size_t PacedTransport::unsent()
{
    release();
    return outgoing.size() + inner.unsent();
}

std::size_t PacedTransport::read(std::span<std::uint8_t> buffer)
{
    release();
    return inner.read(buffer);
}

void PacedTransport::purge(Purge side)
{
    if (side != Purge::Receive)
        outgoing.clear();
    inner.purge(side);
}

} // namespace rk4::link
