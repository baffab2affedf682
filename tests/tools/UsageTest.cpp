// Errors at a terminal: one line that says what is wrong, and what to do.

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::HasSubstr;
using ::testing::Not;

TEST(Usage, SuggestsTheNearestCommand) {
    const Tool tool;
    expectFailure(tool("lst"), 2, "\"lst\" is no command; did you mean \"list\"? (see tessera --help)");
    expectFailure(tool("lsit"), 2, "did you mean \"list\"?");
    expectFailure(tool("serach", "kim"), 2, "did you mean \"search\"?");
    expectFailure(tool("speeddial", "list"), 2, "did you mean \"speed-dial\"?");
    expectFailure(tool("group", "ad"), 2, "did you mean \"group add\"? (see tessera group --help)");
    EXPECT_THAT(tool("xyzzy").err, Not(HasSubstr("did you mean")));
}

TEST(Usage, SuggestsTheNearestOption) {
    const Tool tool;
    expectFailure(tool("list", "--gruop", "friends"), 2,
                  "list has no option \"--gruop\"; did you mean \"--group\"? (see tessera list --help)");
    expectFailure(tool("add", "--moblie=010"), 2, "did you mean \"--mobile\"?");
    expectFailure(tool("list", "--jsno"), 2, "did you mean \"--json\"?");
    EXPECT_THAT(tool("list", "-x").err, HasSubstr("list has no option \"-x\" (see"));
}

TEST(Usage, SaysWhatIsWanted) {
    const Tool tool;
    expectFailure(tool(), 2, "a command is wanted, such as list (see tessera --help)");
    expectFailure(tool("call"), 2, "log, list, last, oldest, delete or clear (see tessera call --help)");
    expectFailure(tool("show"), 2, "show wants PERSON (see tessera show --help)");
    expectFailure(tool("speed-dial", "set", "5"), 2, "speed-dial set wants PERSON and NUMBER as well");
    expectFailure(tool("list", "--group"), 2, "--group wants a NAME behind it");
    expectFailure(tool("show", "Anna", "Bella"), 2, "\"Bella\"; a text with blanks in it wants quotes around it");
    expectFailure(tool("watch", "x"), 2, "watch does not know what to do with \"x\"");
    expectFailure(tool("list", "--group", "a", "--prefix", "b"), 2, "--group and --prefix do not go together");
    expectFailure(tool("delete", "--yes"), 2, "--yes goes only with --all");
}

TEST(StoreAdvice, SaysWhatToDoAboutAStoreThatCannotBeUsed) {
    const Tool tool;
    expectFailure(tool("list"), 3, "tessera init");
    for (int i = 0; i < 100; ++i)
        tool("add", "--name", "Anna " + std::to_string(i), "--mobile", "010-" + std::to_string(i));

    tool.file("diary.txt", std::string(5000, '.'));
    expectFailure(tool("--store", (tool / "diary.txt").string(), "list"), 3, "--store or TESSERA_STORE");
    expectFailure(tool("--store", tool.temporary().string(), "list"), 3, "--store or TESSERA_STORE");

    std::string bytes = testing_support::readFile(tool.store());
    ++bytes[63];  // the lowest byte of the version of the format
    tool.file("newer.db", bytes);
    expectFailure(tool("--store", (tool / "newer.db").string(), "list"), 3, "newer version of Tessera; use that");

    --bytes[63];
    bytes.replace(4096, std::string::npos, bytes.size() - 4096, '\x5A');
    tool.file("damaged.db", bytes);
    expectFailure(tool("--store", (tool / "damaged.db").string(), "list"), 3, "tessera recover");
}
