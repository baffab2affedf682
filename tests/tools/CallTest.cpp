// call: calls logged, found in the phone book, and told.

#include <algorithm>
#include <regex>

#include "tessera/platform/objectstore/CCeDBDatabase.h"
#include "tests/support/SystemNames.h"
#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::SizeIs;

namespace {

/// A phone book of one, on a machine in Seoul.
class Calls : public Tool {
public:
    Calls() { run(in("C.UTF-8", {"add", "--name", "김민수", "--mobile", "010-2345-6789", "--fax", "+82 2-312-4567"})); }

    testing_support::Command in(const std::string& locale, std::vector<std::string> arguments) const {
        auto tried = command(std::move(arguments));
        tried.environment["TZ"] = testing_support::zoneOfSeoul;
        tried.environment["LC_ALL"] = locale;
        return tried;
    }
    template <class... Arguments>
    Outcome seoul(Arguments... arguments) const {
        return run(in("C.UTF-8", {std::string(arguments)...}));
    }
    template <class... Arguments>
    Json logged(Arguments... arguments) const {
        const Outcome outcome = seoul("--json", "call", "log", arguments...);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        Json call = Json::parse(outcome.out, nullptr, false);
        return call;
    }
};

/// Calls one tick after another from the year 2000 on, with the numbers 1, 2, ...
void fillHistory(const Tool& tool, DWORD count) {
    ASSERT_TRUE(ObjectStore::mount(tool.store().string())) << ObjectStore::errorText();
    {
        CCeDBDatabase calls;
        ASSERT_TRUE(calls.open(TEXT("QZ_CallHistory"), nullptr, nullptr));
        for (DWORD i = 1; i <= count; ++i) {
            const std::string digits = std::to_string(i);
            CCeDBRecord record;
            record.addProp(CCeDBProp::ofFileTime(0x400, fileTimeOf(125'911'584'000'000'000 + i)));
            record.addProp(CCeDBProp::ofText(0x401, CString(WString(digits.begin(), digits.end()))));
            ASSERT_NE(calls.add(record), 0u);
        }
    }
    ObjectStore::unmount();
}

/// Without what differs from run to run.
Json withoutOid(Json call) {
    EXPECT_TRUE(call.contains("oid"));
    call.erase("oid");
    return call;
}

}  // namespace

TEST(ToolCall, LogsACallFromAContact) {
    const Calls tool;
    EXPECT_EQ(withoutOid(tool.logged("010-2345-6789", "--at", "2026-11-21T10:30", "--duration", "65")),
              (Json{{"time", "2026-11-21T01:30:00Z"},
                    {"number", "01023456789"},
                    {"name", "김민수"},
                    {"type", "mobile"},
                    {"callType", "incoming"},
                    {"duration", 65}}));
}

TEST(ToolCall, LogsACallFromAnUnknownNumber) {
    const Calls tool;
    EXPECT_EQ(withoutOid(tool.logged("02-999-8888", "--at", "2026-11-21T10:30:15Z", "--type", "missed", "--cnap",
                                     "SHOP", "--cdnip", "1588")),
              (Json{{"time", "2026-11-21T10:30:15Z"},
                    {"number", "029998888"},
                    {"callType", "missed"},
                    {"cnap", "SHOP"},
                    {"cdnip", "1588"}}));
}

TEST(ToolCall, FindsTheContactHoweverTheNumberIsSpelt) {
    const Calls tool;
    for (const std::string number :
         {"01023456789", "+82 10-2345-6789", "+821023456789", "00821023456789", "1023456789"}) {
        const Json call = tool.logged(number);
        EXPECT_EQ(call["name"], "김민수") << number;
        EXPECT_EQ(call["number"], "01023456789") << number;
    }
    EXPECT_EQ(tool.logged("02 312 4567")["type"], "fax");
    EXPECT_EQ(tool.logged("+821077778888")["number"], "01077778888");
}

TEST(ToolCall, LogsACallWithoutANumberAndOneThatWasWithheld) {
    const Calls tool;
    EXPECT_EQ(withoutOid(tool.logged("", "--at", "2026-11-21T10:30Z")),
              (Json{{"time", "2026-11-21T10:30:00Z"}, {"name", "번호정보없음"}, {"callType", "incoming"}}));
    EXPECT_EQ(withoutOid(tool.logged("--withheld", "--name", "Boss", "--at", "2026-11-21T10:30Z")),
              (Json{{"time", "2026-11-21T10:30:00Z"},
                    {"number", "발신번호표시제한"},
                    {"name", "Boss"},
                    {"callType", "incoming"}}));
    EXPECT_THAT(tool("call", "last").out, HasSubstr("Number          발신번호표시제한\n"));
}

TEST(ToolCall, LooksForTheNameBeforeTheNumber) {
    const Calls tool;
    EXPECT_EQ(tool.logged("02-999-8888", "--name", "김민수")["name"], "김민수");
    EXPECT_FALSE(tool.logged("02-999-8888", "--name", "Nobody").contains("name"));
}

TEST(ToolCall, KeepsATypeThatItDoesNotKnow) {
    const Calls tool;
    EXPECT_EQ(tool.logged("1", "--type", "outgoing")["callType"], "outgoing");
    EXPECT_EQ(tool.logged("1", "--type", "3")["callType"], "missed");
    EXPECT_EQ(tool.logged("1", "--type", "4294967295")["callType"], 4294967295u);
    EXPECT_EQ(tool.logged("1", "--type", "0")["callType"], 0);
}

TEST(ToolCall, TakesATimeHereThereAndNow) {
    const Calls tool;
    const std::map<std::string, std::string> times = {
        {"2026-11-21T10:30", "2026-11-21T01:30:00Z"},          {"2026-11-21 10:30:59", "2026-11-21T01:30:59Z"},
        {"2026-11-21T10:30Z", "2026-11-21T10:30:00Z"},         {"2026-01-01T00:30+09:00", "2025-12-31T15:30:00Z"},
        {"2026-11-21T10:30:00-05:30", "2026-11-21T16:00:00Z"}, {"2024-02-29T00:00Z", "2024-02-29T00:00:00Z"},
        {"1969-12-31T23:59:59Z", "1969-12-31T23:59:59Z"},      {"1601-01-01T00:00Z", "1601-01-01T00:00:00Z"}};
    for (const auto& [given, kept] : times)
        EXPECT_EQ(tool.logged("1", "--at", given)["time"], kept) << given;
    const std::string now = tool.logged("1")["time"];
    EXPECT_TRUE(std::regex_match(now, std::regex("20\\d\\d-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\dZ"))) << now;
}

TEST(ToolCall, HeedsTheSummerTimeOfTheDay) {
    const Calls tool;
    for (const auto& [given, kept] : std::map<std::string, std::string>{{"2026-01-15T12:00", "2026-01-15T11:00:00Z"},
                                                                        {"2026-07-15T12:00", "2026-07-15T10:00:00Z"}}) {
        auto inBerlin = tool.in("C.UTF-8", {"--json", "call", "log", "1", "--at", given});
        inBerlin.environment["TZ"] = "CET-1CEST,M3.5.0,M10.5.0/3";
        EXPECT_EQ(Json::parse(run(inBerlin).out)["time"], kept);
    }
}

TEST(ToolCall, ShowsTimesInTheUsersZoneAndLocale) {
    const Calls tool;
    tool.logged("010-2345-6789", "--at", "2026-11-21T20:30:05Z");
    EXPECT_THAT(tool.seoul("call", "last").out, HasSubstr("Time            2026-11-22 05:30:05\n"));
    EXPECT_THAT(run(tool.in("ko_KR.UTF-8", {"call", "last"})).out, HasSubstr("Time            2026. 11. 22. "));
    EXPECT_THAT(run(tool.in("en_US.UTF-8", {"call", "last"})).out, HasSubstr("Time            11/22/2026 "));
}

TEST(ToolCall, PrintsTheCallAsItIsLogged) {
    const Calls tool;
    const Outcome outcome =
        tool.seoul("call", "log", "+82 10-2345-6789", "--at", "2026-11-21T10:30", "--duration", "65");
    const std::string oid = tool.json(0, "call", "last")["oid"].dump();
    EXPECT_EQ(outcome.out, "Oid             " + oid +
                               "\n"
                               "Time            2026-11-21 10:30:00\n"
                               "Call            incoming\n"
                               "Name            김민수\n"
                               "Number          010-2345-6789\n"
                               "Type            mobile\n"
                               "Duration        1:05\n");
}

TEST(ToolCall, ListsTheNewestFirst) {
    const Calls tool;
    EXPECT_EQ(tool.json(0, "call", "list"), Json::array());
    EXPECT_EQ(tool("call", "list").out, "");
    tool.logged("2", "--at", "2026-11-21T10:30");
    const Json newest = tool.logged("3", "--at", "2026-11-21T10:31");
    const Json oldest = tool.logged("1", "--at", "2026-11-21T10:29");
    const Json calls = tool.json(0, "call", "list");
    ASSERT_THAT(calls, SizeIs(3));
    EXPECT_EQ(calls[0], newest);
    EXPECT_EQ(calls[1]["number"], "2");
    EXPECT_EQ(calls[2], oldest);
    EXPECT_EQ(tool.json(0, "call", "last"), newest);
    EXPECT_EQ(tool.json(0, "call", "oldest"), oldest);
}

TEST(ToolCall, WritesAnAlignedTable) {
    const Calls tool;
    const std::string known =
        tool.logged("010-2345-6789", "--at", "2026-11-21T10:30", "--duration", "3725")["oid"].dump();
    const std::string unknown =
        tool.logged("02-999-8888", "--at", "2026-11-21T10:29", "--type", "missed")["oid"].dump();
    const std::size_t width = std::max({known.size(), unknown.size(), std::string("Oid").size()}) + 2;
    EXPECT_THAT(
        linesOf(tool.seoul("call", "list").out),
        ElementsAre(padded("Oid", width) + "Time                 Call      Name    Number         Type    Duration",
                    padded(known, width) + "2026-11-21 10:30:00  incoming  김민수  010-2345-6789  mobile  1:02:05",
                    padded(unknown, width) + "2026-11-21 10:29:00  missed            02-999-8888"));
}

TEST(ToolCall, KeepsTheLastHundred) {
    const Calls tool;
    fillHistory(tool, 100);
    const Json logged = tool.logged("555", "--at", "2020-01-01T00:00Z");
    EXPECT_THAT(tool.json(0, "call", "list"), SizeIs(100));
    EXPECT_EQ(tool.json(0, "call", "last"), logged);
    EXPECT_EQ(tool.json(0, "call", "oldest")["number"], "2");
    const Json early = tool.logged("556", "--at", "1700-01-01T00:00Z");
    EXPECT_EQ(tool.json(0, "call", "oldest"), early);
}

TEST(ToolCall, SaysThatThereIsNone) {
    const Calls tool;
    expectFailure(tool("call", "last"), 1, "no call");
    expectFailure(tool("call", "oldest"), 1, "no call");
    EXPECT_EQ(tool.json(1, "call", "last"), Json());
}

TEST(ToolCall, DeletesThoseThatAreNamed) {
    const Calls tool;
    const std::string first = tool.logged("1")["oid"].dump();
    const std::string second = tool.logged("2")["oid"].dump();
    const Outcome outcome = tool("call", "delete", "999999", first);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "deleted 1 call\n");
    EXPECT_EQ(outcome.err, "tessera: there is no call 999999\n");
    EXPECT_EQ(tool.json(0, "call", "delete", second), (Json{{"deleted", 1}, {"missing", Json::array()}}));
    EXPECT_EQ(tool.json(0, "call", "list"), Json::array());
}

TEST(ToolCall, DeletesCallsOnly) {
    const Calls tool;
    const std::string contact = tool.json(0, "list")[0]["oid"].dump();
    expectFailure(tool("call", "delete", contact), 1, contact);
    expectFailure(tool("call", "delete", "0"), 1, "0");
    EXPECT_EQ(tool("show", contact).status, 0);
}

TEST(ToolCall, DeletesAllOnlyWhenTold) {
    const Calls tool;
    tool.logged("1");
    tool.logged("2");
    expectFailure(tool("call", "clear"), 2, "--yes");
    EXPECT_THAT(tool.json(0, "call", "list"), SizeIs(2));
    EXPECT_EQ(tool("call", "clear", "--yes").out, "deleted 2 calls\n");
    EXPECT_EQ(tool.json(0, "call", "list"), Json::array());
    EXPECT_EQ(tool.json(0, "call", "clear", "--yes"), (Json{{"deleted", 0}, {"missing", Json::array()}}));
}

TEST(ToolCall, RefusesWhatMakesNoSenseAndLogsNothing) {
    const Calls tool;
    expectFailure(tool("call"), 2, "command");
    expectFailure(tool("call", "dance"), 2, "\"call dance\" is no command");
    expectFailure(tool("call", "log"), 2, "--withheld");
    expectFailure(tool("call", "log", "anonymous"), 2, "anonymous");
    EXPECT_EQ(tool("call", "log", "1", "--withheld").status, 2);
    expectFailure(tool("call", "log", "1", "--type", "walk"), 2, "walk");
    expectFailure(tool("call", "log", "1", "--duration", "1:05"), 2, "1:05");
    expectFailure(tool("call", "log", "1", "--cnap", std::string(32'736, 'x')), 2, "too long");
    for (const std::string time : {"yesterday", "2026-11-21", "2026-02-29T10:00", "2026-11-21T24:00",
                                   "2026-11-21T10:60", "2026-11-21T10:30 ", "2026-11-21T10:30+0900", "2026-1-2T10:30",
                                   "1600-12-31T23:59Z", "2026-11-21T10:30:00.5", "9999-12-31T23:59-01:00", ""})
        expectFailure(tool("call", "log", "1", "--at", time), 2, "--at");
    expectFailure(tool("call", "delete"), 2, "OID");
    expectFailure(tool("call", "delete", "twelve"), 2, "twelve");
    EXPECT_EQ(tool.json(0, "call", "list"), Json::array());
}
