// The C library of Windows has no local time before 1970 and after the year 3000.

#include "tests/tools/ToolTest.h"

namespace tool_test {
namespace {

using testing::HasSubstr;

TEST(ClockOnWindows, GoesInEveryYearOfACall) {
    for (const char* day : {"1601-01-02", "1969-12-31", "1970-01-01", "1972-02-29", "3001-06-30", "9999-12-30"}) {
        const Tool tool;
        tool("init");
        const std::string moment = std::string(day) + "T12:34:56";

        const Outcome logged = tool("call", "log", "010-1234-5678", "--at", moment);

        EXPECT_EQ(logged.status, 0) << logged.err;
        EXPECT_THAT(tool("call", "list").out, HasSubstr(std::string(day) + " 12:34:56"));
    }
}

TEST(ClockOnWindows, IsOfItsZone) {
    const Tool tool;
    tool("init");
    testing_support::Command log = tool.command({"call", "log", "010-1234-5678", "--at", "1601-01-02T03:00"});
    log.environment["TZ"] = "KST-9";

    EXPECT_EQ(run(log).status, 0);

    EXPECT_EQ(tool.json(0, "call", "list")[0]["time"], "1601-01-01T18:00:00Z");
}

}  // namespace
}  // namespace tool_test
