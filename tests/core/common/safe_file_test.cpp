#include "core/common/safe_file.h"
#include "tests/support/small_disk.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>
#include <sys/sysmacros.h>

#include <fstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace rk4;
using rk4::test::inChild;
using rk4::test::onSmallDisk;
using rk4::test::TempDir;
namespace fs = std::filesystem;

namespace {

std::vector<std::uint8_t> bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

std::string contentOf(const fs::path& path)
{
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void put(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

std::vector<std::string> namesIn(const fs::path& folder)
{
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

long deadProcessId()
{
    const pid_t child = ::fork();
    if (child == 0)
        ::_exit(0);
    ::waitpid(child, nullptr, 0);
    return child;
}

} // namespace

TEST(SafeFile, ReplacesTheTargetAndLeavesNothingBeside)
{
    TempDir dir;
    put(dir / "site.dat", "old");
    ASSERT_TRUE(writeFileAtomically(dir / "site.dat", bytesOf("new contents")));
    EXPECT_EQ(contentOf(dir / "site.dat"), "new contents");
    EXPECT_EQ(namesIn(dir.path()), std::vector<std::string>{"site.dat"});
}

TEST(SafeFile, WritesThroughSymbolicLinksToTheirTarget)
{
    TempDir dir;
    fs::create_directory(dir / "real");
    put(dir / "real" / "site.dat", "old");
    fs::create_symlink("real/site.dat", dir / "link.dat");
    fs::create_symlink("link.dat", dir / "chain.dat");
    fs::create_symlink("real/fresh.dat", dir / "dangling.dat");

    ASSERT_TRUE(writeFileAtomically(dir / "chain.dat", bytesOf("through two links")));
    EXPECT_TRUE(fs::is_symlink(dir / "chain.dat"));
    EXPECT_TRUE(fs::is_symlink(dir / "link.dat"));
    EXPECT_EQ(contentOf(dir / "real" / "site.dat"), "through two links");

    // A link to a file not made yet creates that file and keeps the link.
    ASSERT_TRUE(writeFileAtomically(dir / "dangling.dat", bytesOf("created")));
    EXPECT_TRUE(fs::is_symlink(dir / "dangling.dat"));
    EXPECT_EQ(contentOf(dir / "real" / "fresh.dat"), "created");
    EXPECT_EQ(namesIn(dir / "real"), (std::vector<std::string>{"fresh.dat", "site.dat"}));
}

TEST(SafeFile, RefusesFoldersDevicesAndFifosWithoutReplacingThem)
{
    TempDir dir;
    ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0644), 0);
    fs::create_directory(dir / "folder");
    struct Case {
        fs::path target;
        const char* cause;
    };
    std::vector<Case> cases = {{dir / "pipe", "not a regular file (a FIFO)"},
                               {dir / "folder", "not a regular file (a folder)"}};
    // A device node of our own, so that a broken writer replaces nothing the
    // machine needs (as root it would have turned /dev/full into a file).
    const bool device = ::mknod((dir / "full").c_str(), S_IFCHR | 0666, ::makedev(1, 7)) == 0;
    if (device) {
        fs::create_symlink(dir / "full", dir / "full.vox");
        cases.push_back({dir / "full", "not a regular file (a device)"});
        cases.push_back({dir / "full.vox", "not a regular file (a device)"});
    }
    for (const Case& c : cases) {
        const SaveResult result = writeFileAtomically(c.target, bytesOf("x"));
        EXPECT_EQ(result.problem, SaveProblem::NotRegularFile) << c.target;
        EXPECT_EQ(result.cause(), c.cause);
        EXPECT_EQ(checkSaveTarget(c.target).problem, SaveProblem::NotRegularFile);
    }
    struct stat info {};
    ASSERT_EQ(::stat((dir / "pipe").c_str(), &info), 0);
    EXPECT_TRUE(S_ISFIFO(info.st_mode));
    if (device) {
        EXPECT_TRUE(fs::is_symlink(dir / "full.vox"));
        EXPECT_TRUE(fs::is_character_file(dir / "full"));
        EXPECT_EQ(namesIn(dir.path()), (std::vector<std::string>{"folder", "full", "full.vox", "pipe"}));
    } else {
        EXPECT_EQ(namesIn(dir.path()), (std::vector<std::string>{"folder", "pipe"}));
    }
}

TEST(SafeFile, KeepsThePermissionsOfTheFileItReplacesAndGivesNewFilesTheUmask)
{
    TempDir dir;
    put(dir / "site.dat", "old");
    fs::permissions(dir / "site.dat", fs::perms(0640));
    ASSERT_TRUE(writeFileAtomically(dir / "site.dat", bytesOf("new")));
    EXPECT_EQ(fs::status(dir / "site.dat").permissions(), fs::perms(0640));

    const mode_t previous = ::umask(027);
    const SaveResult created = writeFileAtomically(dir / "fresh.dat", bytesOf("new"));
    ::umask(previous);
    ASSERT_TRUE(created);
    EXPECT_EQ(fs::status(dir / "fresh.dat").permissions(), fs::perms(0640)) << "not the 0600 of a temporary file";
}

TEST(SafeFile, LeavesAFileTheUserCannotOverwriteAsItWas)
{
    TempDir dir;
    fs::permissions(dir.path(), fs::perms(0777));
    put(dir / "site.dat", "old");
    fs::permissions(dir / "site.dat", fs::perms(0444));
    // Run as an ordinary user: the superuser may overwrite anything.
    const int status = inChild([&] {
        if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0))
            return 77;
        const SaveResult checked = checkSaveTarget(dir / "site.dat");
        const SaveResult saved = writeFileAtomically(dir / "site.dat", bytesOf("new"));
        if (checked.problem != SaveProblem::NotWritable || saved.problem != SaveProblem::NotWritable)
            return 1;
        return saved.cause() == "not writable: Permission denied" ? 0 : 2;
    });
    if (status == 77)
        GTEST_SKIP() << "cannot become an ordinary user";
    EXPECT_EQ(status, 0);
    EXPECT_EQ(contentOf(dir / "site.dat"), "old");
    EXPECT_EQ(namesIn(dir.path()), std::vector<std::string>{"site.dat"});
}

