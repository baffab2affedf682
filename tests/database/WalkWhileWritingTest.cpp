// A walk goes on from the place last reached, whatever is written meanwhile and whoever writes it: it shows what
// lies ahead of that place then, and nothing that lies behind it. A place is a name and an identifier.

#include <map>
#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/database/WalkedTable.h"
#include "tests/support/Values.h"

namespace Database {
namespace {

using testing_support::MountKind;
using testing_support::mountKinds;
using testing_support::name;
using testing_support::nameIdent;
using testing_support::nameOf;
using testing_support::WalkedTable;
using testing_support::Writer;

using Names = std::vector<WString>;

WString numbered(const WCHAR* stem, int number) {
    return stem + WString{static_cast<WCHAR>(u'0' + number / 10), static_cast<WCHAR>(u'0' + number % 10)};
}

class WalkWhileWriting : public testing::TestWithParam<std::tuple<MountKind, Writer>> {
protected:
    /// Rows of these names. A test calls a row by the name that it was made with.
    void make(const Names& names) {
        for (const WString& named : names)
            oids[named] = table.insert(Writer::anotherTable, named);
    }
    Names makeNumbered(const WCHAR* stem, int count) {
        Names names;
        for (int i = 0; i < count; ++i)
            names.push_back(numbered(stem, i));
        make(names);
        return names;
    }
    void insert(const WString& named) { oids[named] = table.insert(writer, named); }
    void rename(const WString& row, const WString& named) { table.rename(writer, oids.at(row), named); }
    void erase(const WString& row) { table.erase(writer, oids.at(row)); }

    // No text is read to tell where the walk is, since reading goes to the row itself.
    WString called(DWORD oid) const {
        for (const auto& [named, known] : oids) {
            if (known == oid) return named;
        }
        return TEXT("(none)");
    }
    WString current() const { return called(rows->getCur()); }
    WString next() {
        EXPECT_EQ(rows->next(), S_OK);
        return current();
    }
    WString prev() {
        EXPECT_EQ(rows->prev(), S_OK);
        return current();
    }
    void standOn(const WString& row) {
        if (!rows) rows = table.walk();
        do
            ASSERT_EQ(rows->next(), S_OK);
        while (current() != row);
    }
    void standOnFromTheEnd(const WString& row) {
        rows = table.walk();
        ASSERT_EQ(rows->last(), S_OK);
        while (current() != row)
            ASSERT_EQ(rows->prev(), S_OK);
    }
    /// Does something at each row from here to the end of the walk, which it must come to.
    template <class Visit>
    void atEach(HRESULT (Iterator::*step)(), Visit visit) {
        constexpr int tooMany = 1000;
        HRESULT moved = (*rows.*step)();
        for (int visited = 0; moved == S_OK && visited < tooMany; ++visited) {
            visit();
            moved = (*rows.*step)();
        }
        EXPECT_EQ(moved, S_FALSE);
    }
    Names rest() {
        Names walked;
        atEach(&Iterator::next, [&] { walked.push_back(current()); });
        return walked;
    }
    Names restBackward() {
        Names walked;
        atEach(&Iterator::prev, [&] { walked.push_back(current()); });
        return walked;
    }

    std::shared_ptr<void> store = std::get<MountKind>(GetParam()).mount();
    Writer writer = std::get<Writer>(GetParam());
    WalkedTable table;
    std::map<WString, DWORD> oids;
    std::unique_ptr<Iterator> rows;
};

TEST_P(WalkWhileWriting, ARowRenamedAheadIsMetAgainWhereItStandsNow) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d")});
    standOn(TEXT("a"));

    rename(TEXT("a"), TEXT("cc"));

    EXPECT_EQ(rest(), (Names{TEXT("b"), TEXT("c"), TEXT("a"), TEXT("d")}));
}

TEST_P(WalkWhileWriting, ARowRenamedBehindIsNotMetAgain) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d")});
    standOn(TEXT("c"));

