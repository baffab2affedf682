// The sample phone book: made by its generator, and good for what the documentation shows with it.

#include <algorithm>

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::Contains;
using ::testing::SizeIs;
using testing_support::readFile;

TEST(SampleFile, IsWhatItsGeneratorWrites) {
    const Tool tool;
    const std::string made = (tool / "contacts.csv").string();
    ASSERT_EQ(testing_support::run({.program = MAKE_CONTACTS, .arguments = {made}}).status, 0);
    EXPECT_TRUE(readFile(made) == readFile(SAMPLE_FILE)) << "run make_contacts and check in what it writes";
}

TEST(SampleFile, BecomesAContactOfEachLine) {
    const Tool tool;
    EXPECT_EQ(tool("import", SAMPLE_FILE).out, "imported 200 of 200 lines\n");
    const Json contacts = tool.json(0, "list");
    ASSERT_THAT(contacts, SizeIs(200));
    for (const std::string key : {"group", "categories", "mobile", "home", "business", "email", "pager", "fax",
                                  "birthday", "avatar", "photo", "bell", "callingScreen", "primary"}) {
        EXPECT_GE(std::count_if(contacts.begin(), contacts.end(), [&](const Json& c) { return c.contains(key); }), 10)
            << key;
    }
}

TEST(SampleFile, AnswersWhatTheDocumentationAsks) {
    const Tool tool;
    tool("import", SAMPLE_FILE);
    EXPECT_EQ(tool.json(0, "identify", "+82 10-2345-6789")["name"], "김민수");
    EXPECT_EQ(tool.json(0, "identify", "+821023456789")["name"], "김민수");
    EXPECT_THAT(namesIn(tool.json(0, "search", "민수")), Contains("김민수"));
    EXPECT_GE(tool.json(0, "search", "ㄱㅁ").size(), 6u);
    EXPECT_THAT(namesIn(tool.json(0, "number", "2345")), Contains("김민수"));
}
