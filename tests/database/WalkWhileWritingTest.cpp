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

using Names = std::vector<std::u16string>;

std::u16string numbered(const char16_t* stem, int number) {
    return stem + std::u16string{static_cast<char16_t>(u'0' + number / 10), static_cast<char16_t>(u'0' + number % 10)};
}

class WalkWhileWriting : public testing::TestWithParam<std::tuple<MountKind, Writer>> {
protected:
    /// Rows of these names. A test calls a row by the name that it was made with.
    void make(const Names& names) {
        for (const std::u16string& named : names)
            oids[named] = table.insert(Writer::anotherTable, named);
    }
    Names makeNumbered(const char16_t* stem, int count) {
        Names names;
        for (int i = 0; i < count; ++i)
            names.push_back(numbered(stem, i));
        make(names);
        return names;
    }
    void insert(const std::u16string& named) { oids[named] = table.insert(writer, named); }
    void rename(const std::u16string& row, const std::u16string& named) { table.rename(writer, oids.at(row), named); }
    void erase(const std::u16string& row) { table.erase(writer, oids.at(row)); }

    // No text is read to tell where the walk is, since reading goes to the row itself.
    std::u16string called(DWORD oid) const {
        for (const auto& [named, known] : oids) {
            if (known == oid) return named;
        }
        return u"(none)";
    }
    std::u16string current() const { return called(rows->getCur()); }
    std::u16string next() {
        EXPECT_EQ(rows->next(), S_OK);
        return current();
    }
    std::u16string prev() {
        EXPECT_EQ(rows->prev(), S_OK);
        return current();
    }
    void standOn(const std::u16string& row) {
        if (!rows) rows = table.walk();
        do
            ASSERT_EQ(rows->next(), S_OK);
        while (current() != row);
    }
    void standOnFromTheEnd(const std::u16string& row) {
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
    std::map<std::u16string, DWORD> oids;
    std::unique_ptr<Iterator> rows;
};

TEST_P(WalkWhileWriting, ARowRenamedAheadIsMetAgainWhereItStandsNow) {
    make({u"a", u"b", u"c", u"d"});
    standOn(u"a");

    rename(u"a", u"cc");

    EXPECT_EQ(rest(), (Names{u"b", u"c", u"a", u"d"}));
}

TEST_P(WalkWhileWriting, ARowRenamedBehindIsNotMetAgain) {
    make({u"a", u"b", u"c", u"d"});
    standOn(u"c");

    rename(u"c", u"aa");

    EXPECT_EQ(rest(), (Names{u"d"}));
}

TEST_P(WalkWhileWriting, BackwardARowRenamedToTheFrontIsMetAgain) {
    make({u"a", u"b", u"c", u"d"});
    standOnFromTheEnd(u"c");

    rename(u"c", u"aa");

    EXPECT_EQ(restBackward(), (Names{u"b", u"c", u"a"}));
}

TEST_P(WalkWhileWriting, RenamingEveryRowToTheFrontMeetsEachOnce) {
    const Names names = makeNumbered(u"row", 40);
    rows = table.walk();
    Names walked;

    atEach(&Iterator::next, [&] {
        walked.push_back(current());
        rename(walked.back(), u"first " + walked.back());
    });

    EXPECT_EQ(walked, names);
}

TEST_P(WalkWhileWriting, RenamingEveryRowToTheEndMeetsEachAgainThere) {
    Names expected = makeNumbered(u"row", 40);
    rows = table.walk();
    Names walked;

    atEach(&Iterator::next, [&] {
        walked.push_back(current());
        if (walked.size() <= 40) rename(walked.back(), u"then " + walked.back());
    });

    const Names again = expected;
    expected.insert(expected.end(), again.begin(), again.end());
    EXPECT_EQ(walked, expected);
}

TEST_P(WalkWhileWriting, RenamingEveryMemberOfAnEqualGroupMeetsEachOnce) {
    for (const char16_t* newName : {u"Acquaintances", u"Relatives"}) {
        make({u"Enemies", u"Friends"});
        std::vector<DWORD> members;
        for (int i = 0; i < 40; ++i)
            members.push_back(table.insert(Writer::anotherTable, u"Family"));
        CCeDBProp group = name(u"Family");
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
    make({u"a", u"b", u"c", u"d"});
    standOn(u"b");
    erase(u"b");
    EXPECT_EQ(next(), u"c");

    erase(u"c");
    EXPECT_EQ(prev(), u"a");
    EXPECT_EQ(rest(), (Names{u"d"}));
}

TEST_P(WalkWhileWriting, ADeletedNeighbourIsPassedOver) {
    make({u"a", u"b", u"c", u"d", u"e"});
    standOn(u"c");

    erase(u"d");
    EXPECT_EQ(next(), u"e");

    erase(u"c");
    EXPECT_EQ(restBackward(), (Names{u"b", u"a"}));
}

TEST_P(WalkWhileWriting, WhenAllThatIsAheadWasDeletedItIsTheEnd) {
    make({u"a", u"b", u"c"});
    standOn(u"a");

    erase(u"b");
    erase(u"c");

    EXPECT_EQ(rows->next(), S_FALSE);
    EXPECT_EQ(current(), u"a");
}

TEST_P(WalkWhileWriting, DeletingEveryRowStoodOnDeletesThemAll) {
    const Names names = makeNumbered(u"row", 40);
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
    make({u"a", u"c", u"e", u"g", u"i"});
    standOn(u"e");

    insert(u"d");
    insert(u"f");
    erase(u"g");

    EXPECT_EQ(rest(), (Names{u"f", u"i"}));
}

TEST_P(WalkWhileWriting, BackwardItShowsWhatIsInsertedAheadAndNotWhatIsInsertedBehind) {
    make({u"a", u"c", u"e", u"g", u"i"});
    standOnFromTheEnd(u"e");

    insert(u"d");
    insert(u"f");
    erase(u"c");

    EXPECT_EQ(restBackward(), (Names{u"d", u"a"}));
}

TEST_P(WalkWhileWriting, InTheMiddleOfALongWalkEachStepShowsWhatWasWrittenBeforeIt) {
    Names expected = makeNumbered(u"row", 40);
    rows = table.walk();
    Names walked;

    for (int i = 0; i < 20; ++i) {
        walked.push_back(next());
        insert(walked.back() + u" after");
        insert(walked.back() + u" and");
        erase(numbered(u"row", 39 - i));
        walked.push_back(next());
        walked.push_back(next());
    }

    expected.resize(20);
    for (std::size_t i = 0; i < expected.size(); i += 3)
        expected.insert(expected.begin() + static_cast<std::ptrdiff_t>(i) + 1,
                        {expected[i] + u" after", expected[i] + u" and"});
    EXPECT_EQ(walked, expected);
}

TEST_P(WalkWhileWriting, IndexesCountTheRowsAsTheyAreNow) {
    make({u"a", u"c", u"e", u"g", u"i"});
    rows = table.walk();
    ASSERT_EQ(called(rows->getAt(2)), u"e");

    insert(u"d");
    EXPECT_EQ(called(rows->getAt(2)), u"d");
    EXPECT_EQ(called(rows->getAt(3)), u"e");
    insert(u"f");
    EXPECT_EQ(called(rows->getAt(4)), u"f");
    erase(u"g");
    EXPECT_EQ(called(rows->getAt(5)), u"i");
    EXPECT_EQ(called(rows->getAt(3)), u"e");
    EXPECT_EQ(next(), u"f");
    EXPECT_EQ(prev(), u"e");
}

TEST_P(WalkWhileWriting, RecordsAtIndexesAreThoseThatAreThereNow) {
    make({u"a", u"c", u"e"});
    rows = table.walk();
    CCeDBRecord record;
    const auto nameAt = [&](int idx) {
        EXPECT_EQ(rows->getRecordAt(idx, &record), S_OK) << idx;
        return std::u16string(record.findProp(nameIdent)->getText().view());
    };
    ASSERT_EQ(nameAt(1), u"c");

    insert(u"b");
    EXPECT_EQ(nameAt(1), u"b");
    EXPECT_EQ(nameAt(2), u"c");
    rename(u"c", u"f");
    EXPECT_EQ(nameAt(2), u"e");
    EXPECT_EQ(nameAt(3), u"f");
    erase(u"a");
    EXPECT_EQ(nameAt(0), u"b");
    EXPECT_EQ(rows->getRecordAt(3, &record), E_FAIL);
}

TEST_P(WalkWhileWriting, AnIndexIsCountedAnewFromEitherSideOfTheLastOne) {
    const Names names = makeNumbered(u"row", 40);
    rows = table.walk();
    Names forward;
    for (int i = 0; i < 40; ++i) {
        forward.push_back(called(rows->getAt(i)));
        rename(forward.back(), forward.back() + u" seen");
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
    make({u"a", u"b", u"c", u"d"});
    standOn(u"b");

    rename(u"a", u"cc");

    EXPECT_EQ(rest(), (Names{u"c", u"a", u"d"}));
}

TEST_P(WalkWhileOthersRename, ARowAheadThatIsRenamedBehindIsNotMet) {
    make({u"a", u"b", u"c", u"d"});
    standOn(u"b");

    rename(u"c", u"aa");

    EXPECT_EQ(rest(), (Names{u"d"}));
}

TEST_P(WalkWhileOthersRename, ARowRenamedIntoTheEqualGroupAheadIsMetAndOneRenamedOutOfItIsNot) {
    make({u"a", u"b", u"c"});
    std::vector<DWORD> members;
    for (int i = 0; i < 3; ++i)
        members.push_back(table.insert(Writer::anotherTable, u"m"));
    make({u"x"});
    CCeDBProp group = name(u"m");
    rows = table.walk(&group);
    ASSERT_EQ(rows->next(), S_OK);
    ASSERT_EQ(rows->getCur(), members[0]);

    rename(u"a", u"m");  // its identifier is smaller than theirs: it is behind
    rename(u"x", u"m");
    table.rename(writer, members[1], u"b");

    EXPECT_EQ(rows->next(), S_OK);
    EXPECT_EQ(rows->getCur(), members[2]);
    EXPECT_EQ(next(), u"x");
    EXPECT_EQ(rows->next(), S_FALSE);
}

TEST_P(WalkWhileOthersRename, ReadingTheRowStoodOnGoesWhereItStandsNow) {
    make({u"a", u"b", u"c", u"d", u"e"});
    standOn(u"b");

    rename(u"b", u"dd");
    EXPECT_EQ(rows->getString(WalkedTable::nameIdx), u"dd");

    EXPECT_EQ(rest(), (Names{u"e"}));
}

INSTANTIATE_TEST_SUITE_P(EitherStore, WalkWhileOthersRename,
                         testing::Combine(testing::ValuesIn(mountKinds),
                                          testing::Values(Writer::anotherTable, Writer::anotherThread)),
                         nameOfCase);

}  // namespace
}  // namespace Database