    rename(TEXT("c"), TEXT("aa"));

    EXPECT_EQ(rest(), (Names{TEXT("d")}));
}

TEST_P(WalkWhileWriting, BackwardARowRenamedToTheFrontIsMetAgain) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d")});
    standOnFromTheEnd(TEXT("c"));

    rename(TEXT("c"), TEXT("aa"));

    EXPECT_EQ(restBackward(), (Names{TEXT("b"), TEXT("c"), TEXT("a")}));
}

TEST_P(WalkWhileWriting, RenamingEveryRowToTheFrontMeetsEachOnce) {
    const Names names = makeNumbered(TEXT("row"), 40);
    rows = table.walk();
    Names walked;

    atEach(&Iterator::next, [&] {
        walked.push_back(current());
        rename(walked.back(), TEXT("first ") + walked.back());
    });

    EXPECT_EQ(walked, names);
}

TEST_P(WalkWhileWriting, RenamingEveryRowToTheEndMeetsEachAgainThere) {
    Names expected = makeNumbered(TEXT("row"), 40);
    rows = table.walk();
    Names walked;

    atEach(&Iterator::next, [&] {
        walked.push_back(current());
        if (walked.size() <= 40) rename(walked.back(), TEXT("then ") + walked.back());
    });

    const Names again = expected;
    expected.insert(expected.end(), again.begin(), again.end());
    EXPECT_EQ(walked, expected);
}

TEST_P(WalkWhileWriting, RenamingEveryMemberOfAnEqualGroupMeetsEachOnce) {
    for (const WCHAR* newName : {TEXT("Acquaintances"), TEXT("Relatives")}) {
        make({TEXT("Enemies"), TEXT("Friends")});
        std::vector<DWORD> members;
        for (int i = 0; i < 40; ++i)
            members.push_back(table.insert(Writer::anotherTable, TEXT("Family")));
        CCeDBProp group = name(TEXT("Family"));
        rows = table.walk(&group);
        std::vector<DWORD> walked;

        atEach(&Iterator::next, [&] {
            walked.push_back(rows->getCur());
            table.rename(writer, walked.back(), newName);
        });

        EXPECT_EQ(walked, members) << CString(newName);
        rows = table.walk(&group);
        EXPECT_EQ(rows->next(), S_FALSE) << CString(newName);
    }
}

TEST_P(WalkWhileWriting, BehindADeletedRowTheWalkGoesOnEitherWay) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d")});
    standOn(TEXT("b"));
    erase(TEXT("b"));
    EXPECT_EQ(next(), TEXT("c"));

    erase(TEXT("c"));
    EXPECT_EQ(prev(), TEXT("a"));
    EXPECT_EQ(rest(), (Names{TEXT("d")}));
}

TEST_P(WalkWhileWriting, ADeletedNeighbourIsPassedOver) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d"), TEXT("e")});
    standOn(TEXT("c"));

    erase(TEXT("d"));
    EXPECT_EQ(next(), TEXT("e"));

    erase(TEXT("c"));
    EXPECT_EQ(restBackward(), (Names{TEXT("b"), TEXT("a")}));
}

TEST_P(WalkWhileWriting, WhenAllThatIsAheadWasDeletedItIsTheEnd) {
    make({TEXT("a"), TEXT("b"), TEXT("c")});
    standOn(TEXT("a"));

    erase(TEXT("b"));
    erase(TEXT("c"));

    EXPECT_EQ(rows->next(), S_FALSE);
    EXPECT_EQ(current(), TEXT("a"));
}

TEST_P(WalkWhileWriting, DeletingEveryRowStoodOnDeletesThemAll) {
    const Names names = makeNumbered(TEXT("row"), 40);
    rows = table.walk();
    Names walked;

    atEach(&Iterator::next, [&] {
        walked.push_back(current());
        erase(walked.back());
    });

    EXPECT_EQ(walked, names);
    EXPECT_EQ(table.getNumRecords(), 0u);
}

