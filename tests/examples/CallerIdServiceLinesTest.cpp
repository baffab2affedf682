#include <deque>

#include <gmock/gmock.h>

#include "tessera/platform/base/Unicode.h"
#include "tests/examples/CallerIdService.h"

// What clients may send, and how.

namespace caller_id_service {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;
using testing_support::contact;

constexpr const char* notANumber = "error: not a number";
constexpr const char* tooLong = "error: line too long";

/// The service over a phone book of two.
class CallerIdServiceLines : public testing::Test {
protected:
    CallerIdServiceLines() {
        served.phoneBook().add(contact().name(u"one").mobile(u"010-1").bell(u"1.mid"));
        served.phoneBook().add(contact().name(u"two").mobile(u"010-2").bell(u"2.mid"));
    }

    ServedPhoneBook served;
};

}  // namespace

TEST_F(CallerIdServiceLines, MayComeInPieces) {
    Caller caller(served.socket());
    Caller other(served.socket());
    for (const char* piece : {"01", "0-", "1"}) {
        caller.send(piece);
        ASSERT_EQ(other.ask("010-2"), "two\t2.mid");  // between the pieces it has looked at the first
    }

    caller.send("\n");
    EXPECT_EQ(caller.line(), "one\t1.mid");
}

TEST_F(CallerIdServiceLines, MayComeTogether) {
    Caller caller(served.socket());
    caller.send("010-1\n010-2\r\n010-3\n01");
    const auto answers = caller.lines(3);
    caller.send("02\n");

    EXPECT_THAT(answers, ElementsAre("one\t1.mid", "two\t2.mid", "unknown"));
    EXPECT_EQ(caller.line(), "two\t2.mid");
}

TEST_F(CallerIdServiceLines, MayHave128Bytes) {
    Caller caller(served.socket());
    const std::string padding(128 - 5, ' ');

    EXPECT_EQ(caller.ask(padding + "010-1"), "one\t1.mid");
    EXPECT_EQ(caller.ask(padding + " 010-1"), tooLong);
    EXPECT_EQ(caller.ask("010-1"), "one\t1.mid");
}

TEST_F(CallerIdServiceLines, AreOneErrorHoweverLongTheyAre) {
    Caller caller(served.socket());
    caller.send(std::string(1'000'000, '1'));
    caller.send("\n010-1\n");

    EXPECT_THAT(caller.lines(2), ElementsAre(tooLong, "one\t1.mid"));
}

TEST_F(CallerIdServiceLines, AreErrorsWhenTheyHoldNoNumber) {
    Caller caller(served.socket());

    EXPECT_EQ(caller.ask(""), notANumber);
    EXPECT_EQ(caller.ask("who is it?"), notANumber);
    EXPECT_EQ(caller.ask("010-1 \xC3\x28"), notANumber);  // not UTF-8
    EXPECT_EQ(caller.ask(std::string("\0 010-1", 7)), notANumber);
    EXPECT_EQ(caller.ask("010-1"), "one\t1.mid");
}

TEST_F(CallerIdServiceLines, MayBeRubbish) {
    Caller caller(served.socket());
    std::string rubbish;
    std::uint32_t noise = 20031104;
    for (int line = 0; line < 100; ++line) {
        for (int i = 0; i < 60; ++i) {
            noise = noise * 1664525 + 1013904223;
            const auto byte = static_cast<char>(noise >> 24);
            rubbish += byte == '\n' ? '\0' : byte;
        }
        rubbish += '\n';
    }
    caller.send(rubbish);

    EXPECT_THAT(caller.lines(100), AllOf(SizeIs(100), Each(testing::AnyOf(notANumber, "unknown"))));
    EXPECT_EQ(caller.ask("010-1"), "one\t1.mid");
}

TEST_F(CallerIdServiceLines, GetOneLineEachWhateverTheNameHolds) {
    served.phoneBook().add(contact().name(u"a\nb\tc\r").mobile(u"010-4").bell(u"\n"));
    Caller caller(served.socket());
    caller.send("010-4\n010-1\n");

    EXPECT_THAT(caller.lines(2), ElementsAre("a b c \t ", "one\t1.mid"));
}

TEST_F(CallerIdServiceLines, BringNothingThatATerminalWouldObey) {
    const std::u16string everyCommand =
        u"\u0001\u001B\u001F\u007F\u0080\u009B\u009F\u061C\u200E\u200F\u2028\u2029\u202A\u202E\u2066\u2069";
    const std::u16string shown = u"~\u00A0\u200D\u2027\u202F김😀";
    served.phoneBook().add(contact().name(everyCommand + shown).mobile(u"010-5").bell(u"\u001B]0;x\u0007"));
    Caller caller(served.socket());

    EXPECT_EQ(caller.ask("010-5"), std::string(everyCommand.size(), ' ') + utf8Of(shown) + "\t ]0;x ");
}

TEST_F(CallerIdServiceLines, EndWithTheirClient) {
    Caller other(served.socket());
    Caller(served.socket()).send("010-1\n010-");
    Caller(served.socket()).send("");
    Caller caller(served.socket());

    EXPECT_EQ(caller.ask("2"), "unknown");  // it has not got the beginning of somebody else's line
    EXPECT_EQ(other.ask("010-2"), "two\t2.mid");
}

TEST_F(CallerIdServiceLines, OfSeveralClientsDoNotMix) {
    std::deque<Caller> callers;
    for (int i = 0; i < 10; ++i)
        callers.emplace_back(served.socket());
    for (Caller& caller : callers)
        caller.send("010-");
    for (std::size_t i = 0; i < callers.size(); ++i)
        callers[i].send(std::to_string(i) + "\n");

    std::vector<std::string> answers;
    for (Caller& caller : callers)
        answers.push_back(caller.line().value_or("hung up"));
    EXPECT_THAT(answers, ElementsAre("unknown", "one\t1.mid", "two\t2.mid", "unknown", "unknown", "unknown", "unknown",
                                     "unknown", "unknown", "unknown"));
}

TEST_F(CallerIdServiceLines, OfOneClientThatReadsNoAnswersHoldUpNobody) {
    Caller deaf(served.socket());
    Caller caller(served.socket());
    while (deaf.send("010-1\n010-2\n")) {  // until it is dropped
    }

    EXPECT_EQ(caller.ask("010-1"), "one\t1.mid");
}

TEST_F(CallerIdServiceLines, AreTakenFrom64ClientsAtMost) {
    std::deque<Caller> callers;
    for (int i = 0; i < 64; ++i)
        callers.emplace_back(served.socket());
    ASSERT_EQ(callers.back().ask("010-1"), "one\t1.mid");

    EXPECT_EQ(Caller(served.socket()).line(), std::nullopt);
    EXPECT_EQ(callers.front().ask("010-2"), "two\t2.mid");
}

}  // namespace caller_id_service
