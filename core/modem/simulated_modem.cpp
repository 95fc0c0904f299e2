#include "core/modem/simulated_modem.h"

#include <array>
#include <cctype>
#include <map>
#include <utility>

namespace rk4::modem {

namespace {

constexpr std::size_t kLongestCommand = 128;

const std::map<std::string, char> kResultDigits{
    {"OK", '0'},    {"CONNECT", '1'},     {"RING", '2'}, {"NO CARRIER", '3'},
    {"ERROR", '4'}, {"NO DIALTONE", '6'}, {"BUSY", '7'}, {"NO ANSWER", '8'},
};

std::span<const std::uint8_t> bytesOf(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

// The value after a command letter: "E0" gives 0; a letter alone counts as 0.
std::optional<int> flag(const std::string& commands, char letter)
{
    const auto at = commands.find(letter);
    if (at == std::string::npos)
        return std::nullopt;
    if (at + 1 < commands.size() && std::isdigit(static_cast<unsigned char>(commands[at + 1])))
        return commands[at + 1] - '0';
    return 0;
}

} // namespace

std::optional<LineFault> parseLineFault(const std::string& text)
{
    static const std::map<std::string, LineFault> kFaults{{"busy", LineFault::Busy},
                                                          {"no-carrier", LineFault::NoCarrier},
                                                          {"no-dialtone", LineFault::NoDialtone},
                                                          {"no-answer", LineFault::NoAnswer},
                                                          {"line-lost", LineFault::LineLost}};
    const auto found = kFaults.find(text);
    if (found == kFaults.end())
        return std::nullopt;
    return found->second;
}

SimulatedModem::SimulatedModem(link::Transport& tool, link::Transport& farEnd, ModemOptions options)
    : tool(tool), farEnd(farEnd), options(std::move(options))
{
    if (!farEnd.isOpen())
        farEnd.open();
}

void SimulatedModem::say(const std::string& text)
{
    if (words) {
        tool.write(bytesOf("\r\n" + text + "\r\n"));
        return;
    }
    const std::string word = text.substr(0, text.find(' '));
    const auto digit = kResultDigits.find(text.starts_with("CONNECT") ? "CONNECT" : word);
    if (digit != kResultDigits.end())
        tool.write(bytesOf(std::string(1, digit->second) + "\r"));
}

void SimulatedModem::hangUp()
{
    mode = Mode::Command;
    pluses = 0;
    farEnd.purge(link::Purge::Both);
}

void SimulatedModem::command(const std::string& text, Millis now)
{
    std::string upper;
    for (const char c : text)
        if (c != ' ')
            upper += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    if (upper.empty())
        return;
    heard.push_back(upper);
    if (!upper.starts_with("AT")) {
        say("ERROR");
        return;
    }
    const std::string rest = upper.substr(2);
    if (rest.starts_with('D')) {
        if (mode != Mode::Command) {
            say("ERROR");
            return;
        }
        std::string number = rest.substr(1);
        if (!number.empty() && (number[0] == 'T' || number[0] == 'P'))
            number.erase(0, 1);
        numbers.push_back(number);
        if (options.fault == LineFault::NoDialtone) {
            say("NO DIALTONE");
            return;
        }
        say("DIALING");
        mode = Mode::Dialling;
        dialStart = now;
        ringingSaid = false;
        return;
    }
    if (rest.starts_with('H')) {
        hangUp();
        say("OK");
        return;
    }
    if (rest.starts_with('O') && mode == Mode::OnlineCommand) {
        mode = Mode::Data;
        lastToolByte = now;
        say(options.connectText);
        return;
    }
    if (rest.starts_with('A')) {
        say("NO CARRIER"); // nobody is calling
        return;
    }
    if (rest.starts_with('Z')) {
        echo = true;
        words = true;
        say("OK");
        return;
    }
    if (const auto e = flag(rest, 'E'))
        echo = *e != 0;
    if (const auto v = flag(rest, 'V'))
        words = *v != 0;
    say("OK");
}

void SimulatedModem::dataFromTool(Millis now)
{
    std::array<std::uint8_t, 512> chunk{};
    for (std::size_t count; (count = tool.read(chunk)) > 0;) {
        std::vector<std::uint8_t> pass;
        for (std::size_t i = 0; i < count; ++i) {
            const std::uint8_t byte = chunk[i];
            // "+++" counts only with a guard time of silence before it.
            if (byte == '+' && pluses < 3 && (pluses > 0 || now >= lastToolByte + options.escapeGuard)) {
                ++pluses;
                plusesEnded = now;
                continue;
            }
            pass.insert(pass.end(), static_cast<std::size_t>(pluses), '+');
            pluses = 0;
            pass.push_back(byte);
            lastToolByte = now;
        }
        farEnd.write(pass);
    }
    // ... and with the same silence after it.
    if (pluses == 3 && now >= plusesEnded + options.escapeGuard) {
        pluses = 0;
        heard.push_back("+++");
        mode = Mode::OnlineCommand;
        say("OK");
    }
}

void SimulatedModem::poll(Millis now)
{
    std::array<std::uint8_t, 512> chunk{};
    switch (mode) {
    case Mode::Command:
    case Mode::OnlineCommand:
        for (std::size_t count; (count = tool.read(chunk)) > 0;) {
            if (echo)
                tool.write(std::span<const std::uint8_t>(chunk).first(count));
            for (std::size_t i = 0; i < count; ++i) {
                const char c = static_cast<char>(chunk[i]);
                if (c == '\r') {
                    command(std::exchange(line, {}), now);
                } else if (c != '\n' && line.size() < kLongestCommand) {
                    line += c;
                }
            }
        }
        // The far end's bytes while the call is held in command mode are lost.
        if (mode == Mode::OnlineCommand)
            farEnd.purge(link::Purge::Receive);
        return;

    case Mode::Dialling:
        if (tool.read(chunk) > 0) {
            // Any key stops the dialling.
            mode = Mode::Command;
            say("NO CARRIER");
            return;
        }
        if (!ringingSaid && now >= dialStart + options.ringTime / 2) {
            ringingSaid = true;
            if (options.fault == LineFault::Busy) {
                mode = Mode::Command;
                say("BUSY");
                return;
            }
            say("RINGING");
        }
        if (options.fault == LineFault::NoAnswer) {
            if (now >= dialStart + options.ringTime * 5) {
                mode = Mode::Command;
                say("NO ANSWER");
            }
            return;
        }
        if (now >= dialStart + options.ringTime) {
            if (options.fault == LineFault::NoCarrier) {
                mode = Mode::Command;
                say("NO CARRIER");
                return;
            }
            mode = Mode::Data;
            fromFarEnd = 0;
            pluses = 0;
            lastToolByte = now;
            farEnd.purge(link::Purge::Both);
            say(options.connectText);
        }
        return;

    case Mode::Data: {
        dataFromTool(now);
        if (mode != Mode::Data)
            return;
        for (std::size_t count; (count = farEnd.read(chunk)) > 0;) {
            std::size_t passed = count;
            const bool losing = options.fault == LineFault::LineLost;
            if (losing && fromFarEnd + count >= options.lineLostAfter)
                passed = options.lineLostAfter - fromFarEnd;
            tool.write(std::span<const std::uint8_t>(chunk).first(passed));
            fromFarEnd += passed;
            if (losing && fromFarEnd >= options.lineLostAfter) {
                hangUp();
                say("NO CARRIER");
                return;
            }
        }
        return;
    }
    }
}

SimulatedDialUp::SimulatedDialUp(link::Transport& tool, ModemOptions modemOptions, link::UnitOptions unitOptions)
    : called(telephoneLine.unit(), std::move(unitOptions)), dialUp(tool, telephoneLine.tool(), std::move(modemOptions))
{}

void SimulatedDialUp::poll(Millis now)
{
    dialUp.poll(now);
    called.poll(now);
    dialUp.poll(now);
}

} // namespace rk4::modem
