#pragma once
// Milliseconds for the step machines. Nothing in core sleeps: a step machine is
// advanced by poll(now) and says when it next wants to be called.

#include <chrono>
#include <cstdint>

namespace rk4 {

using Millis = std::uint64_t;

class Clock {
  public:
    virtual ~Clock() = default;
    virtual Millis now() const = 0;
};

class SteadyClock final : public Clock {
  public:
    Millis now() const override
    {
        using namespace std::chrono;
        return static_cast<Millis>(duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count());
    }
};

// Time that moves only when told to: tests and the built-in simulated unit.
class ManualClock final : public Clock {
  public:
    explicit ManualClock(Millis start = 0) : current(start) {}
    Millis now() const override { return current; }
    void advance(Millis delta) { current += delta; }
    void set(Millis value) { current = value; }

  private:
    Millis current;
};

} // namespace rk4
