// Names of files that mean something else on Windows.

#include <filesystem>

#include "tests/support/Files.h"
#include "tests/tools/ToolTest.h"

namespace tool_test {
namespace {

using testing::HasSubstr;

TEST(NamesOnWindows, ADeviceIsNoFile) {
    const Tool tool;
    tool("add", "--name", "Anna");
    for (const char* name : {"NUL", "con", "COM1"}) {
        const std::string inFolder = (tool / name).string();
        for (const std::string& path : {std::string(name), inFolder}) {
            EXPECT_THAT(tool("import", path).err, HasSubstr(path + ": is no regular file"));
            EXPECT_THAT(tool("export", path).err, HasSubstr(path + ": is no regular file"));
        }
    }
}

TEST(NamesOnWindows, AStoreOnAnotherMachineIsNotMadeOnThisOne) {
    const Tool tool;
    const std::filesystem::path here = "/tessera-test-no-such-machine";

    const Outcome outcome = tool("--store", R"(\\tessera-test-no-such-machine\share\store.db)", "init");

    EXPECT_EQ(outcome.status, 3) << outcome.out;
    EXPECT_THAT(outcome.err, HasSubstr(R"(\\tessera-test-no-such-machine\share)"));
    EXPECT_FALSE(std::filesystem::exists(here));
}

TEST(NamesOnWindows, OfTheSystemsLongFormAreTaken) {
    const Tool tool;
    const std::string path = R"(\\?\)" + (tool / "long.csv").make_preferred().string();
    tool("add", "--name", "Anna");

    EXPECT_EQ(tool("export", path).status, 0);
    EXPECT_EQ(tool("export", path).status, 0);

    EXPECT_EQ(testing_support::readFile(tool / "long.csv"), tool("export").out);
}

TEST(NamesOnWindows, AFileInOtherLettersIsTheSame) {
    const Tool tool;
    tool("add", "--name", "Anna");
    const std::string path = tool.file("People.csv", "old");

    EXPECT_EQ(tool("export", (tool / "PEOPLE.CSV").string()).status, 0);

    EXPECT_EQ(testing_support::readFile(path), tool("export").out);
}

}  // namespace
}  // namespace tool_test
