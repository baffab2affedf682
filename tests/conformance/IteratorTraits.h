#pragma once

#include <array>

#include "tessera/platform/base/Results.h"

// Where the iterators are meant to differ. What is not here they have in common.

namespace conformance {

/// The rows of every iterator under test, in its order, and one more that a test may add behind the first.
enum class Place { none, first, added, second, third };

/// Where a step leads: what it answers, and the row that is current then.
struct Step {
    HRESULT result;
    Place current;
};

/// What `deleteAt` does to an iterator that was not moved yet; it succeeds in each of these cases.
struct Deletion {
    int idx;
    bool positionOnly;
    int count;      ///< That the iterator has then.
    Place deleted;  ///< From the store.
    Place current;
    Step next;
};

/// All in which the iterators are meant to differ.
struct IteratorTraits {
    bool readsRecords;             ///< Else getRecord and getRecordAt answer E_NOTIMPL.
    bool readsProperties;          ///< Else a property is always empty: contacts are read as text only.
    bool textAtTakesAnIdentifier;  ///< getStringAt takes its number for an object identifier, not for an index.
    bool hasItsOwnPlace;           ///< Else it moves its table's, which the table's other iterators stand at too.
    HRESULT nextWhenNotOpened;     ///< The other moves are denied, all alike.
    Step firstPrev;                ///< A step back before any other move.
    Step nextAfterFirstPrev;       ///< A step forward right behind that.
    Place afterFailedNext;         ///< Where a step that ran off behind the last row leaves it.
    Step prevAfterFailedNext;      ///< A step back from there.
    Place afterFailedPrev;         ///< Where a step that ran off before the first row leaves it.
    Step nextAfterFailedPrev;      ///< A step forward from there.
    Step prevAfterFailedPrev;      ///< Another step back from there.
    Step nextAfterFirstThenLast;   ///< A step forward from the last row, reached by `last` from the first.
    Place afterIndexOfCount;       ///< Where it stands when, on the second row, its count is given as an index.
    Step prevAfterIndexOfCount;    ///< A step back from there.
    int deletionsCountFrom;        ///< The index of deleteAt that deletes the first row.
    int countAfterDeleteCur;       ///< What deleteCur on the second row leaves of the count,
    Place deletedByDeleteCur;      ///< takes from the store,
    Place afterDeleteCur;          ///< and makes current.
    HRESULT secondDeleteCur;       ///< deleteCur once more, right behind that.
    std::array<Deletion, 6> deletions;
    bool showsRowsAddedAhead;        ///< Rows are shown as the store has them, not as they were found.
    bool endsAtItsCount;             ///< A walk ends after as many rows as there were, even if there are more now.
    Step nextWhenThatRowWasDeleted;  ///< A step from the first row when the second is gone from the store.
    Step nextBehindThat;             ///< And the one after it.
    bool showsRenamedRows;           ///< Else the name is the one that the row was found by.
};

// One past the last is taken for an index by all: meant so. The iterator over a property database deletes
// nothing, it only counts; and what is current and where a step leads does not follow its index.
inline constexpr std::array<Deletion, 6> propertyDeletions{{
    {0, true, 3, Place::none, Place::none, {S_OK, Place::second}},
    {1, true, 3, Place::none, Place::none, {S_OK, Place::second}},
    {3, true, 3, Place::none, Place::none, {S_OK, Place::second}},
    {0, false, 2, Place::none, Place::none, {S_OK, Place::second}},
    {1, false, 2, Place::none, Place::none, {S_OK, Place::second}},
    {3, false, 2, Place::none, Place::none, {S_OK, Place::second}},
}};

// The index is taken for a position, which counts from 1.
inline constexpr std::array<Deletion, 6> contactDeletions{{
    {0, true, 3, Place::none, Place::none, {S_OK, Place::first}},
    {1, true, 3, Place::none, Place::first, {S_OK, Place::second}},
    {3, true, 3, Place::none, Place::third, {S_FALSE, Place::none}},
    {0, false, 3, Place::none, Place::none, {S_OK, Place::first}},
    {1, false, 2, Place::first, Place::second, {S_OK, Place::third}},
    {3, false, 2, Place::third, Place::none, {S_FALSE, Place::none}},
}};

// The match goes in any case, and the one behind it moves up to its index.
inline constexpr std::array<Deletion, 6> scanDeletions{{
    {0, true, 2, Place::none, Place::second, {S_OK, Place::third}},
    {1, true, 2, Place::none, Place::third, {S_FALSE, Place::third}},
    {3, true, 3, Place::none, Place::none, {S_FALSE, Place::none}},
    {0, false, 2, Place::first, Place::second, {S_OK, Place::third}},
    {1, false, 2, Place::second, Place::third, {S_FALSE, Place::third}},
    {3, false, 3, Place::none, Place::none, {S_FALSE, Place::none}},
}};

inline constexpr IteratorTraits propertyTraits{
    .readsRecords = true,
    .readsProperties = true,
    .textAtTakesAnIdentifier = true,
    .hasItsOwnPlace = false,
    .nextWhenNotOpened = E_ACCESSDENIED,
    .firstPrev = {S_OK, Place::third},
    .nextAfterFirstPrev = {S_FALSE, Place::third},
    // The iterator stays; the place in the database, which the next step starts from, is at the end then.
    .afterFailedNext = Place::third,
    .prevAfterFailedNext = {S_OK, Place::third},
    .afterFailedPrev = Place::first,
    .nextAfterFailedPrev = {S_FALSE, Place::first},
    .prevAfterFailedPrev = {S_OK, Place::third},
    .nextAfterFirstThenLast = {S_OK, Place::first},  // the index is -1 again, which is a fresh start
    .afterIndexOfCount = Place::second,
    .prevAfterIndexOfCount = {S_OK, Place::third},
    .deletionsCountFrom = 0,
    .countAfterDeleteCur = 2,
    .deletedByDeleteCur = Place::none,
    .afterDeleteCur = Place::second,
    .secondDeleteCur = S_OK,
    .deletions = propertyDeletions,
    .showsRowsAddedAhead = true,
    .endsAtItsCount = false,
    .nextWhenThatRowWasDeleted = {S_OK, Place::third},
    .nextBehindThat = {S_FALSE, Place::third},
    .showsRenamedRows = true,
};

inline constexpr IteratorTraits contactTraits{
    .readsRecords = false,
    .readsProperties = false,
    .textAtTakesAnIdentifier = false,
    .hasItsOwnPlace = true,
    .nextWhenNotOpened = S_FALSE,
    .firstPrev = {S_FALSE, Place::none},
    .nextAfterFirstPrev = {S_OK, Place::none},  // from -1 to 0, where there is no contact
    .afterFailedNext = Place::none,
    .prevAfterFailedNext = {S_OK, Place::third},
    .afterFailedPrev = Place::none,
    .nextAfterFailedPrev = {S_OK, Place::first},
    .prevAfterFailedPrev = {S_FALSE, Place::none},
    .nextAfterFirstThenLast = {S_FALSE, Place::none},
    .afterIndexOfCount = Place::none,
    .prevAfterIndexOfCount = {S_OK, Place::third},
    .deletionsCountFrom = 1,
    .countAfterDeleteCur = 2,
    .deletedByDeleteCur = Place::second,
    .afterDeleteCur = Place::third,
    .secondDeleteCur = S_OK,
    .deletions = contactDeletions,
    .showsRowsAddedAhead = true,
    .endsAtItsCount = true,
    .nextWhenThatRowWasDeleted = {S_OK, Place::third},
    .nextBehindThat = {S_OK, Place::none},  // it is within the count
    .showsRenamedRows = true,
};

inline constexpr IteratorTraits scanTraits{
    .readsRecords = false,
    .readsProperties = false,
    .textAtTakesAnIdentifier = false,
    .hasItsOwnPlace = true,
    .nextWhenNotOpened = E_FAIL,
    .firstPrev = {S_FALSE, Place::none},
    .nextAfterFirstPrev = {S_OK, Place::first},
    .afterFailedNext = Place::third,
    .prevAfterFailedNext = {S_OK, Place::second},
    .afterFailedPrev = Place::none,
    .nextAfterFailedPrev = {S_OK, Place::first},
    .prevAfterFailedPrev = {S_FALSE, Place::none},
    .nextAfterFirstThenLast = {S_FALSE, Place::third},
    .afterIndexOfCount = Place::none,
    .prevAfterIndexOfCount = {S_OK, Place::third},
    .deletionsCountFrom = 0,
    .countAfterDeleteCur = 3,
    .deletedByDeleteCur = Place::second,
    .afterDeleteCur = Place::second,
    .secondDeleteCur = E_FAIL,
    .deletions = scanDeletions,
    .showsRowsAddedAhead = false,
    .endsAtItsCount = true,
    .nextWhenThatRowWasDeleted = {S_OK, Place::second},
    .nextBehindThat = {S_OK, Place::third},
    .showsRenamedRows = false,
};

}  // namespace conformance
