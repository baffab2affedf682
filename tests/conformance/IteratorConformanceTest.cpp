// Every iterator over the same three rows: what they have in common, and, by their traits, where they differ.

#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "tests/conformance/IteratorOverThreeRows.h"

namespace conformance {
namespace {

using Database::Iterator;

class IteratorConformance : public ThreeRows, public testing::WithParamInterface<IteratorKind> {
protected:
    IteratorConformance() : ThreeRows(GetParam()) {}
};

TEST_P(IteratorConformance, IsOfItsClassAndSeesTheRowsThatItSelects) {
    EXPECT_TRUE(GetParam().isExactly(*rows));
    EXPECT_TRUE(rows->isOpened());
    EXPECT_EQ(rows->getNumItems(), count);
    EXPECT_EQ(rest(), (std::vector{Place::first, Place::second, Place::third}));
}

TEST_P(IteratorConformance, StandsOnNoRowUntilItIsMoved) {
    expectStandsOn(Place::none);
    EXPECT_TRUE(rows->getProp(nameIdx).isEmpty());
    EXPECT_EQ(rows->next(), S_OK);
    expectStandsOn(Place::first);
}

TEST_P(IteratorConformance, ReadingDoesNotMoveIt) {
    for (const Place place : {Place::first, Place::second, Place::third}) {
        ASSERT_EQ(rows->next(), S_OK);
        expectStandsOn(place);
        expectStandsOn(place);
    }
}

TEST_P(IteratorConformance, WalksBackFromTheLastRow) {
    ASSERT_EQ(rows->last(), S_OK);
    expectStandsOn(Place::third);
    for (const Place place : {Place::second, Place::first}) {
        ASSERT_EQ(rows->prev(), S_OK);
        expectStandsOn(place);
    }
    EXPECT_EQ(rows->prev(), S_FALSE);
}

TEST_P(IteratorConformance, BehindTheLastRowThereIsNoneHoweverOftenItIsTried) {
    standOn(Place::third);

    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(rows->next(), S_FALSE);
        EXPECT_EQ(current(), traits.afterFailedNext);
    }
    EXPECT_TRUE(rows->isOpened());
    EXPECT_EQ(rows->last(), S_OK);
    expectStandsOn(Place::third);
}

TEST_P(IteratorConformance, GoesBackFromBehindTheLastRow) {
    standOn(Place::third);
    ASSERT_EQ(rows->next(), S_FALSE);

    expectStep(rows->prev(), traits.prevAfterFailedNext);
}

TEST_P(IteratorConformance, GoesOnFromBeforeTheFirstRow) {
    standOn(Place::first);

    expectStep(rows->prev(), {S_FALSE, traits.afterFailedPrev});

    expectStep(rows->next(), traits.nextAfterFailedPrev);
}

TEST_P(IteratorConformance, GoesBackFromBeforeTheFirstRow) {
    standOn(Place::first);
    ASSERT_EQ(rows->prev(), S_FALSE);

    expectStep(rows->prev(), traits.prevAfterFailedPrev);
}

TEST_P(IteratorConformance, AFirstStepBack) {
    expectStep(rows->prev(), traits.firstPrev);
    expectStep(rows->next(), traits.nextAfterFirstPrev);
}

TEST_P(IteratorConformance, StepsOnFromTheLastRowThatItWentToFromTheFirst) {
    standOn(Place::first);
    expectStep(rows->last(), {S_OK, Place::third});

    expectStep(rows->next(), traits.nextAfterFirstThenLast);
}

TEST_P(IteratorConformance, GoesToAnIndexAndOnFromThere) {
    EXPECT_EQ(placeOf(rows->getAt(1)), Place::second);
    expectStandsOn(Place::second);
    EXPECT_EQ(placeOf(rows->getAt(0)), Place::first);
    expectStandsOn(Place::first);
    expectStep(rows->next(), {S_OK, Place::second});
    EXPECT_EQ(placeOf(rows->getAt(2)), Place::third);
    expectStep(rows->prev(), {S_OK, Place::second});
}

TEST_P(IteratorConformance, AnIndexOutsideIsNoRowAndDoesNotMoveIt) {
    standOn(Place::second);

    for (const int idx : {-1, count + 1, 1000}) {
        EXPECT_EQ(rows->getAt(idx), 0u) << idx;
        EXPECT_TRUE(rows->getPropAt(idx, nameIdx).isEmpty()) << idx;
        EXPECT_TRUE(rows->getStringAt(idx, nameIdx).IsEmpty()) << idx;
        EXPECT_EQ(current(), Place::second) << idx;
    }
    expectStep(rows->next(), {S_OK, Place::third});
}

TEST_P(IteratorConformance, ItsCountAsAnIndexIsTriedAndIsNoRow) {
    standOn(Place::second);

    EXPECT_EQ(rows->getAt(count), 0u);

    EXPECT_EQ(current(), traits.afterIndexOfCount);
    expectStep(rows->prev(), traits.prevAfterIndexOfCount);
}

TEST_P(IteratorConformance, ReadsAPropertyOfTheRowOnlyWhereRowsHaveProperties) {
    standOn(Place::second);

    EXPECT_EQ(rows->getProp(mobileIdx).isEmpty(), !traits.readsProperties);
    if (traits.readsProperties) {
        EXPECT_EQ(rows->getProp(mobileIdx).getText(), TEXT("010-2"));
    }
    for (const int attrIdx : {-1, 99}) {
        EXPECT_TRUE(rows->getProp(attrIdx).isEmpty()) << attrIdx;
        EXPECT_TRUE(rows->getString(attrIdx).IsEmpty()) << attrIdx;
    }
    EXPECT_EQ(current(), Place::second);
}

TEST_P(IteratorConformance, ReadsARecordOnlyWhereRowsAreRecords) {
    standOn(Place::second);
    CCeDBRecord record;

    EXPECT_EQ(rows->getRecord(&record), traits.readsRecords ? S_OK : E_NOTIMPL);
    EXPECT_EQ(record.getNumProps() != 0, traits.readsRecords);
    EXPECT_EQ(rows->getRecord(nullptr), traits.readsRecords ? E_POINTER : E_NOTIMPL);
    EXPECT_EQ(current(), Place::second);
}

TEST_P(IteratorConformance, GoesToTheRecordAtAnIndexOnlyWhereRowsAreRecords) {
    standOn(Place::second);
    CCeDBRecord record;

    EXPECT_EQ(rows->getRecordAt(0, &record), traits.readsRecords ? S_OK : E_NOTIMPL);
    EXPECT_EQ(current(), traits.readsRecords ? Place::first : Place::second);
    const Place reached = current();
    for (const int idx : {-1, count, count + 1}) {
        EXPECT_EQ(rows->getRecordAt(idx, &record), traits.readsRecords ? E_FAIL : E_NOTIMPL) << idx;
    }
    EXPECT_EQ(rows->getRecordAt(0, nullptr), traits.readsRecords ? E_POINTER : E_NOTIMPL);
    EXPECT_EQ(current(), reached);
}

TEST_P(IteratorConformance, GoesToTheRowWhosePropertyItIsAskedFor) {
    EXPECT_EQ(rows->getPropAt(1, nameIdx).isEmpty(), !traits.readsProperties);
    expectStandsOn(Place::second);

    EXPECT_TRUE(rows->getPropAt(count, nameIdx).isEmpty());
    EXPECT_EQ(current(), traits.afterIndexOfCount);
}

TEST_P(IteratorConformance, GoesToTheRowWhoseTextItIsAskedForUnlessItTakesTheIndexForAnIdentifier) {
    standOn(Place::second);
    ASSERT_GT(oidOf(Place::first), DWORD{count}) << "no index may be an identifier here";

    EXPECT_EQ(rows->getStringAt(0, nameIdx), traits.textAtTakesAnIdentifier ? TEXT("") : TEXT("aa kim"));
    EXPECT_EQ(current(), traits.textAtTakesAnIdentifier ? Place::second : Place::first);
    EXPECT_TRUE(rows->getStringAt(count, nameIdx).IsEmpty());
    EXPECT_EQ(current(), traits.textAtTakesAnIdentifier ? Place::second : Place::none);
}

TEST_P(IteratorConformance, BeforeTheFirstRowThereIsNoneToDelete) {
    EXPECT_EQ(rows->deleteCur(), S_OK);

    EXPECT_EQ(stored(), allBut(Place::none));
    // The iterator over a property database counts without looking what there is.
    EXPECT_EQ(rows->getNumItems(), traits.deletedByDeleteCur == Place::none ? count - 1 : count);
}

TEST_P(IteratorConformance, DeletesTheCurrentRowOrOnlyCounts) {
    standOn(Place::second);

    EXPECT_EQ(rows->deleteCur(), S_OK);

    EXPECT_EQ(rows->getNumItems(), traits.countAfterDeleteCur);
    EXPECT_EQ(current(), traits.afterDeleteCur);
    EXPECT_EQ(stored(), allBut(traits.deletedByDeleteCur));
    EXPECT_EQ(rows->deleteCur(), traits.secondDeleteCur);
}

TEST_P(IteratorConformance, AnIndexOutsideIsNothingToDelete) {
    standOn(Place::second);

    for (const bool positionOnly : {false, true}) {
        EXPECT_EQ(rows->deleteAt(-1, positionOnly), E_FAIL);
        EXPECT_EQ(rows->deleteAt(count + 1, positionOnly), E_FAIL);
    }

    EXPECT_EQ(rows->getNumItems(), count);
    EXPECT_EQ(current(), Place::second);
    EXPECT_EQ(stored(), allBut(Place::none));
}

TEST_P(IteratorConformance, NotOpenedAnyMoreItIsDeniedWhateverTheIndex) {
    CCeDBRecord record;
    empty();

    EXPECT_EQ(rows->getNumItems(), 0);
    for (const int idx : {-1, 0, 1, 1000}) {
        EXPECT_EQ(rows->deleteAt(idx, false), E_ACCESSDENIED) << idx;
        EXPECT_EQ(rows->deleteAt(idx, true), E_ACCESSDENIED) << idx;
        EXPECT_EQ(rows->getAt(idx), 0u) << idx;
        EXPECT_EQ(rows->getRecordAt(idx, &record), traits.readsRecords ? E_ACCESSDENIED : E_NOTIMPL) << idx;
        EXPECT_TRUE(rows->getStringAt(idx, nameIdx).IsEmpty()) << idx;
    }
    EXPECT_EQ(rows->deleteCur(), S_OK);
    EXPECT_EQ(rows->getNumItems(), 0);
}

TEST_P(IteratorConformance, NotOpenedAnyMoreItIsNotMoved) {
    empty();

    EXPECT_EQ(rows->prev(), E_ACCESSDENIED);
    EXPECT_EQ(rows->last(), E_ACCESSDENIED);
    EXPECT_EQ(rows->next(), traits.nextWhenNotOpened);
    expectStandsOn(Place::none);
}

TEST_P(IteratorConformance, CountsTheRowsThatThereWereWhenItWasMade) {
    addRow(Place::added);
    EXPECT_EQ(rows->getNumItems(), count);
    erase(Place::first);
    EXPECT_EQ(rows->getNumItems(), count);

    EXPECT_EQ(made->iterator()->getNumItems(), count);
}

TEST_P(IteratorConformance, WalksOverARowAddedAheadOrDoesNot) {
    standOn(Place::first);
    std::vector<Place> expected{Place::second, Place::third};
    if (traits.showsRowsAddedAhead) expected.insert(expected.begin(), Place::added);
    if (traits.endsAtItsCount) expected.resize(count - 1);

    addRow(Place::added);

    EXPECT_EQ(rest(), expected);
}

TEST_P(IteratorConformance, IndexesCountARowAddedAheadOrDoNot) {
    standOn(Place::first);

    addRow(Place::added);

    EXPECT_EQ(placeOf(rows->getAt(1)), traits.showsRowsAddedAhead ? Place::added : Place::second);
    EXPECT_EQ(placeOf(rows->getAt(2)), traits.showsRowsAddedAhead ? Place::second : Place::third);
    EXPECT_EQ(placeOf(rows->getAt(count)), traits.showsRowsAddedAhead ? Place::third : Place::none);
}

TEST_P(IteratorConformance, WalksOverARowDeletedAheadOrStillShowsIt) {
    standOn(Place::first);

    erase(Place::second);

    expectStep(rows->next(), traits.nextWhenThatRowWasDeleted);
    expectStep(rows->next(), traits.nextBehindThat);
}

TEST_P(IteratorConformance, OfARowThatIsGoneNothingButAKeptNameIsRead) {
    standOn(Place::first);
    const Place shown = traits.nextWhenThatRowWasDeleted.current;

    erase(Place::second);
    ASSERT_EQ(rows->next(), S_OK);

    EXPECT_EQ(rows->getString(nameIdx), contentsOf[static_cast<int>(shown)].name);
    EXPECT_EQ(rows->getString(mobileIdx).IsEmpty(), shown == Place::second);
}

TEST_P(IteratorConformance, ShowsARenamedRowByItsNewNameOrByTheOneItWasFoundBy) {
    standOn(Place::second);
    CCeDBRecord renamed = recordOf(made->table(), {TEXT("bc kim"), TEXT("010-7"), TEXT("")});

    ASSERT_EQ(made->table().updateRecord(oidOf(Place::second), &renamed, 0, nullptr), S_OK);

    EXPECT_EQ(rows->getString(nameIdx), traits.showsRenamedRows ? TEXT("bc kim") : TEXT("bb kim"));
    EXPECT_EQ(rows->getString(mobileIdx), TEXT("010-7"));
    EXPECT_EQ(current(), Place::second);
}

TEST_P(IteratorConformance, StandsWhereAnotherOneOfItsTableWentUnlessThePlaceIsItsOwn) {
    const std::unique_ptr<Iterator> other = made->iterator();
    standOn(Place::second);
    ASSERT_EQ(other->next(), S_OK);

    expectStep(rows->next(), {S_OK, traits.hasItsOwnPlace ? Place::third : Place::second});
}

INSTANTIATE_TEST_SUITE_P(EveryIterator, IteratorConformance, testing::ValuesIn(iteratorKinds),
                         [](const auto& kind) { return std::string(kind.param.name); });

/// One iterator and one of its deletions.
using DeletionCase = std::tuple<IteratorKind, std::size_t>;

class IteratorDeleteAt : public ThreeRows, public testing::WithParamInterface<DeletionCase> {
protected:
    IteratorDeleteAt() : ThreeRows(std::get<0>(GetParam())) {}
    const Deletion& deletion() const { return traits.deletions[std::get<1>(GetParam())]; }
};

TEST_P(IteratorDeleteAt, LeavesWhatItsTraitsSay) {
    ASSERT_EQ(rows->deleteAt(deletion().idx, deletion().positionOnly), S_OK);

    EXPECT_EQ(rows->getNumItems(), deletion().count);
    EXPECT_EQ(current(), deletion().current);
    expectStep(rows->next(), deletion().next);
    EXPECT_EQ(stored(), allBut(deletion().deleted));
}

std::string nameOf(const testing::TestParamInfo<DeletionCase>& info) {
    const IteratorKind& kind = std::get<0>(info.param);
    const Deletion& deletion = kind.traits.deletions[std::get<1>(info.param)];
    return std::string(kind.name) + (deletion.positionOnly ? "_MovingTo" : "_Deleting") + std::to_string(deletion.idx);
}

INSTANTIATE_TEST_SUITE_P(EveryIterator, IteratorDeleteAt,
                         testing::Combine(testing::ValuesIn(iteratorKinds),
                                          testing::Range(std::size_t{0}, propertyTraits.deletions.size())),
                         nameOf);

}  // namespace
}  // namespace conformance
