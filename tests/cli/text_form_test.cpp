#include "core/database/file.h"
#include "core/database/text_form.h"
#include "tests/support/cli_runner.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

using namespace rk4;
using rk4::test::CommandResult;
using rk4::test::runRk4;
using rk4::test::TempDir;

namespace {

std::string textOf(const std::filesystem::path& path)
{
    std::ifstream in(path);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

std::string replaced(std::string text, const std::string& from, const std::string& to)
{
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

} // namespace

TEST(TextFormVerbs, ExportImportAndDiffAgreeOnFilesAndTheUnit)
{
    TempDir dir;
    const std::string site = (dir / "site.dat").string(), yaml = (dir / "site.yaml").string(),
                      back = (dir / "back.dat").string();
    ASSERT_EQ(runRk4({"new", "--basic", site}).code, 0);

    const CommandResult exported = runRk4({"export", site, yaml});
    ASSERT_EQ(exported.code, 0) << exported.err;
    EXPECT_EQ(runRk4({"export", site}).out, textOf(yaml)) << "without OUT.yaml the text goes to the output";
    ASSERT_EQ(runRk4({"import", yaml, back}).code, 0);
    EXPECT_EQ(readWholeFile(back), readWholeFile(site));

    EXPECT_EQ(runRk4({"diff", site, yaml}).out, site + " and " + yaml + " hold the same configuration\n");

    std::ofstream(dir / "edited.yaml") << replaced(textOf(yaml), "ringsToAnswer: 2", "ringsToAnswer: 4");
    const CommandResult differs = runRk4({"diff", yaml, (dir / "edited.yaml").string()});
    EXPECT_EQ(differs.code, 1);
    EXPECT_NE(differs.out.find("  general ringsToAnswer: 2 in " + yaml + ", 4 in "), std::string::npos) << differs.out;

    const CommandResult unit = runRk4({"diff", yaml, "--port", "sim", "--sim-database", (dir / "unit.dat").string()});
    EXPECT_EQ(unit.code, 1) << unit.err << unit.out;
    EXPECT_NE(unit.out.find(" between " + yaml + " and the unit:\n"), std::string::npos) << unit.out;
}

TEST(TextFormVerbs, ARefusedTextNamesItsPlaceAndLeavesTheOutputAlone)
{
    TempDir dir;
    const std::string site = (dir / "site.dat").string(), yaml = (dir / "site.yaml").string(),
                      bad = (dir / "bad.yaml").string();
    ASSERT_EQ(runRk4({"new", site}).code, 0);
    ASSERT_EQ(runRk4({"export", site, yaml}).code, 0);
    const auto before = readWholeFile(site);

    std::ofstream(bad) << replaced(textOf(yaml), "shiftChangeCode: \"\"", "shiftChangeCode: \"12E\"");
    const CommandResult refused = runRk4({"import", bad, site});
    EXPECT_EQ(refused.code, 2);
    EXPECT_EQ(refused.err,
              bad + ": line 6, general.shiftChangeCode: 'E' is not a DTMF digit (0-9, A-D, *, # and ! only)\n");
    EXPECT_EQ(readWholeFile(site), before);

    EXPECT_EQ(runRk4({"diff", site, bad}).code, 2);
    EXPECT_EQ(runRk4({"import", (dir / "missing.yaml").string(), site}).code, 2);
    EXPECT_EQ(runRk4({"export", site, (dir / "out.txt").string()}).code, 2);
}
