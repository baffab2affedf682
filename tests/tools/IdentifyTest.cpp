// A number as received, in any spelling, and the forms of it that a phone book may hold.

#include "tests/tools/ToolTest.h"

using namespace tool_test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

namespace {

/// A phone book of one, who has that number.
class PhoneBookOf : public Tool {
public:
    explicit PhoneBookOf(const std::string& number) { (*this)("add", "--name", "Kim", "--mobile", number); }

    /// The form under which the number was found.
    std::string match(const std::string& received) const {
        const Json caller = json(0, "identify", received);
        EXPECT_EQ(caller.value("name", ""), "Kim") << received;
        return caller.value("matched", "");
    }
};

}  // namespace

TEST(ToolIdentify, TakesANumberInAnySpelling) {
    const PhoneBookOf tool("010-2345-6789");
    for (const std::string received :
         {"01023456789", "010-2345-6789", "010.2345.6789", "(010) 2345 6789", "+82 10-2345-6789", "+82-10-2345-6789",
          "+821023456789", "+8210-2345-6789", "+82 (10) 2345 6789", " +82 10 2345 6789", "(+82) 10-2345-6789",
          "00821023456789", "0082-10-2345-6789", "00 82 10 2345 6789"}) {
        EXPECT_EQ(tool.match(received), "01023456789") << received;
    }
}

TEST(ToolIdentify, SeparatesCountryCodesOfOneTwoAndThreeDigits) {
    EXPECT_EQ(PhoneBookOf("0212-555-0123").match("+12125550123"), "02125550123");
    EXPECT_EQ(PhoneBookOf("030 123456").match("+4930123456"), "030123456");
    EXPECT_EQ(PhoneBookOf("091 234567").match("+35391234567"), "091234567");
}

TEST(ToolIdentify, FindsWhoHoldsTheNumberWithACountryCode) {
    const PhoneBookOf tool("+82 10-2345-6789");
    EXPECT_EQ(tool.match("+821023456789"), "01023456789");
    EXPECT_EQ(tool.match("010-2345-6789"), "01023456789");
    EXPECT_EQ(tool.match("10-2345-6789"), "01023456789");
}

TEST(ToolIdentify, FindsNumbersThatWereAddedWithoutASeparatorBehindTheirCountryCode) {
    for (const std::string number : {"+821012345678", "+8210-1234-5678", "+82.10.1234.5678"}) {
        const PhoneBookOf tool(number);
        for (const std::string received : {number.c_str(), "+82 10-1234-5678", "+82-10-1234-5678", "00821012345678"})
            EXPECT_EQ(tool.json(0, "identify", received)["name"], "Kim") << number << " as " << received;
        expectFailure(tool("identify", "+821099999999"), 1, "+821099999999");
        expectFailure(tool("identify", "0"), 1, "0");
    }
    const PhoneBookOf london("+442079460958");
    for (const std::string received : {"+442079460958", "+44 20 7946 0958", "02079460958", "+44 (0)20 7946 0958"})
        EXPECT_EQ(london.match(received), "02079460958") << received;
}

TEST(ToolIdentify, FallsBackToTheFormWithoutTheLeadingZero) {
    EXPECT_EQ(PhoneBookOf("212-555-0123").match("+1 212-555-0123"), "2125550123");
    EXPECT_EQ(PhoneBookOf("2125550123").match("0212 555 0123"), "2125550123");
}

TEST(ToolIdentify, FallsBackToTheFormWithALeadingZero) {
    EXPECT_EQ(PhoneBookOf("06 1234567").match("6 1234567"), "061234567");
    // Italian numbers keep their zero behind the country code; British ones show it in parentheses.
    EXPECT_EQ(PhoneBookOf("06 1234567").match("+39 06 1234567"), "061234567");
    EXPECT_EQ(PhoneBookOf("020 7946 0000").match("+44 (0)20 7946 0000"), "02079460000");
}

