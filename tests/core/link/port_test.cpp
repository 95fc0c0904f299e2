#include "core/link/memory_transport.h"
#include "core/link/port_slots.h"
#include "core/link/serial_transport.h"
#include "tests/support/scripted_prompter.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <termios.h>
#include <thread>
#include <unistd.h>

using namespace rk4;
using namespace rk4::link;

namespace {

// A pseudo-terminal whose slave the tests open as if it were a serial port.
struct PseudoTerminal {
    int master = ::posix_openpt(O_RDWR | O_NOCTTY);
    std::string slave = master >= 0 && ::grantpt(master) == 0 && ::unlockpt(master) == 0 ? ::ptsname(master) : "";
    ~PseudoTerminal() { ::close(master); }
};

struct ClearOverride {
    explicit ClearOverride(const char* name) : name(name) { ::unsetenv(name); }
    ~ClearOverride() { ::unsetenv(name); }
    const char* name;
};

} // namespace

TEST(PortSlots, BindingsPersistAndTheEnvironmentOverridesThem)
{
    ClearOverride first("RK4_COM1"), third("RK4_COM3");
    test::TempDir dir;
    const auto file = portBindingsPath(dir.path());
    EXPECT_EQ(file, dir.path() / "rk4ports.txt");

    PortBindings fresh = PortBindings::load(file);
    EXPECT_EQ(portSlotName(0), "COM 1");
    EXPECT_EQ(fresh.path(0), "/dev/ttyS0");
    EXPECT_EQ(fresh.path(2), "/dev/ttyUSB0");

    fresh.bind(2, "/dev/pts/7");
    fresh.bind(7, "/dev/serial/by-id/usb-adapter port0");
    ASSERT_TRUE(fresh.save(file));
    PortBindings loaded = PortBindings::load(file);
    EXPECT_EQ(loaded.path(2), "/dev/pts/7");
    EXPECT_EQ(loaded.path(7), "/dev/serial/by-id/usb-adapter port0");
    EXPECT_EQ(loaded.path(0), "/dev/ttyS0");

    ::setenv("RK4_COM3", "/dev/pts/9", 1);
    EXPECT_EQ(loaded.path(2), "/dev/pts/9");
    EXPECT_TRUE(loaded.overridden(2));
    EXPECT_EQ(loaded.boundPath(2), "/dev/pts/7");
    EXPECT_FALSE(loaded.overridden(0));

    loaded.bind(2, "");
    EXPECT_EQ(loaded.boundPath(2), "/dev/ttyUSB0");
}

TEST(PortSlots, StrayLinesInTheBindingsFileAreIgnored)
{
    test::TempDir dir;
    std::ofstream(dir / "rk4ports.txt") << "garbage\nCOM 9 = /dev/x\nCOM 2=/dev/ttyACM3  \n=\n";
    const PortBindings bindings = PortBindings::load(dir / "rk4ports.txt");
    EXPECT_EQ(bindings.boundPath(1), "/dev/ttyACM3");
    EXPECT_EQ(bindings.boundPath(0), "/dev/ttyS0");
}

TEST(SetUpPort, AFailedOpenIsReportedWithItsCause)
{
    MemoryLink memory;
    memory.refuseOpen("Permission denied for /dev/ttyUSB0.");
    test::ScriptedPrompter prompter;
    EXPECT_FALSE(SetUpPort(memory.tool(), prompter));
    ASSERT_EQ(prompter.messages().size(), 1u);
    EXPECT_EQ(prompter.messages()[0].title, "");
    EXPECT_EQ(prompter.messages()[0].text, "Error opening COM port");
    EXPECT_EQ(prompter.messages()[0].detail, "Permission denied for /dev/ttyUSB0.");
}

TEST(SerialTransport, ExplainsWhyAPortWillNotOpen)
{
    // A missing device and a file that is no tty: see the transfer command's port test.
    EXPECT_NE(openFailureDetail("/dev/ttyUSB0", EACCES).find("dialout group"), std::string::npos);
    if (::geteuid() == 0)
        return; // root opens anything
    test::TempDir dir;
    std::ofstream(dir / "plain") << "x";
    SerialTransport plain((dir / "plain").string());
    std::filesystem::permissions(dir / "plain", std::filesystem::perms::none);
    EXPECT_NE(plain.open().detail.find("dialout group"), std::string::npos);
    EXPECT_FALSE(plain.isOpen());
}

TEST(SerialTransport, OpensAPseudoTerminalExclusivelyAsARawLine)
{
    PseudoTerminal terminal;
    ASSERT_FALSE(terminal.slave.empty());
    SerialTransport port(terminal.slave);
    const OpenResult opened = port.open();
    ASSERT_TRUE(opened.ok) << opened.detail;

    termios settings{};
    ASSERT_EQ(::tcgetattr(port.readableDescriptor(), &settings), 0);
    EXPECT_EQ(::cfgetospeed(&settings), B9600);
    EXPECT_EQ(settings.c_cflag & CSIZE, static_cast<tcflag_t>(CS8));
    EXPECT_FALSE(settings.c_cflag & (PARENB | CSTOPB | CRTSCTS));
    EXPECT_FALSE(settings.c_lflag & (ICANON | ECHO));
    EXPECT_FALSE(settings.c_iflag & (IXON | ICRNL));

    SerialTransport second(terminal.slave);
    const OpenResult refused = second.open();
    EXPECT_FALSE(refused.ok);
    EXPECT_NE(refused.detail.find("in use"), std::string::npos);

    // Bytes that arrived before a purge are never read.
    ASSERT_EQ(::write(terminal.master, "stale", 5), 5);
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    port.purge(Purge::Receive);
    std::array<std::uint8_t, 16> buffer{};
    EXPECT_EQ(port.read(buffer), 0u);

    port.close();
    EXPECT_TRUE(second.open().ok);
}