TEST_P(WalkWhileWriting, ForwardItShowsWhatIsInsertedAheadAndNotWhatIsInsertedBehind) {
    make({TEXT("a"), TEXT("c"), TEXT("e"), TEXT("g"), TEXT("i")});
    standOn(TEXT("e"));

    insert(TEXT("d"));
    insert(TEXT("f"));
    erase(TEXT("g"));

    EXPECT_EQ(rest(), (Names{TEXT("f"), TEXT("i")}));
}

TEST_P(WalkWhileWriting, BackwardItShowsWhatIsInsertedAheadAndNotWhatIsInsertedBehind) {
    make({TEXT("a"), TEXT("c"), TEXT("e"), TEXT("g"), TEXT("i")});
    standOnFromTheEnd(TEXT("e"));

    insert(TEXT("d"));
    insert(TEXT("f"));
    erase(TEXT("c"));

    EXPECT_EQ(restBackward(), (Names{TEXT("d"), TEXT("a")}));
}

TEST_P(WalkWhileWriting, InTheMiddleOfALongWalkEachStepShowsWhatWasWrittenBeforeIt) {
    Names expected = makeNumbered(TEXT("row"), 40);
    rows = table.walk();
    Names walked;

    for (int i = 0; i < 20; ++i) {
        walked.push_back(next());
        insert(walked.back() + TEXT(" after"));
        insert(walked.back() + TEXT(" and"));
        erase(numbered(TEXT("row"), 39 - i));
        walked.push_back(next());
        walked.push_back(next());
    }

    expected.resize(20);
    for (std::size_t i = 0; i < expected.size(); i += 3)
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                        {expected[i] + TEXT(" after"), expected[i] + TEXT(" and")});
    EXPECT_EQ(walked, expected);
}

TEST_P(WalkWhileWriting, IndexesCountTheRowsAsTheyAreNow) {
    make({TEXT("a"), TEXT("c"), TEXT("e"), TEXT("g"), TEXT("i")});
    rows = table.walk();
    ASSERT_EQ(called(rows->getAt(2)), TEXT("e"));

    insert(TEXT("d"));
    EXPECT_EQ(called(rows->getAt(2)), TEXT("d"));
    EXPECT_EQ(called(rows->getAt(3)), TEXT("e"));
    insert(TEXT("f"));
    EXPECT_EQ(called(rows->getAt(4)), TEXT("f"));
    erase(TEXT("g"));
    EXPECT_EQ(called(rows->getAt(5)), TEXT("i"));
    EXPECT_EQ(called(rows->getAt(3)), TEXT("e"));
    EXPECT_EQ(next(), TEXT("f"));
    EXPECT_EQ(prev(), TEXT("e"));
}

TEST_P(WalkWhileWriting, RecordsAtIndexesAreThoseThatAreThereNow) {
    make({TEXT("a"), TEXT("c"), TEXT("e")});
    rows = table.walk();
    CCeDBRecord record;
    const auto nameAt = [&](int idx) {
        EXPECT_EQ(rows->getRecordAt(idx, &record), S_OK) << idx;
        return WString(record.findProp(nameIdent)->getText().view());
    };
    ASSERT_EQ(nameAt(1), TEXT("c"));

    insert(TEXT("b"));
    EXPECT_EQ(nameAt(1), TEXT("b"));
    EXPECT_EQ(nameAt(2), TEXT("c"));
    rename(TEXT("c"), TEXT("f"));
    EXPECT_EQ(nameAt(2), TEXT("e"));
    EXPECT_EQ(nameAt(3), TEXT("f"));
    erase(TEXT("a"));
    EXPECT_EQ(nameAt(0), TEXT("b"));
    EXPECT_EQ(rows->getRecordAt(3, &record), E_FAIL);
}

