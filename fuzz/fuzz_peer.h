#pragma once
// The far end of a line in a fuzz target: every request it is sent is answered
// with the next piece of the fuzzer's input. How the input is cut into pieces
// is the target's own rule; the rest of the line is the same for all.

#include "core/common/prompter.h"
#include "core/link/transport.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <deque>

namespace rk4::fuzz {

class FuzzPeer : public link::Transport {
  public:
    // `purgeClears`: whether a purge drops what was said and not yet read;
    // `startsOpen`: whether the line is up before anyone opens it.
    FuzzPeer(const std::uint8_t* data, std::size_t size, bool purgeClears = true, bool startsOpen = true)
        : data(data), size(size), purgeClears(purgeClears), opened(startsOpen)
    {}

    link::OpenResult open() override { return {opened = true, {}}; }
    bool isOpen() const override { return opened; }
    void close() override { opened = false; }
    bool write(std::span<const std::uint8_t>) override
    {
        answer();
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
    void purge(link::Purge) override
    {
        if (purgeClears)
            inbox.clear();
    }

  protected:
    // Says the next piece of the input, if any is left.
    virtual void answer() = 0;
    std::size_t left() const { return size - offset; }
    const std::uint8_t* next() const { return data + offset; }
    void skip(std::size_t count) { offset += std::min(count, left()); }
    void say(std::size_t count)
    {
        count = std::min(count, left());
        inbox.insert(inbox.end(), next(), next() + count);
        offset += count;
    }

  private:
    const std::uint8_t* data;
    std::size_t size;
    std::size_t offset = 0;
    bool purgeClears;
    bool opened;
    std::deque<std::uint8_t> inbox;
};

// Answers every question as a technician who always says the first button.
class SilentPrompter final : public Prompter {
  public:
    explicit SilentPrompter(Answer answer) : reply(answer) {}
    Answer ask(const Message&) override { return reply; }
    std::optional<std::string> chooseFile(const FileRequest&) override { return std::nullopt; }

  private:
    Answer reply;
};

} // namespace rk4::fuzz
