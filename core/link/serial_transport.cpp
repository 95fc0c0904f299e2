#include "core/link/serial_transport.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace rk4::link {

namespace {
constexpr Millis kHangUpNap = 10;
}

FdTransport::FdTransport(int descriptor) : fd(descriptor) {}

FdTransport::~FdTransport() { FdTransport::close(); }

void FdTransport::adopt(int descriptor)
{
    close();
    fd = descriptor;
    broken = false;
}

OpenResult FdTransport::open()
{
    if (fd < 0)
        return {false, "No device."};
    return {true, {}};
}

void FdTransport::close()
{
    if (fd >= 0)
        ::close(fd);
    fd = -1;
    queued.clear();
}

bool FdTransport::push()
{
    while (!queued.empty()) {
        const ssize_t written = ::write(fd, queued.data(), queued.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            if (errno == EAGAIN || errno == EWOULDBLOCK)
                return true;
            broken = true;
            queued.clear();
            return false;
        }
        queued.erase(queued.begin(), queued.begin() + written);
    }
    return true;
}

bool FdTransport::write(std::span<const std::uint8_t> bytes)
{
    if (fd < 0)
        return false;
    queued.insert(queued.end(), bytes.begin(), bytes.end());
    return push();
}

bool FdTransport::allSent()
{
    if (fd < 0)
        return true;
    push();
    if (!queued.empty())
        return false;
    // The kernel still holding bytes means they have not gone down the wire.
    int waiting = 0;
    if (::ioctl(fd, TIOCOUTQ, &waiting) < 0)
        return true;
    return waiting == 0;
}

std::size_t FdTransport::unsent()
{
    if (fd < 0)
        return 0;
    push();
    int waiting = 0;
    if (::ioctl(fd, TIOCOUTQ, &waiting) < 0)
        waiting = 0;
    return queued.size() + static_cast<std::size_t>(std::max(waiting, 0));
}

std::size_t FdTransport::read(std::span<std::uint8_t> buffer)
{
    if (fd < 0 || buffer.empty())
        return 0;
    if (!queued.empty())
        push();
    for (;;) {
        const ssize_t count = ::read(fd, buffer.data(), buffer.size());
        if (count > 0)
            return static_cast<std::size_t>(count);
        // No bytes, would block, or a line error (EIO from a hung-up line):
        // there is nothing to clear here, so reading simply goes on.
        if (count < 0 && errno == EINTR)
            continue;
        return 0;
    }
}

void FdTransport::purge(Purge side)
{
    if (fd < 0)
        return;
    if (side != Purge::Receive) {
        queued.clear();
        ::tcflush(fd, TCOFLUSH);
    }
    if (side != Purge::Transmit) {
        if (::tcflush(fd, TCIFLUSH) < 0) {
            std::uint8_t scrap[256];
            while (::read(fd, scrap, sizeof scrap) > 0) {
            }
        }
    }
}

std::string openFailureDetail(const std::string& path, int error)
{
    switch (error) {
    case EACCES:
    case EPERM:
        return "Permission denied for " + path +
               ". The user must be in the dialout group (sudo usermod -aG dialout $USER), then log in again.";
    case ENOENT:
    case ENODEV:
    case ENXIO:
        return "There is no device " + path +
               ". Check that the adapter is plugged in, or bind the port to another device.";
    case EBUSY:
    case EWOULDBLOCK: return path + " is in use by another program.";
    case ENOTTY: return path + " is not a serial port.";
    default: return path + ": " + std::strerror(error) + ".";
    }
}

OpenResult SerialTransport::open()
{
    if (isOpen())
        return {true, {}};
    if (device.empty())
        return {false, "No device is bound to this port."};
    // O_NOCTTY: a pseudo-terminal must never become our controlling terminal.
    const int descriptor = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return {false, openFailureDetail(device, errno)};
    auto refuse = [&](int error) {
        ::close(descriptor);
        return OpenResult{false, openFailureDetail(device, error)};
    };
    if (!::isatty(descriptor))
        return refuse(ENOTTY);
    // Exclusive: further opens of the device fail while we hold it, and the
    // lock keeps out cooperating programs that opened it before us.
    ::ioctl(descriptor, TIOCEXCL);
    if (::flock(descriptor, LOCK_EX | LOCK_NB) < 0)
        return refuse(errno == EWOULDBLOCK ? EBUSY : errno);

    termios settings{};
    if (::tcgetattr(descriptor, &settings) < 0)
        return refuse(errno);
    // Raw bytes: no line editing, echo, translation or software flow control.
    settings.c_iflag &= ~static_cast<tcflag_t>(IGNBRK | BRKINT | PARMRK | ISTRIP | INLCR | IGNCR | ICRNL | IXON |
                                               IXOFF | IXANY | INPCK);
    settings.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    settings.c_lflag &= ~static_cast<tcflag_t>(ECHO | ECHONL | ICANON | ISIG | IEXTEN);
    settings.c_cflag &= ~static_cast<tcflag_t>(CSIZE | PARENB | CSTOPB | CRTSCTS);
    settings.c_cflag |= CS8 | CREAD | CLOCAL;
    settings.c_cc[VMIN] = 0;
    settings.c_cc[VTIME] = 0;
    const speed_t speed = wire.baud == 19200 ? B19200 : B9600;
    ::cfsetispeed(&settings, speed);
    ::cfsetospeed(&settings, speed);
    if (::tcsetattr(descriptor, TCSANOW, &settings) < 0)
        return refuse(errno);

    // DTR as asked, RTS held off. A pseudo-terminal has no modem lines and
    // answers ENOTTY or EINVAL, which is no fault there.
    int line = TIOCM_DTR;
    if (::ioctl(descriptor, wire.dtr ? TIOCMBIS : TIOCMBIC, &line) < 0 && errno != ENOTTY && errno != EINVAL)
        return refuse(errno);
    line = TIOCM_RTS;
    if (::ioctl(descriptor, TIOCMBIC, &line) < 0 && errno != ENOTTY && errno != EINVAL)
        return refuse(errno);

    adopt(descriptor);
    return {true, {}};
}

bool SetUpPort(Transport& port, Prompter& prompter)
{
    if (port.isOpen())
        return true;
    const OpenResult result = port.open();
    if (result.ok)
        return true;
    prompter.ask(Message{"", kErrorOpeningPort, Icon::Error, Buttons::Ok, result.detail});
    return false;
}

void waitForBytes(const Transport& transport, Millis timeout)
{
    const int descriptor = transport.readableDescriptor();
    if (descriptor < 0 || timeout == 0)
        return;
    pollfd watch{descriptor, POLLIN, 0};
    const int ready = ::poll(&watch, 1, static_cast<int>(std::min<Millis>(timeout, 60'000)));
    // A hung-up line is "ready" for ever; do not spin on it.
    if (ready > 0 && (watch.revents & (POLLHUP | POLLERR)) && !(watch.revents & POLLIN))
        ::usleep(static_cast<useconds_t>(std::min<Millis>(timeout, kHangUpNap) * 1000));
}

} // namespace rk4::link
