// --help: what it says of every command.

#include "tests/tools/HelpOf.h"

using namespace tool_test;
using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

TEST(ToolHelp, GivesEveryCommandASummaryADescriptionAndExamples) {
    const Tool tool;
    const auto commands = helpOfAll(tool);
    EXPECT_EQ(commands.count({"speed-dial", "set"}), 1u);
    for (const auto& [command, help] : commands) {
        SCOPED_TRACE(joined(command));
        EXPECT_THAT(help.summary, Not(AnyOf(IsEmpty(), HasSubstr("Usage"))));
        EXPECT_THAT(help.options, Contains("--help"));
        EXPECT_THAT(help.details, Not(IsEmpty()));
        EXPECT_THAT(help.examples, Not(IsEmpty()));
        for (const std::string& example : help.examples)
            EXPECT_THAT(example, HasSubstr(joined(command)));
    }
    EXPECT_FALSE(exists(tool.store()));
}

TEST(ToolHelp, FitsATerminalBelowTheListsOfOptions) {
    const Tool tool;
    for (const auto& [command, help] : helpOfAll(tool))
        for (const std::string& line : help.details)
            EXPECT_LT(line.size(), 80u) << line;
}