TEST(ToolIdentify, FindsWhoHoldsTheNumberWithAnInternationalPrefix) {
    EXPECT_EQ(PhoneBookOf("00 82 10 2345 6789").match("+821023456789"), "00821023456789");
    EXPECT_EQ(PhoneBookOf("00 82 10 2345 6789").match("00821023456789"), "00821023456789");
}

TEST(ToolIdentify, PrefersTheReducedFormToTheOthers) {
    const Tool tool;
    tool("add", "--name", "Without", "--mobile", "1023456789");
    tool("add", "--name", "With", "--mobile", "01023456789");
    EXPECT_EQ(tool.json(0, "identify", "010-2345-6789")["name"], "With");
    EXPECT_EQ(tool.json(0, "identify", "10-2345-6789")["name"], "Without");
}

TEST(ToolIdentify, KeepsTheSignsThatBelongToANumber) {
    EXPECT_EQ(PhoneBookOf("*23#").match("*23#"), "*23#");
    EXPECT_EQ(PhoneBookOf("0212345P12").match("02-12345 P 12"), "0212345P12");
}

TEST(ToolIdentify, ComparesTheFirst32DigitsOfLongNumbers) {
    const std::string digits = "1234567890123456789012345678901234567890";
    EXPECT_EQ(PhoneBookOf(digits).match(digits), digits.substr(0, 32));
    EXPECT_EQ(PhoneBookOf("+82 " + digits).match("+82" + digits), "0" + digits.substr(0, 31));
}

TEST(ToolIdentify, FindsNobodyByAPartOfANumber) {
    const PhoneBookOf tool("010-2345-6789");
    expectFailure(tool("identify", "2345-6789"), 1, "2345-6789");
    expectFailure(tool("identify", "010-2345-67890"), 1, "010-2345-67890");
    EXPECT_EQ(tool.json(1, "identify", "2345"), Json());
    EXPECT_EQ(tool.json(1, "identify", "2345", "--all"), Json::array());
}

TEST(ToolIdentify, DoesNotTakeACountryCodeAloneForANumber) {
    const PhoneBookOf tool("+82");  // which the phone book reduces to 0
    expectFailure(tool("identify", "+82"), 2, "+82");
    for (const std::string received : {"+", "++", "-", "+ -", "(+)"})
        EXPECT_EQ(tool("identify", received).status, 2) << received;
}

TEST(ToolIdentify, ShowsTheCallerAndTheFormThatMatched) {
    const PhoneBookOf tool("010-2345-6789");
    const Outcome outcome = tool("identify", "+821023456789");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, HasSubstr("Name            Kim\n"));
    EXPECT_THAT(outcome.out, HasSubstr("Matched         01023456789\n"));
}

TEST(ToolIdentify, FindsTheCallerByEachKindOfNumber) {
    const Tool tool;
    for (const std::string kind : {"mobile", "home", "business", "pager", "fax"}) {
        const std::string number = "02-55" + std::to_string(kind.size()) + std::to_string(kind[0]) + "-1000";
        tool("add", "--name", kind, "--" + kind, number);
        EXPECT_EQ(tool.json(0, "identify", number)["name"], kind);
    }
}

TEST(ToolIdentify, ListsEverybodyWhoHasTheNumberWhole) {
    const Tool tool;
    tool("add", "--name", "Anna", "--home", "(02) 312-4567");
    tool("add", "--name", "Paul", "--business", "02.312.4567");
    tool("add", "--name", "Zoe", "--home", "02-312-45678");
    const Json callers = tool.json(0, "identify", "+82 2-312-4567", "--all");
    EXPECT_THAT(namesIn(callers), ElementsAre("Anna", "Paul"));
    EXPECT_EQ(callers[1]["matched"], "023124567");
    EXPECT_EQ(tool.json(0, "identify", "023124567")["name"], "Anna");
    const Outcome outcome = tool("identify", "023124567", "--all");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(linesOf(outcome.out).size(), 4u) << outcome.out;
}