TEST_P(WalkWhileWriting, AnIndexIsCountedAnewFromEitherSideOfTheLastOne) {
    const Names names = makeNumbered(TEXT("row"), 40);
    rows = table.walk();
    Names forward;
    for (int i = 0; i < 40; ++i) {
        forward.push_back(called(rows->getAt(i)));
        rename(forward.back(), forward.back() + TEXT(" seen"));
    }
    EXPECT_EQ(forward, names);

    Names backward;
    for (int i = 39; i >= 0; --i) {
        backward.insert(backward.begin(), called(rows->getAt(i)));
        erase(backward.front());
    }
    EXPECT_EQ(backward, names);
    EXPECT_EQ(rows->getAt(0), 0u);
}

std::string nameOfCase(const testing::TestParamInfo<std::tuple<MountKind, Writer>>& info) {
    return std::string(std::get<MountKind>(info.param).name) + "_By" + nameOf(std::get<Writer>(info.param));
}

INSTANTIATE_TEST_SUITE_P(EitherStore, WalkWhileWriting,
                         testing::Combine(testing::ValuesIn(mountKinds),
                                          testing::Values(Writer::theTableItself, Writer::anotherTable,
                                                          Writer::anotherThread)),
                         nameOfCase);

/// Rows other than the one stood on are renamed: the table itself would go to them for it.
class WalkWhileOthersRename : public WalkWhileWriting {};

TEST_P(WalkWhileOthersRename, ARowThatWasVisitedAndIsRenamedAheadIsMetAgain) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d")});
    standOn(TEXT("b"));

    rename(TEXT("a"), TEXT("cc"));

    EXPECT_EQ(rest(), (Names{TEXT("c"), TEXT("a"), TEXT("d")}));
}

TEST_P(WalkWhileOthersRename, ARowAheadThatIsRenamedBehindIsNotMet) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d")});
    standOn(TEXT("b"));

    rename(TEXT("c"), TEXT("aa"));

    EXPECT_EQ(rest(), (Names{TEXT("d")}));
}

TEST_P(WalkWhileOthersRename, ARowRenamedIntoTheEqualGroupAheadIsMetAndOneRenamedOutOfItIsNot) {
    make({TEXT("a"), TEXT("b"), TEXT("c")});
    std::vector<DWORD> members;
    for (int i = 0; i < 3; ++i)
        members.push_back(table.insert(Writer::anotherTable, TEXT("m")));
    make({TEXT("x")});
    CCeDBProp group = name(TEXT("m"));
    rows = table.walk(&group);
    ASSERT_EQ(rows->next(), S_OK);
    ASSERT_EQ(rows->getCur(), members[0]);

    rename(TEXT("a"), TEXT("m"));  // its identifier is smaller than theirs: it is behind
    rename(TEXT("x"), TEXT("m"));
    table.rename(writer, members[1], TEXT("b"));

    EXPECT_EQ(rows->next(), S_OK);
    EXPECT_EQ(rows->getCur(), members[2]);
    EXPECT_EQ(next(), TEXT("x"));
    EXPECT_EQ(rows->next(), S_FALSE);
}

TEST_P(WalkWhileOthersRename, ReadingTheRowStoodOnGoesWhereItStandsNow) {
    make({TEXT("a"), TEXT("b"), TEXT("c"), TEXT("d"), TEXT("e")});
    standOn(TEXT("b"));

    rename(TEXT("b"), TEXT("dd"));
    EXPECT_EQ(rows->getString(WalkedTable::nameIdx), TEXT("dd"));

    EXPECT_EQ(rest(), (Names{TEXT("e")}));
}

INSTANTIATE_TEST_SUITE_P(EitherStore, WalkWhileOthersRename,
                         testing::Combine(testing::ValuesIn(mountKinds),
                                          testing::Values(Writer::anotherTable, Writer::anotherThread)),
                         nameOfCase);

}  // namespace
}  // namespace Database