TEST(SafeFile, RemovesTemporariesOfDeadProcessesOnlyForItsOwnTarget)
{
    TempDir dir;
    const std::string dead = std::to_string(deadProcessId());
    const std::string alive = std::to_string(::getppid());
    for (const std::string& name :
         {"site.dat.Ab12Cd.tmp~" + dead, "site.dat.tmp~" + dead, "site.dat.Xy34Zw.tmp~" + alive,
          "other.dat.Ab12Cd.tmp~" + dead, std::string("site.dat.notes")})
        put(dir / name, "leftover");
    ASSERT_TRUE(writeFileAtomically(dir / "site.dat", bytesOf("new")));
    EXPECT_EQ(namesIn(dir.path()), (std::vector<std::string>{"other.dat.Ab12Cd.tmp~" + dead, "site.dat",
                                                             "site.dat.Xy34Zw.tmp~" + alive, "site.dat.notes"}));
}

TEST(SafeFile, AStreamedFileAppearsOnlyOnCommit)
{
    TempDir dir;
    put(dir / "voices.msg", "old");
    {
        SafeFileWriter writer(dir / "voices.msg");
        ASSERT_TRUE(writer.result());
        EXPECT_EQ(writer.temporaryPath().parent_path(), dir.path());
        ASSERT_TRUE(writer.write(bytesOf("half")));
        EXPECT_EQ(contentOf(dir / "voices.msg"), "old");
    } // dropped without commit
    EXPECT_EQ(namesIn(dir.path()), std::vector<std::string>{"voices.msg"});

    SafeFileWriter writer(dir / "voices.msg");
    writer.write(bytesOf("all "));
    writer.write(bytesOf("of it"));
    ASSERT_TRUE(writer.commit());
    EXPECT_EQ(contentOf(dir / "voices.msg"), "all of it");
    EXPECT_EQ(namesIn(dir.path()), std::vector<std::string>{"voices.msg"});
}

TEST(SafeFile, AFullDiskIsReportedAsSuchAndKeepsTheOldFile)
{
    TempDir dir;
    fs::create_directory(dir / "small");
    const fs::path target = dir / "small" / "voices.msg";
    const int status = onSmallDisk(dir / "small", "64k", [&] {
        put(target, "old");
        const SaveResult saved = writeFileAtomically(target, std::vector<std::uint8_t>(1 << 20, 0x5A));
        if (saved.problem != SaveProblem::DiskFull || saved.cause() != "disk full")
            return 1;
        if (contentOf(target) != "old")
            return 2;
        return namesIn(dir / "small") == std::vector<std::string>{"voices.msg"} ? 0 : 3;
    });
    if (status == test::kNoPrivateMounts)
        GTEST_SKIP() << "no private mounts here";
    EXPECT_EQ(status, 0);
}

TEST(SafeFile, TheRoomForASaveIsCheckedBeforeTheWorkThatMakesIt)
{
    TempDir dir;
    fs::create_directory(dir / "small");
    const int status = onSmallDisk(dir / "small", "64k", [&] {
        const SaveResult tooBig = checkSaveRoom(dir / "small" / "voices.msg", 528384);
        if (tooBig.problem != SaveProblem::DiskFull || tooBig.cause() != "disk full")
            return 1;
        return checkSaveRoom(dir / "small" / "site.dat", 4704) ? 0 : 2;
    });
    if (status == test::kNoPrivateMounts)
        GTEST_SKIP() << "no private mounts here";
    EXPECT_EQ(status, 0);
}

TEST(SafeFile, ReadingSaysWhyAFileCannotBeRead)
{
    TempDir dir;
    ASSERT_EQ(::mkfifo((dir / "pipe").c_str(), 0644), 0);
    const FileRead missing = readFileBytes(dir / "absent");
    EXPECT_TRUE(missing.missing());
    const FileRead fifo = readFileBytes(dir / "pipe"); // must not wait for a writer
    EXPECT_FALSE(fifo);
    EXPECT_FALSE(fifo.missing());
    EXPECT_EQ(fifo.cause(), "not a regular file (a FIFO)");
    const FileRead folder = readFileBytes(dir.path());
    EXPECT_EQ(folder.cause(), "not a regular file (a folder)");
}
