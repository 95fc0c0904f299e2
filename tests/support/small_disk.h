#pragma once
// Runs a check on a tiny private file system, so a full disk can be met for
// real without filling the machine's.

#include <filesystem>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace rk4::test {

inline constexpr int kNoPrivateMounts = 77;

// Runs `body` in a child process and returns its exit status (128 when it did not exit).
template <typename Body>
int inChild(Body body)
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(body());
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128;
}

// Mounts a file system of `size` ("64k") on `folder`, seen only by a child
// process, and returns the exit status of `body` run there, or
// kNoPrivateMounts when this machine allows no such mount.
template <typename Body>
int onSmallDisk(const std::filesystem::path& folder, const std::string& size, Body body)
{
    return inChild([&] {
        const int flags = ::geteuid() == 0 ? CLONE_NEWNS : CLONE_NEWNS | CLONE_NEWUSER;
        if (::unshare(flags) != 0 || ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("tmpfs", folder.c_str(), "tmpfs", 0, ("size=" + size).c_str()) != 0)
            return kNoPrivateMounts;
        return body();
    });
}

} // namespace rk4::test
